#pragma once

#include "agents/Agent.h"
#include "agents/AgentJob.h"
#include "agents/AgentMessage.h"

#include <QList>
#include <QStringList>

namespace vuro {

// Where agents, their jobs and their conversations are kept. Every operation may throw a
// vuro::Error whose message is shown to the user (a DecodingError or a cipher error for a row
// that can't be read back: a load fails as a whole rather than hand out part of a list that is
// then saved over). All calls are made on the main thread.
class AgentPersistence {
public:
    virtual ~AgentPersistence() = default;

    // Oldest first (the built-in agent, dated in the distant past, leads).
    virtual QList<Agent> loadAgents() = 0;
    virtual void saveAgent(const Agent& agent) = 0;  // insert or replace by id
    // Removes the agent with its jobs and its conversation.
    virtual void deleteAgent(const QString& id) = 0;

    // In the order they were first saved.
    virtual QList<AgentJob> loadJobs() = 0;
    virtual void saveJob(const AgentJob& job) = 0;  // insert or replace by id; keeps its place
    virtual void deleteJob(const QString& id) = 0;

    // One agent's conversation, oldest first.
    virtual QList<AgentMessage> loadMessages(const QString& agentID) = 0;
    virtual void saveMessage(const AgentMessage& message) = 0;  // insert or replace by id
    virtual void deleteMessages(const QStringList& ids) = 0;
    virtual void clearMessages(const QString& agentID) = 0;
};

}  // namespace vuro
