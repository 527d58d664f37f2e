#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>
#include <QTimeZone>
#include <optional>

namespace vuro {

// The Gregorian calendar in one time zone: how an instant reads as a wall-clock date and time,
// and which instant a wall-clock date and time stands for. A default Calendar follows the
// system's local time (and its changes); tests give an explicit zone. A copyable value.
class Calendar {
public:
    Calendar() = default;
    explicit Calendar(QTimeZone zone) : _zone(std::move(zone)) {}

    QDate dateOf(const QDateTime& moment) const { return inZone(moment).date(); }
    QTime timeOf(const QDateTime& moment) const { return inZone(moment).time(); }
    QDateTime inZone(const QDateTime& moment) const {
        return _zone ? moment.toTimeZone(*_zone) : moment.toLocalTime();
    }
    // A wall-clock time that a clock change skips resolves to the instant just after the gap.
    QDateTime at(QDate date, QTime time = QTime(0, 0)) const {
        return _zone ? QDateTime(date, time, *_zone) : QDateTime(date, time);
    }

private:
    std::optional<QTimeZone> _zone;
};

}  // namespace vuro
