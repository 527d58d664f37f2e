#include "agents/AgentCenter.h"
#include "agents/NoteToolbox.h"
#include "base/Clock.h"
#include "models/AIKeyStore.h"
#include "models/AIProviderSettings.h"
#include "models/AnthropicChatModel.h"
#include "models/ChatModelTesting.h"
#include "notes/NoteStore.h"
#include "storage/DatabaseAgentPersistence.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/SealedStorage.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"

#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>
#include <gmock/gmock.h>

namespace vuro {
namespace {

using test::LoopbackHttpServer;
using test::ReplayedResponse;

const QString request = QStringLiteral("add milk to my shopping list, tomorrow at 10");

// The whole way of one chat message: a sealed store on disk, the built-in agent on the Anthropic
// route with its key in the key store, and a loopback server that answers as the vendor did: a
// first round that calls add_task, a second that answers in words.
class AgentConversationTest : public testing::Test {
protected:
    AgentConversationTest() {
        keys.store(AIProviderKind::claude, QStringLiteral("sk-ant-from-the-keyring"));
        QNetworkAccessManager* network = &session;
        AIKeyStore* keyStore = &keys;
        const QUrl base = server.url(QStringLiteral("/v1/"));
        center = std::make_unique<AgentCenter>(
            storage.agents, &notes, storage.attachments,
            [network, keyStore, base](const Agent& agent) {
                return std::make_unique<AnthropicChatModel>(AIProviderSettings::defaultModel(AIProviderKind::claude),
                                                            keyStore->key(agent.provider), base, network, agent.web);
            },
            nullptr, false);
        Agent builtIn = *center->agent(Agent::notesAgentID);
        builtIn.provider = AIProviderKind::claude;
        center->save(builtIn);
    }

    // Sends the request and waits for the reply the two recorded rounds make.
    AgentMessage ask() {
        server.enqueue(ReplayedResponse::recording(QStringLiteral("models/recordings/anthropic/shopping-add-task.sse")));
        server.enqueue(ReplayedResponse::recording(QStringLiteral("models/recordings/anthropic/shopping-answer.sse")));
        EXPECT_TRUE(center->send(request, {}, Agent::notesAgentID));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !center->replying().contains(Agent::notesAgentID); }, 10000));
        return center->conversation(Agent::notesAgentID).last();
    }

    Clock::Override clock{QDateTime(QDate(2026, 11, 20), QTime(9, 30))};
    QTemporaryDir folder;
    std::shared_ptr<InMemoryKeychain> keychain = std::make_shared<InMemoryKeychain>();
    SealedStorage storage = SealedStorage::open(folder.path(), std::make_shared<KeychainKeyProvider>(keychain));
    NoteStore notes{storage.notes, std::chrono::milliseconds(10), std::chrono::seconds(10), storage.images, storage.files};
    AIKeyStore keys{*keychain, true};
    LoopbackHttpServer server;
    QNetworkAccessManager session;
    std::unique_ptr<AgentCenter> center;
};

