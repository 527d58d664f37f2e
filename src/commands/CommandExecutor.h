#pragma once

#include "commands/CommandIntent.h"

#include <QDateTime>
#include <QString>
#include <optional>
#include <variant>

namespace vuro {

class NoteStore;
struct Note;

// Carries out one CommandIntent on the notes at once: add a task (to the named note, or to the
// "To-dos" list, creating either when missing), append, create a note, complete a task. Date words
// in a task become a date mark through DueDateParser. The message is what the user (or the model
// that asked through a note tool) reads; nothing here throws. Main thread.
class CommandExecutor {
public:
    struct Undo {
        struct RestoreBody {
            QString noteID;
            QString body;
            bool operator==(const RestoreBody&) const = default;
        };
        struct DeleteNote {
            QString noteID;
            bool operator==(const DeleteNote&) const = default;
        };
        std::variant<RestoreBody, DeleteNote> value;
        bool operator==(const Undo&) const = default;
    };

    struct Outcome {
        QString message;
        std::optional<QString> noteID;
        std::optional<Undo> undo;
        std::optional<TaskDue> due;
    };

    static Outcome execute(const CommandIntent& intent, NoteStore& store, bool turkish = false,
                           const QDateTime& now = {});

    // The append of an appendToNote intent on a note already found: a list gets a task line,
    // any other note a plain line.
    static Outcome appendTo(const Note& note, const QString& text, NoteStore& store, bool turkish = false,
                            const QDateTime& now = {});

    // Puts back what an outcome changed; false when there was nothing to undo.
    static bool undo(const Undo& undo, NoteStore& store);

    // The title of the list a task goes to when no note is named.
    static QString defaultListTitle(bool turkish);
};

}  // namespace vuro
