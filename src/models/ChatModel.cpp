#include "models/ChatModel.h"

namespace vuro {

QList<AgentEvent> actionEvents(const AgentToolOutcome& outcome) {
    QList<AgentEvent> events;
    if (outcome.action) events.append(AgentEvent::action(*outcome.action));
    for (const AgentAction& action : outcome.moreActions) events.append(AgentEvent::action(action));
    return events;
}

}  // namespace vuro