TEST_F(AgentConversationTest, AddsADatedTaskSavesTheActionAndUndoesIt) {
    ASSERT_TRUE(storage.database) << "the sealed store opens in a fresh folder";
    const QString listID = notes.create(QStringLiteral("Shopping list"), QStringLiteral("- [ ] bread")).id;
    const AgentMessage reply = ask();

    const QString added = QStringLiteral("- [ ] bread\n- [ ] milk 📅 2026-11-21 10:00");
    EXPECT_EQ(notes.note(listID)->body, added);
    EXPECT_EQ(reply.failure, std::nullopt);
    EXPECT_EQ(reply.text, "I'll add milk to your shopping list.\n\nDone: milk is on your shopping list for tomorrow at 10:00.");
    ASSERT_EQ(reply.actions.size(), 1);
    EXPECT_EQ(reply.actions[0].tool, "add_task");
    EXPECT_EQ(reply.actions[0].noteID, listID);
    EXPECT_TRUE(center->unread().agentIDs().contains(Agent::notesAgentID));

    // What reached the vendor: the key, the system text, the tools and the user's words alone;
    // then the tool's answer as the result of its call.
    ASSERT_EQ(server.requests().size(), 2u);
    const auto& first = server.requests()[0];
    EXPECT_EQ(first.path, "/v1/messages");
    EXPECT_EQ(first.headers.value("x-api-key"), "sk-ant-from-the-keyring");
    const QJsonObject body = first.json();
    EXPECT_EQ(body.value("model").toString(), "claude-opus-5-5");
    const QString system = body.value("system").toString();
    EXPECT_THAT(system.toStdString(), testing::StartsWith("Your name is Vuro. You are the user's built-in notes assistant"));
    EXPECT_THAT(system.toStdString(), testing::HasSubstr("You can read and change the notes; the user can undo every change."));
    EXPECT_THAT(system.toStdString(), testing::HasSubstr("\n\nNow: "));
    EXPECT_EQ(body.value("messages").toArray(), test::array(R"([{"role": "user",
        "content": "add milk to my shopping list, tomorrow at 10"}])"));
    QStringList sentTools;
    QJsonObject addTask;
    for (const QJsonValue tool : body.value("tools").toArray()) {
        sentTools.append(tool.toObject().value("name").toString());
        if (sentTools.last() == "add_task") addTask = tool.toObject();
    }
    QStringList noteTools;
    for (const AgentToolDefinition& tool : NoteToolbox::tools(NoteAccess::readWrite, false, request, false)) noteTools.append(tool.name);
    EXPECT_EQ(sentTools, noteTools);
    EXPECT_EQ(addTask.value("description").toString(),
              "Add a to-do or an item to an existing note or list, e.g. milk to the shopping list. Keep date words like "
              "'tomorrow 10am'.");
    EXPECT_EQ(addTask.value("input_schema").toObject().value("required").toArray(), test::array(R"(["task"])"));

    const QJsonArray rounds = server.requests()[1].json().value("messages").toArray();
    ASSERT_EQ(rounds.size(), 3);
    EXPECT_EQ(rounds[1].toObject().value("content").toArray()[1].toObject(), test::object(R"({"type": "tool_use",
        "id": "toolu_01ShopMilk", "name": "add_task", "input": {"task": "milk tomorrow at 10", "note": "shopping list"}})"));
    const QJsonObject result = rounds[2].toObject().value("content").toArray()[0].toObject();
    EXPECT_EQ(result.value("tool_use_id").toString(), "toolu_01ShopMilk");
    EXPECT_EQ(result.value("content").toString(), reply.actions[0].summary);

    // The reply with its action is in the sealed store, not only in memory.
    DatabaseAgentPersistence reread(storage.database);
    const AgentMessage stored = reread.loadMessages(Agent::notesAgentID).last();
    EXPECT_EQ(stored, reply);

    EXPECT_EQ(center->undo(reply.actions[0].id, reply.id), std::nullopt);
    EXPECT_EQ(notes.note(listID)->body, "- [ ] bread");
    EXPECT_TRUE(reread.loadMessages(Agent::notesAgentID).last().actions[0].undone);
    ASSERT_TRUE(notes.flush());
    const auto onDisk = storage.notes->loadNotes();
    ASSERT_EQ(onDisk.size(), 1);
    EXPECT_EQ(onDisk[0].body, "- [ ] bread");
}

TEST_F(AgentConversationTest, UndoLeavesANoteTheUserEditedSince) {
    const QString listID = notes.create(QStringLiteral("Shopping list"), QStringLiteral("- [ ] bread")).id;
    const AgentMessage reply = ask();
    ASSERT_EQ(reply.actions.size(), 1);
    const QString typed = notes.note(listID)->body + QStringLiteral("\n- [ ] eggs");
    notes.setBody(listID, typed);

    EXPECT_EQ(center->undo(reply.actions[0].id, reply.id),
              QStringLiteral("The note was edited after this, so it was left as it is."));
    EXPECT_EQ(notes.note(listID)->body, typed);
    EXPECT_FALSE(center->conversation(Agent::notesAgentID).last().actions[0].undone);
    DatabaseAgentPersistence reread(storage.database);
    EXPECT_FALSE(reread.loadMessages(Agent::notesAgentID).last().actions[0].undone);
}

}  // namespace
}  // namespace vuro
