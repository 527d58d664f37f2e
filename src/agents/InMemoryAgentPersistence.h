#pragma once

#include "agents/AgentPersistence.h"
#include "base/Error.h"

#include <optional>

namespace vuro {

// Agents, jobs and messages kept in lists: the agent store of a test host and of a program whose
// database didn't open, and the twin tests use to watch what is written. It keeps the orders the
// database gives. writeCount counts the writes that went through; failNextWrite makes the next
// write throw that error once instead, failNextLoad the next load.
class InMemoryAgentPersistence : public AgentPersistence {
public:
    QList<Agent> agents;
    QList<AgentJob> jobs;
    QList<AgentMessage> messages;
    int writeCount = 0;
    std::optional<Error> failNextWrite;
    std::optional<Error> failNextLoad;

    QList<Agent> loadAgents() override;
    void saveAgent(const Agent& agent) override;
    void deleteAgent(const QString& id) override;

    QList<AgentJob> loadJobs() override;
    void saveJob(const AgentJob& job) override;
    void deleteJob(const QString& id) override;

    QList<AgentMessage> loadMessages(const QString& agentID) override;
    void saveMessage(const AgentMessage& message) override;
    void deleteMessages(const QStringList& ids) override;
    void clearMessages(const QString& agentID) override;

private:
    void beginWrite();
    void beginLoad();
};

}  // namespace vuro
