#pragma once

namespace vuro {

// The user's shortcuts that an open note on the Shelf answers, in the order they are matched.
enum class DeckShortcut { close, archiveNote, deleteNote, find, task, pin, colour, bigger, smaller };

}  // namespace vuro
