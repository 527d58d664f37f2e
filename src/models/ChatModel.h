#pragma once

#include "agents/AgentAttachment.h"
#include "agents/AgentToolCall.h"
#include "agents/AgentToolOutcome.h"
#include "agents/AgentToolDefinition.h"
#include "models/AIRoute.h"
#include "models/AgentEvent.h"
#include "models/ChatTurn.h"

#include <QList>
#include <functional>
#include <optional>
#include <qcoro/qcoroasyncgenerator.h>
#include <qcoro/qcorotask.h>

namespace vuro {

// Runs one tool for a back-end. Called one tool at a time, in the order of the calls.
using RunTool = std::function<QCoro::Task<AgentToolOutcome>(AgentToolCall)>;

// A model back-end for one agent run. Each back-end owns its tool loop, because each speaks its
// own wire format and has its own limit. A model is a value built for one run and holds no
// conversation: everything that lives across rounds lives inside streamReply.
// Main thread.
class ChatModel {
public:
    virtual ~ChatModel() = default;

    virtual AIRoute route() const = 0;
    // The words to show when this model can't run now (no key, no model), without asking the
    // network; none when it can.
    virtual std::optional<QString> availabilityProblem() const = 0;
    // The attachment kinds this model takes as native content; the rest must reach it as text.
    virtual QList<AgentAttachment::Kind> nativeAttachments() const = 0;

    // The reply as a stream of events. It never fails at once: every failure, also one in
    // forming the request, ends the stream with an error (AIProviderError, ChatModelError or
    // another Error), and events yielded before it stay valid. Destroying the stream stops the
    // run. The stream copies what it needs: the model may go away while it runs.
    virtual QCoro::AsyncGenerator<AgentEvent> streamReply(QString system, QList<ChatTurn> turns,
                                                          QList<AgentToolDefinition> tools, RunTool runTool) const = 0;
};

}  // namespace vuro

namespace vuro {

// The action events of a tool's outcome, in the order a back-end reports them.
QList<AgentEvent> actionEvents(const AgentToolOutcome& outcome);

}  // namespace vuro
