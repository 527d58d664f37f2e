#pragma once

#include "agents/Agent.h"
#include "agents/AgentToolCall.h"
#include "agents/AgentToolOutcome.h"
#include "agents/AgentToolDefinition.h"

#include <functional>
#include <memory>
#include <optional>
#include <qcoro/qcorotask.h>

namespace vuro {

// The tools with which an agent schedules, changes and cancels its own jobs during one run.
// AgentCenter makes one per run through its jobToolboxFor, when the run has a request. The calls
// named schedule_job, update_job and cancel_job go here before any other toolbox sees them.
// A refusal is an output for the model, never an exception. Main thread.
class AgentJobToolbox {
public:
    struct Setup {
        Agent agent;
        QString request;  // the last turn's text, trimmed
        bool onDevice = false;
        bool turkish = false;
        std::optional<QString> jobID;  // the job this run serves, if any
    };
    using Make = std::function<std::unique_ptr<AgentJobToolbox>(Setup)>;

    // schedule_job, update_job, cancel_job.
    static bool isJobTool(const QString& name);

    virtual ~AgentJobToolbox() = default;

    // The job tools offered for this request; none leaves them out of the run.
    virtual QList<AgentToolDefinition> tools() const = 0;
    // The directions added to the system text when any job tool is offered.
    virtual QString prompt() const = 0;
    virtual QCoro::Task<AgentToolOutcome> run(AgentToolCall call) = 0;
};

}  // namespace vuro
