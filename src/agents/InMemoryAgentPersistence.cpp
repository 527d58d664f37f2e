#include "agents/InMemoryAgentPersistence.h"

#include <algorithm>

namespace vuro {
namespace {

template <typename T>
void upsert(QList<T>& list, const T& record) {
    const auto it = std::find_if(list.begin(), list.end(), [&](const T& each) { return each.id == record.id; });
    if (it == list.end())
        list.append(record);
    else
        *it = record;
}

void throwOnce(std::optional<Error>& failure) {
    if (!failure) return;
    const Error error = *failure;
    failure.reset();
    throw error;
}

}  // namespace

void InMemoryAgentPersistence::beginWrite() {
    throwOnce(failNextWrite);
    ++writeCount;
}

void InMemoryAgentPersistence::beginLoad() { throwOnce(failNextLoad); }

QList<Agent> InMemoryAgentPersistence::loadAgents() {
    beginLoad();
    QList<Agent> sorted = agents;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Agent& a, const Agent& b) { return a.createdAt < b.createdAt; });
    return sorted;
}

void InMemoryAgentPersistence::saveAgent(const Agent& agent) {
    beginWrite();
    upsert(agents, agent);
}

void InMemoryAgentPersistence::deleteAgent(const QString& id) {
    beginWrite();
    agents.removeIf([&](const Agent& agent) { return agent.id == id; });
    jobs.removeIf([&](const AgentJob& job) { return job.agentID == id; });
    messages.removeIf([&](const AgentMessage& message) { return message.agentID == id; });
}

QList<AgentJob> InMemoryAgentPersistence::loadJobs() {
    beginLoad();
    return jobs;
}

void InMemoryAgentPersistence::saveJob(const AgentJob& job) {
    beginWrite();
    upsert(jobs, job);
}

void InMemoryAgentPersistence::deleteJob(const QString& id) {
    beginWrite();
    jobs.removeIf([&](const AgentJob& job) { return job.id == id; });
}

QList<AgentMessage> InMemoryAgentPersistence::loadMessages(const QString& agentID) {
    beginLoad();
    QList<AgentMessage> conversation;
    for (const AgentMessage& message : messages)
        if (message.agentID == agentID) conversation.append(message);
    std::stable_sort(conversation.begin(), conversation.end(),
                     [](const AgentMessage& a, const AgentMessage& b) { return a.createdAt < b.createdAt; });
    return conversation;
}

void InMemoryAgentPersistence::saveMessage(const AgentMessage& message) {
    beginWrite();
    upsert(messages, message);
}

void InMemoryAgentPersistence::deleteMessages(const QStringList& ids) {
    beginWrite();
    messages.removeIf([&](const AgentMessage& message) { return ids.contains(message.id); });
}

void InMemoryAgentPersistence::clearMessages(const QString& agentID) {
    beginWrite();
    messages.removeIf([&](const AgentMessage& message) { return message.agentID == agentID; });
}

}  // namespace vuro
