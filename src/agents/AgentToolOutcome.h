#pragma once

#include "agents/AgentAction.h"

#include <QList>
#include <QString>
#include <optional>

namespace vuro {

// What a tool gives back. A refusal or a bad argument is an ordinary output, never an error:
// the model reads the words and recovers.
struct AgentToolOutcome {
    QString output;                     // goes back to the model
    std::optional<AgentAction> action;  // the undoable change it made
    QList<AgentAction> moreActions;     // further changes of the same call

    bool operator==(const AgentToolOutcome&) const = default;
};

size_t qHash(const AgentToolOutcome& outcome, size_t seed = 0);

}  // namespace vuro
