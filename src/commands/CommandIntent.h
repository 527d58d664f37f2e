#pragma once

#include "notes/TaskDue.h"

#include <QString>
#include <optional>

namespace vuro {

// One structured action on the notes, made from a sentence of the user's (by a model) or from a
// note tool's arguments.
struct CommandIntent {
    enum class Action { addTask, createNote, appendToNote, completeTask, unknown };

    Action action = Action::unknown;
    QString noteHint;  // the note or list the user named; empty when none
    QString text;      // the task or content in the user's words, date words kept
    QString title;     // for a new note
    std::optional<TaskDue> due;

    // The case named by its raw text ("addTask", …); unknown for anything else.
    static Action actionFromRaw(const QString& raw);

    bool operator==(const CommandIntent&) const = default;
};

}  // namespace vuro
