#pragma once

#include "agents/Agent.h"
#include "agents/AgentMessage.h"
#include "agents/AgentRouteBudget.h"
#include "models/ChatTurn.h"

#include <QDateTime>
#include <QList>

namespace vuro {

// What a model is told before and with a conversation: the system text composed from the
// agent's persona, directions, memory and access, and the conversation cut to a budget of
// characters. Pure functions; main thread (the date words follow the locale).
class AgentPrompt {
public:
    static QString systemText(const Agent& agent, const AgentRouteBudget& budget, const QDateTime& now, bool turkish);

    // The newest messages that fit the budget, oldest first, opening with a user turn. Notices
    // never go; the newest message always does, cut to the budget when longer. A user's
    // attachments come as pending content.
    static QList<ChatTurn> turns(const QList<AgentMessage>& messages, qsizetype budget);
};

}  // namespace vuro
