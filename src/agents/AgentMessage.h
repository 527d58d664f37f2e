#pragma once

#include "agents/AgentAction.h"
#include "agents/AgentAttachment.h"
#include "agents/MCPApprovalRecord.h"
#include "agents/RawEnum.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>

namespace vuro {

// One message of an agent's conversation.
struct AgentMessage {
    // A notice is a line from the program itself and never reaches a model.
    enum class Role { user, agent, notice };

    QString id;
    QString agentID;
    Role role = Role::user;
    QString text;
    QDateTime createdAt;
    QList<AgentAction> actions;  // what this reply changed
    std::optional<QString> jobID;     // the job that produced it
    std::optional<QString> jobTitle;  // the job's title at that time
    std::optional<QString> failure;
    QList<AgentAttachment> attachments;
    QList<MCPApprovalRecord> approvals;  // what was asked and answered during this reply
    std::optional<QString> resultNoteID;  // the note a job's result became

    QJsonObject toJson() const;
    static AgentMessage fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const AgentMessage&) const = default;
};

template <>
struct RawNames<AgentMessage::Role> {
    static constexpr const char* type = "Role";
    static constexpr std::array cases{
        std::pair{AgentMessage::Role::user, "user"},
        std::pair{AgentMessage::Role::agent, "agent"},
        std::pair{AgentMessage::Role::notice, "notice"},
    };
};

size_t qHash(const AgentMessage& message, size_t seed = 0);

}  // namespace vuro
