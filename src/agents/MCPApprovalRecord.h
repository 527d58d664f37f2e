#pragma once

#include "agents/MCPApprovalDecision.h"
#include "agents/MCPApprovalRequest.h"
#include "agents/RawEnum.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <optional>

namespace vuro {

// What was asked about one MCP tool call during a reply and how it was answered, kept on the
// message for the conversation's history.
struct MCPApprovalRecord {
    enum class Outcome { allowed, allowedAlways, denied, noAnswer, allowedByJob };

    QString id;
    QString serverName;
    QString toolTitle;
    Outcome outcome = Outcome::denied;
    QDateTime decidedAt;
    std::optional<QString> serverID;
    std::optional<QString> toolName;

    // The record of a request and the user's decision on it.
    static MCPApprovalRecord of(const MCPApprovalRequest& request, MCPApprovalDecision decision, QDateTime decidedAt);

    QJsonObject toJson() const;
    static MCPApprovalRecord fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const MCPApprovalRecord&) const = default;
};

template <>
struct RawNames<MCPApprovalRecord::Outcome> {
    static constexpr const char* type = "Outcome";
    static constexpr std::array cases{
        std::pair{MCPApprovalRecord::Outcome::allowed, "allowed"},
        std::pair{MCPApprovalRecord::Outcome::allowedAlways, "allowedAlways"},
        std::pair{MCPApprovalRecord::Outcome::denied, "denied"},
        std::pair{MCPApprovalRecord::Outcome::noAnswer, "noAnswer"},
        std::pair{MCPApprovalRecord::Outcome::allowedByJob, "allowedByJob"},
    };
};

size_t qHash(const MCPApprovalRecord& record, size_t seed = 0);

}  // namespace vuro
