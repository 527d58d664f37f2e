#include "agents/InMemoryAgentPersistence.h"
#include "storage/DatabaseAgentPersistence.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "support/AgentSamples.h"
#include "support/Printers.h"
#include "support/SqliteFile.h"

#include <QTemporaryDir>
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

class DatabaseStore : public StoreUnderTest {
public:
    DatabaseStore() { open(); }
    AgentPersistence& persistence() override { return *_persistence; }
    void reopen() override {
        _persistence.reset();
        _database.reset();
        open();
    }
    VuroDatabase& database() { return *_database; }
    QString path() const { return _folder.filePath(QStringLiteral("Vuro.store")); }
    const std::shared_ptr<InMemoryKeychain> keychain = std::make_shared<InMemoryKeychain>();

private:
    void open() {
        _database = std::make_shared<VuroDatabase>(path(), std::make_shared<KeychainKeyProvider>(keychain));
        _persistence = std::make_unique<DatabaseAgentPersistence>(_database);
    }

    QTemporaryDir _folder;
    std::shared_ptr<VuroDatabase> _database;
    std::unique_ptr<DatabaseAgentPersistence> _persistence;
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
                         testing::Values(std::pair<const char*, Factory>{"memory",
                                                                         [] { return std::make_unique<MemoryStore>(); }},
                                         std::pair<const char*, Factory>{
                                             "database", [] { return std::make_unique<DatabaseStore>(); }}),
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


QByteArray compact(const char* json) { return QJsonDocument::fromJson(json).toJson(QJsonDocument::Compact); }

// Rows as an older version of the program wrote them, before keys were added to the sealed JSON.
TEST(DatabaseAgentPersistenceTest, OlderRowsLoadWithoutTheKeysAddedSince) {
    DatabaseStore store;
    VuroDatabase& db = store.database();
    const BodyCipher& cipher = db.cipher();
    db.prepare("INSERT INTO StoredAgent VALUES ('A', 'Old', '🐢', 2, 'calm', ?1, 'claude', '', 'readWrite', 1000)")
        .bindBlob(1, cipher.seal(compact(R"({"soul":"You are slow.","duty":"You wait.","memory":""})")))
        .run();
    db.prepare("INSERT INTO StoredAgent VALUES ('B', 'Coder', '', 9, '', ?1, 'cli.codex', 'o3', 'none', 2000)")
        .bindBlob(1, cipher.seal(compact(R"({"soul":"","duty":"","memory":"- x"})")))
        .run();
    db.prepare("INSERT INTO StoredAgentJob VALUES ('J1', 'A', 'Plants', ?1, NULL, ?2, 1, 3000, NULL, NULL, NULL)")
        .bindBlob(1, cipher.seal(QStringLiteral("Water the plants {\"not\": \"a payload\"}")))
        .bindBlob(2, compact(R"({"now":{}})"))
        .run();
    db.prepare("INSERT INTO StoredAgentJob VALUES ('J2', 'A', '', ?1, 'N1', ?2, 0, 4000, 5000, 'succeeded', NULL)")
        .bindBlob(1, cipher.seal(compact(R"({"vuro":1,"instruction":"Sum up","attachments":[]})")))
        .bindBlob(2, compact(R"({"repeating":{"_0":{"everyHours":{"_0":4}}}})"))
        .run();
    db.prepare("INSERT INTO StoredAgentMessage VALUES ('M1', 'A', 'agent', 6000, 'J2', ?1)")
        .bindBlob(1, cipher.seal(compact(R"({"text":"Hello","actions":[]})")))
        .run();

    const QList<Agent> agents = store.persistence().loadAgents();
    ASSERT_EQ(agents.size(), 2);
    EXPECT_EQ(agents[0].soul, QStringLiteral("You are slow."));
    EXPECT_EQ(agents[0].emoji, QStringLiteral("🐢"));
    EXPECT_EQ(agents[0].provider, AIProviderKind::claude);
    EXPECT_EQ(agents[0].cliTool, std::nullopt);
    EXPECT_EQ(agents[0].color, NoteColor::rose);
    EXPECT_FALSE(agents[0].web);
    EXPECT_TRUE(agents[0].skills.isEmpty() && agents[0].mcpServers.isEmpty() && agents[0].symbol.isEmpty());
    EXPECT_EQ(agents[0].face, std::nullopt);
    EXPECT_EQ(agents[0].createdAt, QDateTime::fromMSecsSinceEpoch(1000, Qt::UTC));
    EXPECT_EQ(agents[1].cliTool, CLIToolKind::codex);
    EXPECT_EQ(agents[1].routeID(), QStringLiteral("cli.codex"));
    EXPECT_EQ(agents[1].color, NoteColor::peach) << "a colour is masked as a note's is";
    EXPECT_EQ(agents[1].access, NoteAccess::none);

    const QList<AgentJob> jobs = store.persistence().loadJobs();
    ASSERT_EQ(jobs.size(), 2);
    EXPECT_EQ(jobs[0].instruction, QStringLiteral("Water the plants {\"not\": \"a payload\"}"));
    EXPECT_TRUE(jobs[0].attachments.isEmpty());
    EXPECT_EQ(jobs[0].trigger, AgentJob::Trigger{AgentJob::Trigger::Now{}});
    EXPECT_EQ(jobs[1].instruction, QStringLiteral("Sum up"));
    EXPECT_EQ(jobs[1].toolPermission, std::nullopt);
    EXPECT_FALSE(jobs[1].enabled);
    EXPECT_EQ(jobs[1].noteID, QStringLiteral("N1"));
    EXPECT_EQ(jobs[1].lastRun, QDateTime::fromMSecsSinceEpoch(5000, Qt::UTC));
    EXPECT_EQ(jobs[1].lastStatus, AgentJob::Status::succeeded);

    const QList<AgentMessage> messages = store.persistence().loadMessages(QStringLiteral("A"));
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0].text, QStringLiteral("Hello"));
    EXPECT_EQ(messages[0].jobID, QStringLiteral("J2"));
    EXPECT_TRUE(messages[0].attachments.isEmpty() && messages[0].approvals.isEmpty());
    EXPECT_EQ(messages[0].jobTitle, std::nullopt);
}

