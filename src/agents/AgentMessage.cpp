#include "agents/AgentMessage.h"

#include "agents/RecordJson.h"

namespace vuro {

QJsonObject AgentMessage::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("agentID"), agentID},
                       {QStringLiteral("role"), Json::fromRaw(role)},
                       {QStringLiteral("text"), text},
                       {QStringLiteral("createdAt"), Json::fromDate(createdAt)},
                       {QStringLiteral("actions"), Json::fromRecords(actions)},
                       {QStringLiteral("attachments"), Json::fromRecords(attachments)},
                       {QStringLiteral("approvals"), Json::fromRecords(approvals)}};
    Json::putOptional(object, QStringLiteral("jobID"), jobID);
    Json::putOptional(object, QStringLiteral("jobTitle"), jobTitle);
    Json::putOptional(object, QStringLiteral("failure"), failure);
    Json::putOptional(object, QStringLiteral("resultNoteID"), resultNoteID);
    return object;
}

AgentMessage AgentMessage::fromJson(const QJsonObject& object) {
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("agentID")),
            Json::requireRaw<Role>(object, QStringLiteral("role")),
            Json::requireString(object, QStringLiteral("text")),
            Json::requireDate(object, QStringLiteral("createdAt")),
            Json::requireRecords<AgentAction>(object, QStringLiteral("actions")),
            Json::optionalString(object, QStringLiteral("jobID")),
            Json::optionalString(object, QStringLiteral("jobTitle")),
            Json::optionalString(object, QStringLiteral("failure")),
            Json::requireRecords<AgentAttachment>(object, QStringLiteral("attachments")),
            Json::requireRecords<MCPApprovalRecord>(object, QStringLiteral("approvals")),
            Json::optionalString(object, QStringLiteral("resultNoteID"))};
}

size_t qHash(const AgentMessage& message, size_t seed) { return qHash(message.toJson(), seed); }

}  // namespace vuro
