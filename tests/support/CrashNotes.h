#pragma once

#include "notes/Note.h"

// The notes the crash test's child writes: each body tells its id and version, and has a length
// that varies with both, so that a torn or mixed-up write can't pass for a whole one.
namespace vuro::test {

Note crashNote(const QString& id, int version);
// The version a body claims, or -1 when the note isn't exactly what crashNote makes.
int crashNoteVersion(const Note& note);

}  // namespace vuro::test
