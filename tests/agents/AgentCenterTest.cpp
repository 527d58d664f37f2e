#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentAttachmentImport.h"
#include "agents/AgentCenter.h"
#include "agents/AgentPrompt.h"
#include "agents/NoteToolbox.h"
#include "agents/InMemoryAgentPersistence.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"
#include "support/ScriptedChatModel.h"

#include <QSignalSpy>
#include <QTimer>
#include <QTest>
#include <gmock/gmock.h>
#include <qcoro/qcoroasyncgenerator.h>
#include <qcoro/qcorotimer.h>

namespace vuro {
namespace {

using Script = test::ChatScript;
using ScriptedModel = test::ScriptedChatModel;

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
    // The built-in agent on the Anthropic route: the cloud's budgets and its full tool list.
    void onCloud() {
        Agent builtInAgent = *center->agent(builtIn);
        builtInAgent.provider = AIProviderKind::claude;
        center->save(builtInAgent);
    }
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

// Abilities with one MCP tool that needs the user's OK, answering as the tool's gate does.
class AskingAbilities : public AgentAbilities {
public:
    explicit AskingAbilities(Setup setup) : _setup(std::move(setup)) {}

    QList<AgentToolDefinition> tools() const override { return {{"send_mail", "Sends a mail.", {}, true, std::nullopt}}; }
    std::optional<QString> prompt() const override { return QStringLiteral("You can send mail."); }
    QList<MCPApprovalRequest> unattended() const override { return _unattended; }
    QCoro::Task<std::optional<AgentToolOutcome>> run(AgentToolCall call) override {
        if (call.name != "send_mail") co_return std::nullopt;
        MCPApprovalRequest request{newId(), _setup.agent.id, "mail", "Mail", "send_mail", "Send mail",
                                   {{"to", call.arguments.value("to")}}, std::nullopt};
        if (!_setup.approve) {
            _unattended.append(request);
            co_return AgentToolOutcome{"not asked", std::nullopt, {}};
        }
        const MCPApprovalDecision decision = co_await _setup.approve(request);
        co_return AgentToolOutcome{decision == MCPApprovalDecision::allowOnce ? "sent" : "not sent", std::nullopt, {}};
    }

private:
    Setup _setup;
    QList<MCPApprovalRequest> _unattended;
};

QCoro::Task<std::unique_ptr<AgentAbilities>> makeAsking(AgentAbilities::Setup setup) {
    co_return std::make_unique<AskingAbilities>(std::move(setup));
}

TEST(AgentCenterApprovals, TheAnswerReachesTheToolAndIsKeptOnTheReply) {
    struct Case {
        const char* what;
        std::optional<MCPApprovalDecision> answer;  // none: the reply is cancelled while it asks
        MCPApprovalRecord::Outcome recorded;
        QString toolOutput;
        QString replyText;
    };
    const QList<Case> cases = {
        {"allowed once", MCPApprovalDecision::allowOnce, MCPApprovalRecord::Outcome::allowed, "sent", "Mail sent."},
        {"denied", MCPApprovalDecision::deny, MCPApprovalRecord::Outcome::denied, "not sent", "Mail sent."},
        {"cancelled while asking", std::nullopt, MCPApprovalRecord::Outcome::denied, "not sent", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Fixture f;
        f.center->abilitiesFor = makeAsking;
        f.script->steps = {AgentToolCall{"t1", "send_mail", {{"to", "ana@example.com"}}}, QString("Mail sent.")};
        QSignalSpy changed(f.center.get(), &AgentCenter::pendingApprovalsChanged);
        ASSERT_TRUE(f.center->send("mail Ana", {}, f.builtIn));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !f.center->pendingApprovals().isEmpty(); }, 5000));
        const MCPApprovalRequest asked = f.center->pendingApprovals().first();
        EXPECT_EQ(asked.agentID, f.builtIn);
        EXPECT_EQ(asked.details, (QList<MCPApprovalRequest::Detail>{{"to", "ana@example.com"}}));
        EXPECT_EQ(f.center->activity(f.builtIn), "mcp.approval");
        EXPECT_THAT(f.script->sentSystem.toStdString(), testing::EndsWith("\n\nYou can send mail."));

