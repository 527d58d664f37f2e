#pragma once

#include <QDateTime>
#include <QString>

namespace vuro {

// One reminder of a dated task, as handed to a ReminderCenter. title is the task without its
// date mark (the headline), noteTitle the display title of its note; taskText is the task's text
// as it stands in the line, which answers to the reminder use to find the line again.
struct TaskReminder {
    QString id;
    QString noteID;
    QString taskText;
    QString title;
    QString noteTitle;
    QDateTime fireDate;

    bool operator==(const TaskReminder&) const = default;
};

}  // namespace vuro
