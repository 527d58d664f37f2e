#pragma once

#include "agents/JobCalendar.h"

#include <QDateTime>
#include <QJsonObject>
#include <optional>
#include <variant>

namespace vuro {

// When a repeating job falls due. Hours and minutes are wall-clock time in the job calendar.
struct Recurrence {
    struct Daily {
        int hour = 0;
        int minute = 0;
        bool operator==(const Daily&) const = default;
    };
    // Every day the calendar doesn't count as weekend.
    struct Weekdays {
        int hour = 0;
        int minute = 0;
        bool operator==(const Weekdays&) const = default;
    };
    // weekday counts from 1 for Sunday to 7 for Saturday.
    struct Weekly {
        int weekday = 1;
        int hour = 0;
        int minute = 0;
        bool operator==(const Weekly&) const = default;
    };
    // Every count hours of elapsed time, whatever the clock face does; less than 1 counts as 1.
    struct EveryHours {
        int count = 1;
        bool operator==(const EveryHours&) const = default;
    };

    std::variant<Daily, Weekdays, Weekly, EveryHours> value;

    // The next date strictly after `after`, or none when the rule can't be met.
    std::optional<QDateTime> next(const QDateTime& after, const JobCalendar& calendar) const;

    QJsonObject toJson() const;
    static Recurrence fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const Recurrence&) const = default;
};

size_t qHash(const Recurrence& recurrence, size_t seed = 0);

}  // namespace vuro