        f.center->answer("no such question", MCPApprovalDecision::allowOnce);
        EXPECT_EQ(f.center->pendingApprovals().size(), 1);
        if (c.answer) {
            f.center->answer(asked.id, *c.answer);
            f.waitForReply();
        } else {
            f.center->cancelReply(f.builtIn);
        }
        EXPECT_TRUE(f.center->pendingApprovals().isEmpty());
        EXPECT_EQ(changed.size(), 2);
        EXPECT_NE(f.center->activity(f.builtIn), "mcp.approval");
        EXPECT_EQ(f.script->outputs, QStringList{c.toolOutput});

        // The reply keeps the record even when it has no words: the user saw the question.
        ASSERT_EQ(f.center->conversation(f.builtIn).size(), 2);
        const AgentMessage saved = f.persistence->loadMessages(f.builtIn).last();
        EXPECT_EQ(saved.text, c.replyText);
        ASSERT_EQ(saved.approvals.size(), 1);
        EXPECT_EQ(saved.approvals[0].id, asked.id);
        EXPECT_EQ(saved.approvals[0].outcome, c.recorded);
        EXPECT_EQ(saved.approvals[0].toolName, "send_mail");
        EXPECT_EQ(saved.approvals[0].serverName, "Mail");
        EXPECT_EQ(f.center->conversation(f.builtIn).last(), saved);
    }
}

QCoro::Task<> ask(AgentCenter* center, MCPApprovalRequest request, std::optional<std::chrono::milliseconds> timeout,
                  CancelToken token, std::optional<MCPApprovalDecision>* decision) {
    *decision = co_await center->requestApproval(std::move(request), timeout, token);
}

TEST(AgentCenterApprovals, TimeOutsCancellationAndRepeatedQuestions) {
    Fixture f;
    using namespace std::chrono_literals;
    const auto request = [](const QString& id, std::optional<QString> job = std::nullopt) {
        return MCPApprovalRequest{id, Agent::notesAgentID, "s", "Server", "tool", "Tool", {}, std::move(job)};
    };
    std::optional<MCPApprovalDecision> timedOut, cancelled, answered, repeated, late;
    CancelToken token;
    ask(f.center.get(), request("A", "Weekly report"), 30ms, CancelToken(), &timedOut);
    ask(f.center.get(), request("B"), std::nullopt, token, &cancelled);
    ask(f.center.get(), request("C"), 10s, CancelToken(), &answered);
    ask(f.center.get(), request("C"), std::nullopt, CancelToken(), &repeated);
    EXPECT_EQ(repeated, MCPApprovalDecision::deny);  // the open question isn't asked twice
    ASSERT_EQ(f.center->pendingApprovals().size(), 3);
    EXPECT_EQ(f.center->activity(f.builtIn), "mcp.approval");

    f.center->answer("C", MCPApprovalDecision::allowAlways);
    EXPECT_EQ(answered, MCPApprovalDecision::allowAlways);
    f.center->answer("C", MCPApprovalDecision::deny);  // answered already: nothing changes
    EXPECT_EQ(answered, MCPApprovalDecision::allowAlways);

    token.cancel();
    EXPECT_EQ(cancelled, MCPApprovalDecision::deny);
    // A job's question alone doesn't show as the chat's activity.
    EXPECT_EQ(f.center->activity(f.builtIn), std::nullopt);
    ASSERT_TRUE(QTest::qWaitFor([&] { return timedOut.has_value(); }, 5000));
    EXPECT_EQ(timedOut, MCPApprovalDecision::noAnswer);
    EXPECT_TRUE(f.center->pendingApprovals().isEmpty());

    // A question that is never answered is refused when the center goes away.
    ask(f.center.get(), request("D"), std::nullopt, CancelToken(), &late);
    f.center.reset();
    EXPECT_EQ(late, MCPApprovalDecision::deny);
}

