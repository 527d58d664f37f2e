#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentAttachmentImport.h"
#include "agents/AgentCenter.h"
#include "agents/AgentPrompt.h"
#include "agents/InMemoryAgentPersistence.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"

#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <qcoro/qcoroasyncgenerator.h>
#include <qcoro/qcorotimer.h>

namespace vuro {
namespace {

// A model that plays a fixed list of events, after an optional pause, calling the note tools it
// is given for each tool call in the script; what it was sent is kept for the test.
struct Script {
    std::chrono::milliseconds pause{0};
    QList<std::variant<QString, AgentToolCall>> steps;  // text so far, or a tool to call
    QString failure;
    QList<ChatTurn> sentTurns;
    QString sentSystem;
};

QCoro::AsyncGenerator<AgentEvent> play(std::shared_ptr<Script> script, RunTool runTool) {
    if (script->pause.count() > 0) co_await QCoro::sleepFor(script->pause);
    for (const auto& step : script->steps) {
        if (const auto* text = std::get_if<QString>(&step)) {
            co_yield AgentEvent::text(*text);
        } else {
            const AgentToolCall call = std::get<AgentToolCall>(step);
            co_yield AgentEvent::toolStarted(call.name);
            const AgentToolOutcome outcome = co_await runTool(call);
            for (AgentEvent event : actionEvents(outcome)) co_yield event;
        }
    }
    if (!script->failure.isEmpty()) throw Error(script->failure);
}

class ScriptedModel : public ChatModel {
public:
    explicit ScriptedModel(std::shared_ptr<Script> script) : _script(std::move(script)) {}
    AIRoute route() const override { return AIRoute::cloud("Anthropic"); }
    std::optional<QString> availabilityProblem() const override { return std::nullopt; }
    QList<AgentAttachment::Kind> nativeAttachments() const override { return {AgentAttachment::Kind::image}; }
    QCoro::AsyncGenerator<AgentEvent> streamReply(QString system, QList<ChatTurn> turns, QList<AgentToolSpec>,
                                                  RunTool runTool) const override {
        _script->sentSystem = system;
        _script->sentTurns = turns;
        return play(_script, std::move(runTool));
    }

private:
    std::shared_ptr<Script> _script;
};

struct Fixture {
    std::shared_ptr<InMemoryNotePersistence> notePersistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore notes{notePersistence};
    std::shared_ptr<InMemoryAgentPersistence> persistence = std::make_shared<InMemoryAgentPersistence>();
    std::shared_ptr<InMemoryAgentAttachmentFiles> files = std::make_shared<InMemoryAgentAttachmentFiles>();
    std::shared_ptr<Script> script = std::make_shared<Script>();
    std::unique_ptr<AgentCenter> center;

    Fixture() { start(); }
    void start() {
        auto s = script;
        center = std::make_unique<AgentCenter>(persistence, &notes, files,
                                               [s](const Agent&) { return std::make_unique<ScriptedModel>(s); },
                                               nullptr, false);
    }
    const QString builtIn = Agent::notesAgentID;
    void waitForReply(const QString& agentID = Agent::notesAgentID) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !center->replying().contains(agentID); }, 5000));
    }
};

AgentMessage message(const QString& agentID, AgentMessage::Role role, QString text) {
    AgentMessage m;
    m.id = newId();
    m.agentID = agentID;
    m.role = role;
    m.text = std::move(text);
    m.createdAt = Clock::now();
    return m;
}

TEST(AgentCenter, StandsUpWithTheBuiltInAgentAndRefusesBlankSends) {
    Fixture f;
    ASSERT_FALSE(f.center->agents().isEmpty());
    EXPECT_EQ(f.center->agents().first().id, "vuro.notes");
    EXPECT_EQ(f.persistence->loadAgents().size(), 1);
    EXPECT_FALSE(f.center->send(" \n ", {}, f.builtIn));
    EXPECT_FALSE(f.center->send("hi", {}, "nobody"));
    EXPECT_TRUE(f.center->conversation(f.builtIn).isEmpty());
    EXPECT_FALSE(f.center->remove(f.builtIn));

    f.script->pause = std::chrono::milliseconds(50);
    f.script->steps = {QString("Hello")};
    EXPECT_TRUE(f.center->send("hi", {}, f.builtIn));
    EXPECT_FALSE(f.center->send("again", {}, f.builtIn));  // one reply at a time
    f.waitForReply();
    const auto& conversation = f.center->conversation(f.builtIn);
    ASSERT_EQ(conversation.size(), 2);
    EXPECT_EQ(conversation[1].text, "Hello");
    EXPECT_GT(conversation[1].createdAt, conversation[0].createdAt);
    EXPECT_EQ(f.persistence->loadMessages(f.builtIn).size(), 2);
    EXPECT_TRUE(f.center->unread().agentIDs().contains(f.builtIn));
}

