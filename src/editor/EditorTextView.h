#pragma once

#include "editor/EditorRange.h"
#include "editor/EditorStyleEngine.h"

#include <QString>

namespace vuro {

// What the styling coordinator needs of a text view: its text by lines, the caret, the input
// method's state, and a way to lay styles over whole lines without changing the text.
class EditorTextView {
public:
    virtual ~EditorTextView() = default;
    virtual qsizetype textLength() const = 0;
    // The whole line holding position, with its line end.
    virtual EditorRange lineRange(qsizetype position) const = 0;
    virtual QString textIn(const EditorRange& range) const = 0;
    virtual qsizetype selectionStart() const = 0;
    // An input method is composing; nothing may be touched until it commits.
    virtual bool hasMarkedText() const = 0;
    // The text changed: hand it to whoever keeps the note.
    virtual void writeBinding() = 0;
    // A pass starts; a full pass also resets the view's own font and colour.
    virtual void beginStyling(bool full) = 0;
    // Replaces the styles of the whole lines of range; styling is empty with Markdown off.
    virtual void styleLines(const EditorRange& range, const EditorStyling& styling) = 0;
    // A pass ended: restore the selection, re-lay the overlays, and the cursor shapes if asked.
    virtual void endStyling(bool cursorRects) = 0;
};

}  // namespace vuro
