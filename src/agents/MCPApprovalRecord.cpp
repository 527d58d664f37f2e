#include "agents/MCPApprovalRecord.h"

#include "agents/RecordJson.h"

namespace vuro {

QJsonObject MCPApprovalRecord::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("serverName"), serverName},
                       {QStringLiteral("toolTitle"), toolTitle},
                       {QStringLiteral("outcome"), Json::fromRaw(outcome)},
                       {QStringLiteral("decidedAt"), Json::fromDate(decidedAt)}};
    Json::putOptional(object, QStringLiteral("serverID"), serverID);
    Json::putOptional(object, QStringLiteral("toolName"), toolName);
    return object;
}

MCPApprovalRecord MCPApprovalRecord::fromJson(const QJsonObject& object) {
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("serverName")),
            Json::requireString(object, QStringLiteral("toolTitle")),
            Json::requireRaw<Outcome>(object, QStringLiteral("outcome")),
            Json::requireDate(object, QStringLiteral("decidedAt")),
            Json::optionalString(object, QStringLiteral("serverID")),
            Json::optionalString(object, QStringLiteral("toolName"))};
}

size_t qHash(const MCPApprovalRecord& record, size_t seed) { return qHash(record.toJson(), seed); }

}  // namespace vuro
