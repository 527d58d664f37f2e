#include "notes/TaskBoard.h"

#include "base/Text.h"
#include "notes/TaskDue.h"

#include <algorithm>

namespace vuro::TaskBoard {

namespace {

QString foldedQuery(const QString& query) { return Text::fold(Text::trimmed(query)); }

// The tasks of a note that the query keeps: all when the note's title matches, else those
// whose text does.
QList<TaskLine> matchingTasks(const Note& note, const QString& folded) {
    QList<TaskLine> tasks = TaskLine::all(note.body);
    if (matches(folded, note.displayTitle())) return tasks;
    tasks.removeIf([&folded](const TaskLine& task) { return !matches(folded, task.text); });
    return tasks;
}

DueGroup groupOf(const std::optional<TaskDue>& due, const QDateTime& now, const Calendar& calendar) {
    if (!due) return DueGroup::noDate;
    if (due->hour) {
        const QDateTime moment = due->date(calendar);
        if (moment.isValid() && moment < now) return DueGroup::overdue;
    }
    const auto days = due->daysFromToday(now, calendar);
    if (!days) return DueGroup::later;
    if (*days < 0) return DueGroup::overdue;
    if (*days == 0) return DueGroup::today;
    if (*days == 1) return DueGroup::tomorrow;
    if (*days <= 7) return DueGroup::nextSevenDays;
    return DueGroup::later;
}

std::optional<TaskDue> dueOf(const TaskLine& task) {
    if (const auto parsed = TaskDue::parse(task.text)) return parsed->due;
    return std::nullopt;
}

}  // namespace

bool matches(const QString& foldedQuery, const QString& text) {
    return foldedQuery.isEmpty() || Text::fold(text).contains(foldedQuery);
}

bool isOverdue(const TaskLine& task, const QDateTime& now, const Calendar& calendar) {
    if (task.isDone) return false;
    const auto due = dueOf(task);
    if (!due) return false;
    if (due->hour) {
        const QDateTime moment = due->date(calendar);
        return moment.isValid() && moment < now;
    }
    const auto days = due->daysFromToday(now, calendar);
    return days && *days < 0;
}

QList<DueSection> dueSections(const QList<Note>& notes, const QString& query, const QDateTime& now,
                              const Calendar& calendar, bool includeDone) {
    struct Sorted {
        Entry entry;
        std::optional<TaskDue> due;
    };
    constexpr int groupCount = int(DueGroup::done) + 1;
    QList<Sorted> buckets[groupCount];
    const QString folded = foldedQuery(query);
    for (const Note& note : notes) {
        if (note.archived) continue;
        for (const TaskLine& task : matchingTasks(note, folded)) {
            if (task.isDone && !includeDone) continue;
            const auto due = dueOf(task);
            const DueGroup group = task.isDone ? DueGroup::done : groupOf(due, now, calendar);
            buckets[int(group)].append({{note, task}, due});
        }
    }
    QList<DueSection> sections;
    for (int g = 0; g < groupCount; ++g) {
        if (buckets[g].isEmpty()) continue;
        // Undated entries after dated ones; ties keep the order of discovery.
        std::stable_sort(buckets[g].begin(), buckets[g].end(), [](const Sorted& a, const Sorted& b) {
            if (!a.due || !b.due) return a.due.has_value() && !b.due.has_value();
            return *a.due < *b.due;
        });
        DueSection section{DueGroup(g), {}};
        for (Sorted& sorted : buckets[g]) section.entries.append(std::move(sorted.entry));
        sections.append(std::move(section));
    }
    return sections;
}

QList<Group> groups(const QList<Note>& notes, const QString& query, bool includeDone) {
    QList<Group> open;
    QList<Group> finished;
    const QString folded = foldedQuery(query);
    for (const Note& note : notes) {
        if (note.archived) continue;
        QList<TaskLine> tasks = matchingTasks(note, folded);
        if (!includeDone) tasks.removeIf([](const TaskLine& task) { return task.isDone; });
        if (tasks.isEmpty()) continue;
        const TaskLine::Progress progress = TaskLine::progress(note.body);
        Group group{note, std::move(tasks), progress.done, progress.total};
        (progress.total > 0 && progress.done == progress.total ? finished : open).append(std::move(group));
    }
    return open + finished;
}

}  // namespace vuro::TaskBoard