TEST(AgentCenter, RepliesAreCleanedAndFailuresKeepWhatCameBefore) {
    Fixture f;
    const QString line40 = "This line is exactly forty characters!!!";
    f.script->steps = {QString("Assistant: Hi!\n" + line40), QString("Assistant: Hi!\n" + line40 + "\nok\n" + line40 + "\nmore")};
    f.script->failure = "Couldn't reach api.example. Is the server running?";
    ASSERT_TRUE(f.center->send("hello", {}, f.builtIn));
    f.waitForReply();
    const AgentMessage reply = f.center->conversation(f.builtIn).last();
    EXPECT_EQ(reply.text, "Hi!\n" + line40 + "\nok");
    EXPECT_EQ(reply.failure, "Couldn't reach api.example. Is the server running?");
}

TEST(AgentCenter, CancellingBeforeTheFirstEventLeavesNoTrace) {
    Fixture f;
    f.script->pause = std::chrono::milliseconds(200);
    f.script->steps = {QString("late words")};
    ASSERT_TRUE(f.center->send("hello", {}, f.builtIn));
    ASSERT_EQ(f.center->conversation(f.builtIn).size(), 2);
    f.center->cancelReply(f.builtIn);
    EXPECT_FALSE(f.center->replying().contains(f.builtIn));
    EXPECT_EQ(f.center->conversation(f.builtIn).size(), 1);
    QTest::qWait(300);  // the stream wakes, sees the cancel and stops
    EXPECT_EQ(f.center->conversation(f.builtIn).size(), 1);
    EXPECT_EQ(f.persistence->loadMessages(f.builtIn).size(), 1);
    EXPECT_FALSE(f.center->unread().agentIDs().contains(f.builtIn));
}

TEST(AgentCenter, HistoryFitsTheBudgetOfTheRoute) {
    const QString id = "A";
    QList<AgentMessage> messages = {message(id, AgentMessage::Role::user, "old question"),
                                    message(id, AgentMessage::Role::agent, "old answer"),
                                    message(id, AgentMessage::Role::notice, "a notice never goes"),
                                    message(id, AgentMessage::Role::user, QString(30000, QLatin1Char('x')))};
    Agent cloud;
    cloud.provider = AIProviderKind::claude;
    const auto budget = AgentRouteBudget::of(cloud);
    EXPECT_EQ(budget.history, 24000);
    auto turns = AgentPrompt::turns(messages, budget.history);
    ASSERT_EQ(turns.size(), 1);
    EXPECT_EQ(turns[0].text, QString(24000, QLatin1Char('x')) + QStringLiteral("…"));

    // The oldest kept turn may not be the agent's.
    messages.removeLast();
    messages.append(message(id, AgentMessage::Role::user, QString(9990, QLatin1Char('y'))));
    Agent local;
    local.provider = AIProviderKind::ollama;
    turns = AgentPrompt::turns(messages, AgentRouteBudget::of(local).history);
    ASSERT_EQ(turns.size(), 1);
    EXPECT_EQ(turns[0].role, ChatTurn::Role::user);
    turns = AgentPrompt::turns(messages, 20000);
    ASSERT_EQ(turns.size(), 3);
    EXPECT_EQ(turns[0].text, "old question");
    EXPECT_EQ(turns[1].role, ChatTurn::Role::assistant);
}

