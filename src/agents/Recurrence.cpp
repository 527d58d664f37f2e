#include "agents/Recurrence.h"

#include "agents/Overloaded.h"
#include "agents/RecordJson.h"

#include <algorithm>

namespace vuro {
namespace {

const QString kHour = QStringLiteral("hour");
const QString kMinute = QStringLiteral("minute");

bool anyDay(QDate) { return true; }

// The calendar's weekday numbering: 1 is Sunday, 7 Saturday.
int calendarWeekday(QDate date) { return date.dayOfWeek() % 7 + 1; }

}  // namespace

std::optional<QDateTime> Recurrence::next(const QDateTime& after, const JobCalendar& calendar) const {
    return std::visit(
        Overloaded{
            [&](const Daily& r) { return calendar.nextTime(after, r.hour, r.minute, anyDay); },
            [&](const Weekdays& r) -> std::optional<QDateTime> {
                QDateTime from = after;
                for (int search = 0; search < 8; ++search) {
                    const auto found = calendar.nextTime(from, r.hour, r.minute, anyDay);
                    if (!found) return std::nullopt;
                    if (!calendar.isWeekend(*found)) return found;
                    from = *found;
                }
                return std::nullopt;
            },
            [&](const Weekly& r) -> std::optional<QDateTime> {
                if (r.weekday < 1 || r.weekday > 7) return std::nullopt;
                return calendar.nextTime(after, r.hour, r.minute,
                                         [&](QDate date) { return calendarWeekday(date) == r.weekday; });
            },
            [&](const EveryHours& r) -> std::optional<QDateTime> {
                return after.addSecs(qint64(std::max(r.count, 1)) * 3600);
            },
        },
        value);
}

QJsonObject Recurrence::toJson() const {
    return std::visit(
        Overloaded{
            [](const Daily& r) {
                return QJsonObject{{QStringLiteral("daily"), QJsonObject{{kHour, r.hour}, {kMinute, r.minute}}}};
            },
            [](const Weekdays& r) {
                return QJsonObject{{QStringLiteral("weekdays"), QJsonObject{{kHour, r.hour}, {kMinute, r.minute}}}};
            },
            [](const Weekly& r) {
                return QJsonObject{{QStringLiteral("weekly"), QJsonObject{{QStringLiteral("weekday"), r.weekday},
                                                                          {kHour, r.hour},
                                                                          {kMinute, r.minute}}}};
            },
            [](const EveryHours& r) {
                return QJsonObject{{QStringLiteral("everyHours"), QJsonObject{{QStringLiteral("_0"), r.count}}}};
            },
        },
        value);
}

Recurrence Recurrence::fromJson(const QJsonObject& object) {
    const auto [name, value] = Json::singleKey(object);
    const QJsonObject payload = Json::casePayload(value);
    if (name == QLatin1String("daily"))
        return {Daily{Json::requireInt(payload, kHour), Json::requireInt(payload, kMinute)}};
    if (name == QLatin1String("weekdays"))
        return {Weekdays{Json::requireInt(payload, kHour), Json::requireInt(payload, kMinute)}};
    if (name == QLatin1String("weekly"))
        return {Weekly{Json::requireInt(payload, QStringLiteral("weekday")), Json::requireInt(payload, kHour),
                       Json::requireInt(payload, kMinute)}};
    if (name == QLatin1String("everyHours")) return {EveryHours{Json::requireInt(payload, QStringLiteral("_0"))}};
    Json::unknownCase();
}

size_t qHash(const Recurrence& recurrence, size_t seed) { return qHash(recurrence.toJson(), seed); }

}  // namespace vuro
