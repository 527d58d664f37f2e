#pragma once

#include "agents/Agent.h"
#include "agents/AgentRouteBudget.h"
#include "agents/AgentToolCall.h"
#include "agents/AgentToolOutcome.h"
#include "agents/AgentToolDefinition.h"
#include "agents/MCPApprovalDecision.h"
#include "agents/MCPApprovalRequest.h"
#include "agents/MCPToolRef.h"

#include <QSet>
#include <functional>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>

namespace vuro {

// What an agent can do beyond its notes during one run (the web, skills, connected MCP servers):
// more tools for the model, a piece of the system text, and the gate at which a connected tool
// runs, is asked about or is skipped. AgentCenter makes one per run through its abilitiesFor and
// asks the user on the abilities' behalf through Setup::approve. A refusal is an output for the
// model, never an exception. Main thread.
class AgentAbilities {
public:
    // Asks the user and waits for the answer (the center records it on the reply).
    using Approve = std::function<QCoro::Task<MCPApprovalDecision>(MCPApprovalRequest)>;

    // What a run hands to the abilities it makes.
    struct Setup {
        Agent agent;
        AgentRouteBudget budget;
        bool turkish = false;
        // Empty when nobody can be asked: a job running while the user is away.
        Approve approve;
        // Tools this job may use without asking; onPreApproved is told of each such use.
        QSet<MCPToolRef> preApproved;
        std::function<void(const MCPApprovalRequest&)> onPreApproved;
    };
    // Making may wait, for the agent's servers to connect.
    using Make = std::function<QCoro::Task<std::unique_ptr<AgentAbilities>>(Setup)>;

    virtual ~AgentAbilities() = default;

    virtual QList<AgentToolDefinition> tools() const = 0;
    // An addition to the system text, if any.
    virtual std::optional<QString> prompt() const = 0;
    // The outcome of a call, or none when the name isn't one of these tools.
    virtual QCoro::Task<std::optional<AgentToolOutcome>> run(AgentToolCall call) = 0;
    // The calls that weren't made because nobody could approve them, or nobody answered in time.
    virtual QList<MCPApprovalRequest> unattended() const = 0;
};

}  // namespace vuro
