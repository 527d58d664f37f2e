#include "agents/InMemoryAgentPersistence.h"
#include "support/AgentSamples.h"
#include "support/Printers.h"

#include <gtest/gtest.h>
#include <memory>

namespace vuro {
namespace {

using namespace test;

// One agent store under test. reopen() lets the database forget everything but its file.
class StoreUnderTest {
public:
    virtual ~StoreUnderTest() = default;
    virtual AgentPersistence& persistence() = 0;
    virtual void reopen() {}
};

class MemoryStore : public StoreUnderTest {
public:
    AgentPersistence& persistence() override { return _persistence; }

private:
    InMemoryAgentPersistence _persistence;
};

using Factory = std::function<std::unique_ptr<StoreUnderTest>()>;

class AgentPersistenceContract : public testing::TestWithParam<std::pair<const char*, Factory>> {
protected:
    void SetUp() override { store = GetParam().second(); }
    AgentPersistence& persistence() { return store->persistence(); }

    std::unique_ptr<StoreUnderTest> store;
};

AgentMessage messageAt(const QString& id, const QString& agentID, const char* when) {
    AgentMessage message;
    message.id = id;
    message.agentID = agentID;
    message.text = id;
    message.createdAt = at(when);
    return message;
}

TEST_P(AgentPersistenceContract, AgentsComeBackWholeOldestFirst) {
    Agent plain;
    plain.id = QStringLiteral("AG2");
    plain.createdAt = at("2026-02-01T00:00:00.000Z");
    Agent provider = fullAgent();  // created 2026-01-01
    provider.cliTool.reset();
    provider.id = QStringLiteral("AG3");
    provider.createdAt = at("2026-03-01T00:00:00.000Z");
    persistence().saveAgent(plain);
    persistence().saveAgent(fullAgent());
    persistence().saveAgent(Agent::notesAgent());
    persistence().saveAgent(provider);
    store->reopen();
    EXPECT_EQ(persistence().loadAgents(), (QList<Agent>{Agent::notesAgent(), fullAgent(), plain, provider}));

    Agent edited = fullAgent();
    edited.memory = QStringLiteral("- likes coffee now");
    edited.face.reset();
    edited.avatarImage.reset();
    edited.cliTool.reset();
    edited.skills.clear();
    persistence().saveAgent(edited);
    store->reopen();
    const QList<Agent> agents = persistence().loadAgents();
    ASSERT_EQ(agents.size(), 4);
    EXPECT_EQ(agents[1], edited);
}

TEST_P(AgentPersistenceContract, JobsComeBackWholeInTheOrderFirstSaved) {
    QList<AgentJob> jobs;
    const QList<AgentJob::Trigger> triggers = {
        {AgentJob::Trigger::Once{at("2026-05-01T09:30:00.250Z")}},
        {AgentJob::Trigger::Now{}},
        {AgentJob::Trigger::Repeating{{Recurrence::Daily{7, 5}}}},
        {AgentJob::Trigger::Repeating{{Recurrence::Weekdays{23, 59}}}},
        {AgentJob::Trigger::Repeating{{Recurrence::EveryHours{0}}}},
    };
    jobs.append(fullJob());
    jobs.append(bareJob());
    for (const AgentJob::Trigger& trigger : triggers) {
        AgentJob job = bareJob();
        job.id = newId();
        job.trigger = trigger;
        jobs.append(job);
    }
    for (const AgentJob& job : jobs) persistence().saveJob(job);
    store->reopen();
    EXPECT_EQ(persistence().loadJobs(), jobs);

    jobs[0].lastStatus = AgentJob::Status::missed;
    jobs[0].lastRun.reset();
    jobs[0].toolPermission.reset();
    jobs[0].attachments.clear();
    jobs[0].noteID.reset();
    persistence().saveJob(jobs[0]);
    persistence().deleteJob(jobs[1].id);
    persistence().deleteJob(QStringLiteral("no such job"));
    jobs.removeAt(1);
    store->reopen();
    EXPECT_EQ(persistence().loadJobs(), jobs) << "a saved job keeps its place";
}

TEST_P(AgentPersistenceContract, ConversationsAreKeptPerAgentOldestFirst) {
    AgentMessage full = fullMessage();  // agent AG1, 09:30:01.001
    persistence().saveMessage(messageAt(QStringLiteral("late"), QStringLiteral("AG1"), "2026-03-02T10:00:00.000Z"));
    persistence().saveMessage(full);
    persistence().saveMessage(messageAt(QStringLiteral("early"), QStringLiteral("AG1"), "2026-03-02T09:00:00.000Z"));
    persistence().saveMessage(messageAt(QStringLiteral("other"), QStringLiteral("AG2"), "2026-03-02T09:10:00.000Z"));
    AgentMessage notice = messageAt(QStringLiteral("notice"), QStringLiteral("AG1"), "2026-03-02T10:00:00.000Z");
    notice.role = AgentMessage::Role::notice;
    persistence().saveMessage(notice);
    store->reopen();
    QList<AgentMessage> expected{
        messageAt(QStringLiteral("early"), QStringLiteral("AG1"), "2026-03-02T09:00:00.000Z"), full,
        messageAt(QStringLiteral("late"), QStringLiteral("AG1"), "2026-03-02T10:00:00.000Z"), notice};
    EXPECT_EQ(persistence().loadMessages(QStringLiteral("AG1")), expected);

    full.actions[0].undone = true;
    full.text += QStringLiteral(" (undone)");
    persistence().saveMessage(full);
    persistence().deleteMessages({QStringLiteral("early"), QStringLiteral("missing")});
    store->reopen();
    expected[1] = full;
    expected.removeFirst();
    EXPECT_EQ(persistence().loadMessages(QStringLiteral("AG1")), expected);

    persistence().clearMessages(QStringLiteral("AG1"));
    store->reopen();
    EXPECT_TRUE(persistence().loadMessages(QStringLiteral("AG1")).isEmpty());
    EXPECT_EQ(persistence().loadMessages(QStringLiteral("AG2")).size(), 1);
}

TEST_P(AgentPersistenceContract, DeletingAnAgentTakesItsJobsAndConversationAlong) {
    Agent kept;
    kept.id = QStringLiteral("AG2");
    persistence().saveAgent(fullAgent());
    persistence().saveAgent(kept);
    AgentJob keptJob = bareJob();
    keptJob.agentID = kept.id;
    persistence().saveJob(fullJob());  // agent AG1
    persistence().saveJob(keptJob);
    persistence().saveMessage(fullMessage());
    persistence().saveMessage(messageAt(QStringLiteral("M9"), kept.id, "2026-03-02T09:00:00.000Z"));

    persistence().deleteAgent(fullAgent().id);
    persistence().deleteAgent(QStringLiteral("no such agent"));
    store->reopen();
    EXPECT_EQ(persistence().loadAgents(), QList<Agent>{kept});
    EXPECT_EQ(persistence().loadJobs(), QList<AgentJob>{keptJob});
    EXPECT_TRUE(persistence().loadMessages(fullAgent().id).isEmpty());
    EXPECT_EQ(persistence().loadMessages(kept.id).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Stores, AgentPersistenceContract,
                         testing::Values(std::pair<const char*, Factory>{
                             "memory", [] { return std::make_unique<MemoryStore>(); }}),
                         [](const auto& store) { return std::string(store.param.first); });

TEST(InMemoryAgentPersistenceTest, FailuresAreOneShot) {
    InMemoryAgentPersistence persistence;
    persistence.failNextWrite = Error(QStringLiteral("Disk full."));
    EXPECT_THROW(persistence.saveAgent(fullAgent()), Error);
    EXPECT_TRUE(persistence.agents.isEmpty());
    persistence.saveAgent(fullAgent());
    EXPECT_EQ(persistence.writeCount, 1);
    persistence.failNextLoad = Error(QStringLiteral("Gone."));
    EXPECT_THROW(persistence.loadJobs(), Error);
    EXPECT_EQ(persistence.loadAgents().size(), 1);
}

}  // namespace
}  // namespace vuro