// A job toolbox that offers what it is told and answers every call with its own name.
class FixedJobToolbox : public AgentJobToolbox {
public:
    FixedJobToolbox(QList<AgentToolDefinition> tools, QString prompt) : _tools(std::move(tools)), _prompt(std::move(prompt)) {}
    QList<AgentToolDefinition> tools() const override { return _tools; }
    QString prompt() const override { return _prompt; }
    QCoro::Task<AgentToolOutcome> run(AgentToolCall call) override {
        co_return AgentToolOutcome{"jobs: " + call.name, std::nullopt, {}};
    }

private:
    QList<AgentToolDefinition> _tools;
    QString _prompt;
};

// Abilities that claim a job tool and a note tool too, to show who answers first.
class GreedyAbilities : public AgentAbilities {
public:
    QList<AgentToolDefinition> tools() const override { return {{"web_search", "Searches.", {}, false, std::nullopt}}; }
    std::optional<QString> prompt() const override { return QStringLiteral("You have the web."); }
    QList<MCPApprovalRequest> unattended() const override { return {}; }
    QCoro::Task<std::optional<AgentToolOutcome>> run(AgentToolCall call) override {
        if (call.name == "list_notes") co_return std::nullopt;
        co_return AgentToolOutcome{"abilities: " + call.name, std::nullopt, {}};
    }
};

QCoro::Task<std::unique_ptr<AgentAbilities>> makeGreedy(AgentAbilities::Setup) {
    co_return std::make_unique<GreedyAbilities>();
}

TEST(AgentCenterRun, ToolsComeInOrderAndCallsGoToTheirToolbox) {
    Fixture f;
    f.onCloud();
    f.notes.create("Groceries", "- [ ] eggs");
    std::optional<AgentJobToolbox::Setup> jobSetup;
    const AgentToolDefinition schedule{"schedule_job", "Schedules a job.", {}, true, std::nullopt};
    f.center->abilitiesFor = makeGreedy;
    f.center->jobToolboxFor = [&](AgentJobToolbox::Setup setup) {
        jobSetup = setup;
        return std::make_unique<FixedJobToolbox>(QList<AgentToolDefinition>{schedule}, "Jobs run on a schedule.");
    };
    f.script->steps = {AgentToolCall{"1", "schedule_job", {}}, AgentToolCall{"2", "web_search", {}},
                       AgentToolCall{"3", "read_note", {{"note", "Groceries"}}}, AgentToolCall{"4", "list_notes", {}},
                       AgentToolCall{"5", "nothing_like_it", {}}, QString("done")};
    ASSERT_TRUE(f.center->send("  every morning, read my groceries  ", {}, f.builtIn));
    f.waitForReply();

    ASSERT_TRUE(jobSetup);
    EXPECT_EQ(jobSetup->request, "every morning, read my groceries");
    EXPECT_FALSE(jobSetup->onDevice);
    QStringList names;
    for (const AgentToolDefinition& tool : f.script->sentTools) names.append(tool.name);
    QStringList expected;
    for (const AgentToolDefinition& tool : NoteToolbox::tools(NoteAccess::readWrite, false, "", false)) expected.append(tool.name);
    expected << "web_search" << "schedule_job";
    EXPECT_EQ(names, expected);
    EXPECT_THAT(f.script->sentSystem.toStdString(),
                testing::EndsWith("\n\nYou have the web.\n\nJobs run on a schedule."));
    ASSERT_EQ(f.script->outputs.size(), 5);
    EXPECT_EQ(f.script->outputs[0], "jobs: schedule_job");
    EXPECT_EQ(f.script->outputs[1], "abilities: web_search");
    EXPECT_EQ(f.script->outputs[2], "abilities: read_note");
    EXPECT_THAT(f.script->outputs[3].toStdString(), testing::HasSubstr("Groceries"));
    EXPECT_EQ(f.script->outputs[4], "abilities: nothing_like_it");

    // A job toolbox with nothing to offer for this request adds neither tools nor directions,
    // yet still answers its own names.
    f.center->abilitiesFor = nullptr;
    f.center->jobToolboxFor = [](AgentJobToolbox::Setup) {
        return std::make_unique<FixedJobToolbox>(QList<AgentToolDefinition>{}, "Jobs run on a schedule.");
    };
    f.script->steps = {AgentToolCall{"6", "schedule_job", {}}, QString("done")};
    f.script->outputs.clear();
    ASSERT_TRUE(f.center->send("hello", {}, f.builtIn));
    f.waitForReply();
    EXPECT_EQ(f.script->sentTools.size(), expected.size() - 2);
    EXPECT_THAT(f.script->sentSystem.toStdString(), testing::Not(testing::HasSubstr("Jobs run")));
    EXPECT_EQ(f.script->outputs, QStringList{"jobs: schedule_job"});
}

