#pragma once

#include "base/Calendar.h"
#include "notes/Note.h"
#include "notes/TaskLine.h"

#include <QDateTime>
#include <QList>
#include <QString>

// The computed views over the open tasks of all notes: by due date (overdue, today, …) and by
// note. Pure functions of the notes handed in, in the order of the note list; any thread.
// Queries are matched folded ("İ", "I", "ı" as "i", without case or diacritics), so a Turkish and
// an English typist find the same tasks.
namespace vuro::TaskBoard {

struct Entry {
    Note note;
    TaskLine task;
    bool operator==(const Entry&) const = default;
};

enum class DueGroup { overdue, today, tomorrow, nextSevenDays, later, noDate, done };

struct DueSection {
    DueGroup group;
    QList<Entry> entries;
};

struct Group {
    Note note;
    QList<TaskLine> tasks;  // the matching ones
    int done = 0;           // over all the note's tasks
    int total = 0;
};

// Never for a done task or one without a date. A timed task is overdue once its moment has
// passed; a date-only task from the day after. A date that doesn't exist is never overdue.
bool isOverdue(const TaskLine& task, const QDateTime& now, const Calendar& calendar = {});

// Sections in the order of DueGroup, empty ones left out; inside a section by due date, ties in
// the order of the notes and their lines.
QList<DueSection> dueSections(const QList<Note>& notes, const QString& query, const QDateTime& now,
                              const Calendar& calendar = {}, bool includeDone = false);

// One group per note with matching tasks; notes whose tasks are all done come last.
QList<Group> groups(const QList<Note>& notes, const QString& query, bool includeDone = false);

// Whether a folded query matches a text: an empty query matches everything.
bool matches(const QString& foldedQuery, const QString& text);

}  // namespace vuro::TaskBoard
