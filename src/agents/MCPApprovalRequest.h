#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace vuro {

// A question to the user: may this agent call this tool of this server, with these arguments?
// It is open while it stands in AgentCenter::pendingApprovals.
struct MCPApprovalRequest {
    // One argument of the call as the user is shown it.
    struct Detail {
        QString key;
        QString value;

        bool operator==(const Detail&) const = default;
    };

    QString id;  // a new UUID for each question
    QString agentID;
    QString serverID;
    QString serverName;
    QString toolName;
    QString toolTitle;
    QList<Detail> details;
    std::optional<QString> jobTitle;  // set when a job asks

    bool operator==(const MCPApprovalRequest&) const = default;
};

}  // namespace vuro
