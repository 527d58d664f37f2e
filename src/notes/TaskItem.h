#pragma once

#include "notes/TaskLine.h"

#include <QHashFunctions>
#include <QString>

namespace vuro {

// One task with the note it stands in, as lists across notes show it. Two items are the same
// task when they name the same line of the same note.
struct TaskItem {
    QString noteID;
    QString noteTitle;
    TaskLine task;

    bool sameTask(const TaskItem& other) const { return noteID == other.noteID && task.lineIndex == other.task.lineIndex; }
    bool operator==(const TaskItem&) const = default;
};

inline size_t qHash(const TaskItem& item, size_t seed = 0) { return qHashMulti(seed, item.noteID, item.task.lineIndex); }

}  // namespace vuro