struct BadRow {
    const char* what;
    const char* update;  // run on a store holding fullAgent(), fullJob() and fullMessage(); ?1 is a sealed blob
    const char* sealed;  // JSON or text to seal into ?1, or null
    const char* message;
};

TEST(DatabaseAgentPersistenceTest, ARowThatCantBeReadFailsItsWholeLoad) {
    const BadRow rows[] = {
        {"unknown provider", "UPDATE StoredAgent SET providerRaw = 'mistral'", nullptr,
         "Cannot initialize AIProviderKind from invalid String value mistral"},
        {"unknown tool", "UPDATE StoredAgent SET providerRaw = 'cli.vim'", nullptr,
         "Cannot initialize CLIToolKind from invalid String value vim"},
        {"unknown access", "UPDATE StoredAgent SET accessRaw = 'write'", nullptr,
         "Cannot initialize NoteAccess from invalid String value write"},
        {"profile without soul", "UPDATE StoredAgent SET sealedProfile = ?1", R"({"duty":"","memory":""})",
         "No value associated with key \"soul\"."},
        {"profile not JSON", "UPDATE StoredAgent SET sealedProfile = ?1", "soul: kind",
         "The data couldn't be read because it isn't in the correct format."},
        {"profile sealed under another key", "UPDATE StoredAgent SET sealedProfile = ?1", nullptr,
         "The note could not be decrypted."},
        {"trigger with two keys", R"(UPDATE StoredAgentJob SET triggerData = '{"now":{},"once":{"_0":"x"}}')",
         nullptr, "Invalid number of keys found, expected one."},
        {"unknown status", "UPDATE StoredAgentJob SET lastStatusRaw = 'skipped'", nullptr,
         "Cannot initialize Status from invalid String value skipped"},
        {"payload without attachments", "UPDATE StoredAgentJob SET sealedInstruction = ?1",
         R"({"vuro":1,"instruction":"x"})", "No value associated with key \"attachments\"."},
        {"unknown role", "UPDATE StoredAgentMessage SET roleRaw = 'system'", nullptr,
         "Cannot initialize Role from invalid String value system"},
        {"message without actions", "UPDATE StoredAgentMessage SET sealedPayload = ?1", R"({"text":"hi"})",
         "No value associated with key \"actions\"."},
    };
    for (const BadRow& row : rows) {
        DatabaseStore store;
        store.persistence().saveAgent(fullAgent());
        store.persistence().saveJob(fullJob());
        store.persistence().saveMessage(fullMessage());
        auto update = store.database().prepare(row.update);
        if (row.sealed)
            update.bindBlob(1, store.database().cipher().seal(QByteArray(row.sealed)));
        else if (QByteArray(row.update).contains("?1"))
            update.bindBlob(1, BodyCipher(BodyCipher::randomKey()).seal(QByteArray(R"({"soul":"","duty":"","memory":""})")));
        update.run();
        try {
            store.persistence().loadAgents();
            store.persistence().loadJobs();
            store.persistence().loadMessages(fullAgent().id);
            ADD_FAILURE() << row.what << ": loaded";
        } catch (const Error& e) {
            EXPECT_EQ(e.message(), QString::fromUtf8(row.message)) << row.what;
        }
    }
}

TEST(DatabaseAgentPersistenceTest, WordsAreSealedAndTheRestStaysPlain) {
    DatabaseStore store;
    store.persistence().saveAgent(fullAgent());
    store.persistence().saveJob(fullJob());
    store.persistence().saveMessage(fullMessage());
    store.reopen();
    const auto agent = test::querySql(store.path(), "SELECT name, providerRaw, accessRaw, colorIndex, sealedProfile FROM StoredAgent");
    ASSERT_EQ(agent.size(), 1);
    EXPECT_EQ(agent[0][0].toString(), QStringLiteral("Ada"));
    EXPECT_EQ(agent[0][1].toString(), QStringLiteral("lmStudio")) << "the provider under the command-line tool stays";
    EXPECT_EQ(agent[0][2].toString(), QStringLiteral("none"));
    EXPECT_EQ(agent[0][3].toInt(), rawValue(NoteColor::mint));
    EXPECT_FALSE(agent[0][4].toByteArray().contains("careful"));
    const auto job = test::querySql(store.path(), "SELECT title, triggerData, lastStatusRaw, sealedInstruction FROM StoredAgentJob");
    ASSERT_EQ(job.size(), 1);
    EXPECT_EQ(job[0][0].toString(), QStringLiteral("Morning brief"));
    EXPECT_EQ(AgentJob::Trigger::fromJson(QJsonDocument::fromJson(job[0][1].toByteArray()).object()), fullJob().trigger);
    EXPECT_EQ(job[0][2].toString(), QStringLiteral("failed"));
    EXPECT_FALSE(job[0][3].toByteArray().contains("Summarise"));
}

TEST(DatabaseAgentPersistenceTest, AStoreWithOnlyAMessageWontTakeANewKey) {
    DatabaseStore store;
    store.persistence().saveMessage(fullMessage());
    store.keychain->items.clear();
    EXPECT_THROW(store.reopen(), Error);
}

}  // namespace
}  // namespace vuro
