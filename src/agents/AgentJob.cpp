#include "agents/AgentJob.h"

#include "agents/Overloaded.h"
#include "agents/RecordJson.h"

#include <algorithm>

namespace vuro {
namespace {

constexpr qint64 kGraceSeconds = 86400;
const QString kPayload = QStringLiteral("_0");

}  // namespace

QJsonObject AgentJob::Trigger::toJson() const {
    return std::visit(
        Overloaded{
            [](const Once& t) { return QJsonObject{{QStringLiteral("once"), QJsonObject{{kPayload, Json::fromDate(t.date)}}}}; },
            [](const Repeating& t) {
                return QJsonObject{{QStringLiteral("repeating"), QJsonObject{{kPayload, t.recurrence.toJson()}}}};
            },
            [](const Now&) { return QJsonObject{{QStringLiteral("now"), QJsonObject{}}}; },
        },
        value);
}

AgentJob::Trigger AgentJob::Trigger::fromJson(const QJsonObject& object) {
    const auto [name, value] = Json::singleKey(object);
    const QJsonObject payload = Json::casePayload(value);
    if (name == QLatin1String("once")) return {Once{Json::requireDate(payload, kPayload)}};
    if (name == QLatin1String("repeating"))
        return {Repeating{Recurrence::fromJson(Json::requireObject(payload, kPayload))}};
    if (name == QLatin1String("now")) return {Now{}};
    Json::unknownCase();
}

std::optional<QDateTime> AgentJob::nextRun(const QDateTime& now, const JobCalendar& calendar) const {
    if (!enabled) return std::nullopt;
    if (!trigger.isRepeating() && (lastRun || lastStatus == Status::missed)) return std::nullopt;
    return std::visit(
        Overloaded{
            [&](const Trigger::Once& t) -> std::optional<QDateTime> {
                if (t.date < now.addSecs(-kGraceSeconds)) return std::nullopt;
                return t.date;
            },
            [&](const Trigger::Now&) -> std::optional<QDateTime> { return createdAt; },
            [&](const Trigger::Repeating& t) {
                const QDateTime base = std::max(createdAt, lastRun.value_or(createdAt));
                const QDateTime from = std::max(base, now.addSecs(-kGraceSeconds));
                return t.recurrence.next(from, calendar);
            },
        },
        trigger.value);
}

QList<AgentJob> AgentJob::dueJobs(const QList<AgentJob>& jobs, const QDateTime& now, const JobCalendar& calendar) {
    QList<std::pair<QDateTime, AgentJob>> due;
    for (const AgentJob& job : jobs)
        if (const auto at = job.nextRun(now, calendar); at && *at <= now) due.append({*at, job});
    std::stable_sort(due.begin(), due.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    QList<AgentJob> result;
    result.reserve(due.size());
    for (auto& [at, job] : due) result.append(std::move(job));
    return result;
}

QJsonObject AgentJob::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("agentID"), agentID},
                       {QStringLiteral("title"), title},
                       {QStringLiteral("instruction"), instruction},
                       {QStringLiteral("trigger"), trigger.toJson()},
                       {QStringLiteral("enabled"), enabled},
                       {QStringLiteral("createdAt"), Json::fromDate(createdAt)},
                       {QStringLiteral("attachments"), Json::fromRecords(attachments)}};
    Json::putOptional(object, QStringLiteral("noteID"), noteID);
    Json::putOptional(object, QStringLiteral("lastRun"), lastRun);
    if (lastStatus) object.insert(QStringLiteral("lastStatus"), Json::fromRaw(*lastStatus));
    Json::putOptional(object, QStringLiteral("lastError"), lastError);
    if (toolPermission) object.insert(QStringLiteral("toolPermission"), toolPermission->toJson());
    return object;
}

AgentJob AgentJob::fromJson(const QJsonObject& object) {
    std::optional<JobToolPermission> permission;
    if (const auto p = Json::optionalObject(object, QStringLiteral("toolPermission")))
        permission = JobToolPermission::fromJson(*p);
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("agentID")),
            Json::requireString(object, QStringLiteral("title")),
            Json::requireString(object, QStringLiteral("instruction")),
            Json::optionalString(object, QStringLiteral("noteID")),
            Trigger::fromJson(Json::requireObject(object, QStringLiteral("trigger"))),
            Json::requireBool(object, QStringLiteral("enabled")),
            Json::requireDate(object, QStringLiteral("createdAt")),
            Json::optionalDate(object, QStringLiteral("lastRun")),
            Json::optionalRaw<Status>(object, QStringLiteral("lastStatus")),
            Json::optionalString(object, QStringLiteral("lastError")),
            Json::requireRecords<AgentAttachment>(object, QStringLiteral("attachments")),
            permission};
}

size_t qHash(const AgentJob::Trigger& trigger, size_t seed) { return qHash(trigger.toJson(), seed); }
size_t qHash(const AgentJob& job, size_t seed) { return qHash(job.toJson(), seed); }

}  // namespace vuro
