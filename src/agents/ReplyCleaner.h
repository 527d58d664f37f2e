#pragma once

#include <QString>

namespace vuro::ReplyCleaner {

// Models echo the conversation they were shown and sometimes fall into a loop. Every text of a
// model, while it streams and when it is read back as history, goes through clean():
//  - a leading "assistant:"/"user:" style label on the first line is removed;
//  - a later line starting with such a label, or a line of 30 or more characters seen before,
//    ends the reply there;
//  - a run of the same 12 to 160 code points three times in a row, starting within the last 600,
//    is cut after its first occurrence.
// The result is trimmed only when something was removed. Pure; any thread.
QString clean(const QString& text);

// The position (in code points) right after the first occurrence of a runaway loop, or -1.
qsizetype loopCut(const QList<uint>& scalars);

}  // namespace vuro::ReplyCleaner
