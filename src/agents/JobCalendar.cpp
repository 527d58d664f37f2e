#include "agents/JobCalendar.h"

#include <QLocale>
#include <algorithm>

namespace vuro {

JobCalendar JobCalendar::current() {
    JobCalendar calendar;
    const QList<Qt::DayOfWeek> days = QLocale::system().weekdays();
    if (!days.isEmpty()) calendar.workDays = days;
    return calendar;
}

bool JobCalendar::isWeekend(const QDateTime& instant) const {
    return !workDays.contains(static_cast<Qt::DayOfWeek>(instant.toTimeZone(zone).date().dayOfWeek()));
}

QDateTime JobCalendar::firstInstant(QDate date, QTime time) const {
    // The wall-clock fields read as if they were UTC; subtracting an offset the zone really has
    // at the result gives an occurrence. Offsets a day either side cover any one transition.
    const QDateTime naive(date, time, Qt::UTC);
    const int offsets[] = {zone.offsetFromUtc(naive.addSecs(-86400)), zone.offsetFromUtc(naive),
                           zone.offsetFromUtc(naive.addSecs(86400))};
    std::optional<QDateTime> first;
    QDateTime earliestGuess = naive.addSecs(-offsets[0]);
    for (int offset : offsets) {
        const QDateTime instant = naive.addSecs(-offset);
        earliestGuess = std::min(earliestGuess, instant);
        if (zone.offsetFromUtc(instant) == offset && (!first || instant < *first)) first = instant;
    }
    if (first) return first->toTimeZone(zone);
    // Skipped by a jump forward: the first time that exists is the moment of the jump.
    const QTimeZone::OffsetData jump = zone.nextTransition(earliestGuess.addSecs(-1));
    return jump.atUtc.toTimeZone(zone);
}

}  // namespace vuro