QCoro::Task<std::unique_ptr<AgentAbilities>> unreachable(AgentAbilities::Setup) {
    throw Error("Couldn't reach the Mail server.");
    co_return std::unique_ptr<AgentAbilities>();
}

TEST(AgentCenterRun, AbilitiesThatCantBeMadeEndTheReplyWithTheirSentence) {
    Fixture f;
    Agent agent = *f.center->agent(f.builtIn);
    agent.mcpServers = {"mail"};
    f.center->save(agent);
    f.center->abilitiesFor = unreachable;
    f.script->steps = {QString("never said")};
    ASSERT_TRUE(f.center->send("mail Ana", {}, f.builtIn));
    f.waitForReply();
    const AgentMessage reply = f.persistence->loadMessages(f.builtIn).last();
    EXPECT_EQ(reply.failure, "Couldn't reach the Mail server.");
    EXPECT_EQ(reply.text, "");
    EXPECT_EQ(f.center->activity(f.builtIn), std::nullopt);
}

TEST(AgentCenterRun, WhatTheModelSeesAndWhatIsKept) {
    const QString line40 = "This line is exactly forty characters!!!";
    const QString unit50 = "The quick brown fox jumps over the lazy dog 12345!";
    struct Case {
        const char* what;
        QString streamed;
        QString kept;
    };
    const QList<Case> cases = {
        {"an assistant label and a greeting shows the greeting", "Assistant: Hello!", "Hello!"},
        {"a repeated 40-character line ends the reply before it", "Sure.\n" + line40 + "\nand\n" + line40 + "\nmore",
         "Sure.\n" + line40 + "\nand"},
        // Three times a 200-character block is no loop by itself (its period is too long), but
        // the shorter period inside it is.
        {"a 200-character block made of a shorter loop is cut", "Start: " + unit50.repeated(4).repeated(3),
         "Start: " + unit50},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Fixture f;
        f.script->steps = {c.streamed};
        ASSERT_TRUE(f.center->send("hi", {}, f.builtIn));
        f.waitForReply();
        EXPECT_EQ(f.persistence->loadMessages(f.builtIn).last().text, c.kept);
    }
}

TEST(AgentCenterRun, ALongNewestMessageGoesAloneAndCut) {
    Fixture f;
    f.onCloud();
    f.script->steps = {QString("ok")};
    ASSERT_TRUE(f.center->send("an older question", {}, f.builtIn));
    f.waitForReply();
    ASSERT_TRUE(f.center->send(QString(30000, QLatin1Char('w')), {}, f.builtIn));
    f.waitForReply();
    ASSERT_EQ(f.script->sentTurns.size(), 1);
    EXPECT_EQ(f.script->sentTurns[0].role, ChatTurn::Role::user);
    EXPECT_EQ(f.script->sentTurns[0].text, QString(24000, QLatin1Char('w')) + QStringLiteral("…"));
    // The message itself is kept whole.
    const auto stored = f.persistence->loadMessages(f.builtIn);
    EXPECT_TRUE(std::any_of(stored.begin(), stored.end(), [](const AgentMessage& m) { return m.text.size() == 30000; }));
}

}  // namespace
}  // namespace vuro
