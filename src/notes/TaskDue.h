#pragma once

#include "base/Calendar.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringView>
#include <optional>

namespace vuro {

// The due date a task line carries as a mark "📅 2026-05-02" or "📅 2026-05-02 14:30": calendar
// fields, not an instant, so a task keeps its wall-clock time when the zone changes. The numbers
// are not range-checked when read: a date that doesn't exist surfaces where an instant is needed
// (date() is then invalid, daysFromToday() none). A plain value; any thread.
struct TaskDue {
    int year = 2000;
    int month = 1;
    int day = 1;
    std::optional<int> hour;
    std::optional<int> minute;

    struct Parsed;

    TaskDue() = default;
    TaskDue(int year, int month, int day, std::optional<int> hour = std::nullopt, std::optional<int> minute = std::nullopt)
        : year(year), month(month), day(day), hour(hour), minute(minute) {}
    // The wall-clock fields of moment in calendar; the time only when includingTime.
    TaskDue(const QDateTime& moment, bool includingTime, const Calendar& calendar = {});

    // The first mark in text, and the text without it, tidied.
    static std::optional<Parsed> parse(QStringView text);
    // "📅 yyyy-MM-dd" and " HH:mm" when there is an hour.
    QString mark() const;
    // text, a blank and the mark; the mark alone for an empty text.
    QString appending(const QString& text) const;

    QDate calendarDate() const { return QDate(year, month, day); }  // invalid when it doesn't exist
    std::optional<qint64> daysFromToday(const QDateTime& now, const Calendar& calendar = {}) const;
    // The instant at the hour and minute, or at midnight; invalid when the date doesn't exist.
    QDateTime date(const Calendar& calendar = {}) const;
    // "Today", "Tomorrow", a weekday name within the week, else day and short month (and year
    // when it isn't this year); then the time when there is one.
    QString label(const QDateTime& now, const Calendar& calendar = {}, const QLocale& locale = QLocale()) const;

    // The tidying applied where a mark or a date phrase was cut out of a text: runs of blanks
    // and tabs become one blank, and blanks and stray punctuation go from both ends.
    static QString tidy(QStringView text);

    bool operator==(const TaskDue&) const = default;
    // Year, month, day, then hour with none as -1, then minute with none as 0: an all-day task
    // sorts before timed tasks of its day.
    bool operator<(const TaskDue& other) const;
};

struct TaskDue::Parsed {
    TaskDue due;
    QString text;
};

}  // namespace vuro
