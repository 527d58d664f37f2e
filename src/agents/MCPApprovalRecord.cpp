#include "agents/MCPApprovalRecord.h"

#include "agents/RecordJson.h"

namespace vuro {

MCPApprovalRecord MCPApprovalRecord::of(const MCPApprovalRequest& request, MCPApprovalDecision decision,
                                        QDateTime decidedAt) {
    const Outcome outcome = [decision] {
        switch (decision) {
        case MCPApprovalDecision::allowOnce: return Outcome::allowed;
        case MCPApprovalDecision::allowAlways: return Outcome::allowedAlways;
        case MCPApprovalDecision::deny: return Outcome::denied;
        case MCPApprovalDecision::noAnswer: return Outcome::noAnswer;
        }
        return Outcome::denied;
    }();
    return {request.id, request.serverName, request.toolTitle, outcome, std::move(decidedAt), request.serverID,
            request.toolName};
}

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