TEST(AgentCenter, KeepsTwoHundredMessagesAndOnlyTheFilesNoOneHolds) {
    Fixture f;
    const QString id = f.builtIn;
    AgentMessage first = message(id, AgentMessage::Role::user, "with files");
    AgentMessage second = message(id, AgentMessage::Role::user, "with a job's file");
    AgentAttachment own{"FILE-1", "a.txt", AgentAttachment::Kind::text, "text/plain", 1, std::nullopt};
    AgentAttachment shared{"FILE-2", "b.txt", AgentAttachment::Kind::text, "text/plain", 1, std::nullopt};
    first.attachments = {own};
    second.attachments = {shared};
    f.files->write("FILE-1", "a");
    f.files->write("FILE-2", "b");
    AgentJob job;
    job.agentID = id;
    job.attachments = {shared};
    f.persistence->saveJob(job);
    f.persistence->saveMessage(first);
    f.persistence->saveMessage(second);
    for (int i = 0; i < 199; ++i) f.persistence->saveMessage(message(id, AgentMessage::Role::user, QString::number(i)));
    f.start();  // the job is loaded
    ASSERT_EQ(f.center->conversation(id).size(), 201);
    f.center->append(message(id, AgentMessage::Role::user, "one more"), true);
    EXPECT_EQ(f.center->conversation(id).size(), 200);
    EXPECT_EQ(f.center->conversation(id).first().text, "0");
    EXPECT_EQ(f.persistence->loadMessages(id).size(), 200);
    EXPECT_EQ(f.files->read("FILE-1"), std::nullopt);
    EXPECT_EQ(f.files->read("FILE-2"), QByteArray("b"));
}

TEST(AgentCenter, ToolActionsAreSavedAndUndone) {
    Fixture f;
    const QString noteID = f.notes.create("Shopping list", "- [ ] bread").id;
    f.script->steps = {AgentToolCall{"t1", "add_task", {{"task", "milk"}, {"note", "shopping"}}}, QString("Added milk.")};
    ASSERT_TRUE(f.center->send("add milk to my shopping list", {}, f.builtIn));
    f.waitForReply();
    EXPECT_EQ(f.notes.note(noteID)->body, "- [ ] bread\n- [ ] milk");
    const AgentMessage reply = f.center->conversation(f.builtIn).last();
    ASSERT_EQ(reply.actions.size(), 1);
    EXPECT_EQ(f.persistence->loadMessages(f.builtIn).last().actions.size(), 1);
    EXPECT_THAT(f.script->sentSystem.toStdString(), testing::StartsWith("Your name is Vuro."));

    f.notes.setBody(noteID, "- [ ] bread\n- [ ] milk\n- [ ] jam");
    EXPECT_EQ(f.center->undo(reply.actions[0].id, reply.id),
              QStringLiteral("The note was edited after this, so it was left as it is."));
    EXPECT_FALSE(f.center->conversation(f.builtIn).last().actions[0].undone);
    f.notes.setBody(noteID, "- [ ] bread\n- [ ] milk");
    EXPECT_EQ(f.center->undo(reply.actions[0].id, reply.id), std::nullopt);
    EXPECT_EQ(f.notes.note(noteID)->body, "- [ ] bread");
    EXPECT_TRUE(f.persistence->loadMessages(f.builtIn).last().actions[0].undone);
}

TEST(AgentCenter, AttachmentsAreSealedAndReadyForTheModel) {
    Fixture f;
    const auto draft = std::get<AgentAttachmentDraft>(AgentAttachmentImport::fromBytes("list.txt", "eggs\nflour"));
    f.script->steps = {QString("ok")};
    ASSERT_TRUE(f.center->send("", {draft}, f.builtIn));
    f.waitForReply();
    EXPECT_EQ(f.files->read(draft.info.id), QByteArray("eggs\nflour"));
    ASSERT_EQ(f.script->sentTurns.size(), 1);
    ASSERT_EQ(f.script->sentTurns[0].attachments.size(), 1);
    EXPECT_EQ(f.script->sentTurns[0].attachments[0].content, ChatAttachment::Content(ChatAttachment::Text{"eggs\nflour"}));

    // A failing write sends nothing and says why.
    const auto second = std::get<AgentAttachmentDraft>(AgentAttachmentImport::fromBytes("b.txt", "b"));
    f.files->failingID = second.info.id;
    EXPECT_FALSE(f.center->send("again", {second}, f.builtIn));
    EXPECT_EQ(f.center->lastError(), "The attachment couldn't be saved.");
    EXPECT_EQ(f.center->conversation(f.builtIn).size(), 2);
}

}  // namespace
}  // namespace vuro
