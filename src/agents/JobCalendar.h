#pragma once

#include <QDateTime>
#include <QList>
#include <QTimeZone>
#include <optional>

namespace vuro {

// The calendar a job's schedule is read in: a time zone for the clock face and the days that
// count as working days. Searches run forward; a wall-clock time that a daylight-saving jump
// skips becomes the first time that exists after the jump, and a time that occurs twice is
// taken at its first occurrence.
struct JobCalendar {
    QTimeZone zone = QTimeZone::systemTimeZone();
    QList<Qt::DayOfWeek> workDays = {Qt::Monday, Qt::Tuesday, Qt::Wednesday, Qt::Thursday, Qt::Friday};

    // The system's zone with the working days of the user's locale.
    static JobCalendar current();

    bool isWeekend(const QDateTime& instant) const;

    // The first instant after `after` whose wall-clock time in `zone` is hour:minute:00, on a day
    // that `day` accepts; none when hour or minute is out of range or no day within 8 is accepted.
    template <typename DayTest>
    std::optional<QDateTime> nextTime(const QDateTime& after, int hour, int minute, DayTest day) const {
        if (hour < 0 || hour > 23 || minute < 0 || minute > 59) return std::nullopt;
        const QDate start = after.toTimeZone(zone).date();
        for (int i = 0; i <= 8; ++i) {
            const QDate date = start.addDays(i);
            if (!day(date)) continue;
            const QDateTime candidate = firstInstant(date, QTime(hour, minute));
            if (candidate > after) return candidate;
        }
        return std::nullopt;
    }

    // The instant of a wall-clock time on a date: its first occurrence, or the end of the jump
    // when the clock skips it.
    QDateTime firstInstant(QDate date, QTime time) const;
};

}  // namespace vuro
