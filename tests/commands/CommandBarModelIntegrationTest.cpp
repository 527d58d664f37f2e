// The Tell Vuro bar's model against a provider on a loopback vendor server.
#include "commands/CommandBarModel.h"

#include "base/Clock.h"
#include "models/OpenAICompatibleProvider.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "notes/UnavailableNotePersistence.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"
#include "support/VendorReplies.h"

#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using namespace std::chrono_literals;
using test::openAIReply;
using test::ReplayedResponse;

QString command(const char* action, const char* hint, const char* text, const char* title = "") {
    return QStringLiteral(R"({"action":"%1","noteHint":"%2","text":"%3","title":"%4"})").arg(action, hint, text, title);
}

struct TellVuroModel : testing::Test {
    Clock::Override clock{QDateTime(QDate(2026, 11, 21), QTime(9, 0))};
    test::LoopbackHttpServer server;
    QNetworkAccessManager session;
    OpenAICompatibleProvider provider{AIProviderKind::openAI, "gpt-6.1-sol", "sk-test", server.url("/v1/"), &session};
    std::shared_ptr<InMemoryNotePersistence> disk = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{disk};

    // Sends a sentence and waits until the model leaves thinking.
    void tell(CommandBarModel& model, const QString& sentence) {
        model.setText(sentence);
        model.send();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !std::holds_alternative<CommandBarModel::Thinking>(model.phase()); }, 5000));
    }
    static QString message(const CommandBarModel& model) {
        if (const auto* done = std::get_if<CommandBarModel::Done>(&model.phase())) return done->outcome.message;
        if (const auto* failed = std::get_if<CommandBarModel::Failed>(&model.phase())) return QStringLiteral("failed: ") + failed->text;
        return QStringLiteral("(no outcome)");
    }
    QJsonArray messages(size_t i) const { return server.requests().at(i).json().value("messages").toArray(); }
};

TEST_F(TellVuroModel, TheRequestCarriesTheSystemTextTheTitlesAndTheSentenceInEitherLanguage) {
    store.create("Shopping list", "- [ ] bread");
    const Note archived = store.create("Old plans", "gone");
    store.setArchived(archived.id, true);
    store.create("", "Packing\n- [ ] socks");  // the newest note comes first, as on the Shelf
    struct Case {
        bool turkish;
        QString expected;
    };
    const Case cases[] = {
        {false, "Notes: Packing; Shopping list\nRequest: add milk to the shopping list"},
        {true, "Notlar: Packing; Shopping list\nİstek: add milk to the shopping list"},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        server.enqueue(openAIReply({command("unknown", "", "")}));
        CommandBarModel model(store, provider, cases[i].turkish);
        tell(model, "  add milk to the shopping list \n");
        ASSERT_EQ(server.requests().size(), i + 1);
        const QJsonArray sent = messages(i);
        EXPECT_EQ(sent[0].toObject().value("content").toString(), CommandBarModel::systemText(cases[i].turkish));
        EXPECT_EQ(sent[1].toObject().value("content").toString(), cases[i].expected);
    }
    EXPECT_TRUE(CommandBarModel::systemText(false).startsWith("You are the assistant of a notes app."));
    EXPECT_NE(CommandBarModel::systemText(true), CommandBarModel::systemText(false));
}

TEST_F(TellVuroModel, CommandsChangeTheNotesAndUndoOnce) {
    const QString shopping = store.create("Shopping list", "- [ ] bread").id;
    struct Case {
        const char* what;
        QString reply;
        QString message;
        QString shoppingAfter;  // the shopping list's body once the command ran
        int notesAfter;
    };
    const Case cases[] = {
        {"a task with date words", command("addTask", "shopping", "milk tomorrow at 10"),
         "Added “milk 📅 2026-11-22 10:00” to Shopping list.", "- [ ] bread\n- [ ] milk 📅 2026-11-22 10:00", 1},
        {"a new note", command("createNote", "", "", "Book recommendations"), "Created a new note: Book recommendations",
         "- [ ] bread", 2},
        {"a completed task", command("completeTask", "", "bread"), "Marked “bread” as done.", "- [x] bread", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        server.enqueue(openAIReply({c.reply}));
        CommandBarModel model(store, provider, false);
        tell(model, "whatever the user said");
        EXPECT_EQ(message(model), c.message);
        EXPECT_EQ(store.note(shopping)->body, c.shoppingAfter);
        EXPECT_EQ(store.visibleNotes().size(), c.notesAfter);
        ASSERT_TRUE(model.canUndo());
        EXPECT_TRUE(model.undo());
        EXPECT_TRUE(model.undone());
        EXPECT_FALSE(model.canUndo());
        EXPECT_FALSE(model.undo()) << "undo happens once";
        EXPECT_EQ(store.note(shopping)->body, "- [ ] bread");
        EXPECT_EQ(store.visibleNotes().size(), 1);
    }
}

TEST_F(TellVuroModel, FailuresBecomeSentencesAndChangeNothing) {
    store.create("Shopping list", "- [ ] bread");
    struct Case {
        const char* what;
        ReplayedResponse response;
        QString expected;
    };
    const Case cases[] = {
        {"a rejected key", ReplayedResponse::of(R"({"error":{"message":"Incorrect API key"}})", 40, 401),
         "failed: The API key was not accepted (401)."},
        {"prose instead of JSON", openAIReply({"Sure, I added it!"}), "failed: The provider sent an unexpected response."},
        {"a refusal", openAIReply({"no"}, "content_filter"), "failed: The model declined this request."},
        {"an action the executor can't place", openAIReply({command("addTask", "", "  ")}), "I couldn't tell what to add."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        server.enqueue(c.response);
        CommandBarModel model(store, provider, false);
        tell(model, "add milk");
        EXPECT_EQ(message(model), c.expected);
        EXPECT_FALSE(model.canUndo());
        EXPECT_EQ(store.visibleNotes().size(), 1);
        EXPECT_EQ(store.visibleNotes().first().body, "- [ ] bread");
    }

    const OpenAICompatibleProvider keyless(AIProviderKind::openAI, "gpt-6.1-sol", std::nullopt, server.url("/v1/"), &session);
    CommandBarModel model(store, keyless, false);
    const size_t before = server.requests().size();
    model.setText("add milk");
    model.send();
    EXPECT_EQ(message(model), "failed: Add your OpenAI API key in Settings → Assistant.");
    EXPECT_EQ(server.requests().size(), before) << "nothing is sent without a key";

    const OpenAICompatibleProvider unreachable(AIProviderKind::ollama, "llama3.2", std::nullopt,
                                               QUrl(QStringLiteral("http://127.0.0.1:%1/v1/").arg(test::LoopbackHttpServer::closedPort())),
                                               &session);
    CommandBarModel offline(store, unreachable, false);
    tell(offline, "add milk");
    EXPECT_EQ(message(offline), "failed: Couldn't reach 127.0.0.1. Is the server running?");
}

TEST_F(TellVuroModel, ANewSentenceDropsTheAnswerStillAwaited) {
    const QString shopping = store.create("Shopping list", "- [ ] bread").id;
    ReplayedResponse slow = openAIReply({command("addTask", "Shopping list", "first")});
    slow.pause = 60ms;  // about two seconds for the whole stream
    server.enqueue(slow);
    server.enqueue(openAIReply({command("addTask", "Shopping list", "second")}));
    CommandBarModel model(store, provider, false);
    QSignalSpy phases(&model, &CommandBarModel::phaseChanged);

    model.setText("add first");
    model.send();
    ASSERT_TRUE(std::holds_alternative<CommandBarModel::Thinking>(model.phase()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests().size() == 1; }, 2000));
    tell(model, "add second");
    EXPECT_EQ(message(model), "Added “second” to Shopping list.");
    QTest::qWait(2500);  // the first answer arrives in full and must change nothing
    EXPECT_EQ(store.note(shopping)->body, "- [ ] bread\n- [ ] second");
    EXPECT_EQ(message(model), "Added “second” to Shopping list.");

    // Blank text sends nothing; cancel while thinking goes back to idle.
    model.setText("   ");
    model.send();
    EXPECT_EQ(server.requests().size(), 2u);
    server.enqueue(slow);
    model.setText("add third");
    model.send();
    model.cancel();
    EXPECT_TRUE(std::holds_alternative<CommandBarModel::Idle>(model.phase()));
    QTest::qWait(2500);
    EXPECT_TRUE(std::holds_alternative<CommandBarModel::Idle>(model.phase()));
    EXPECT_EQ(store.note(shopping)->body, "- [ ] bread\n- [ ] second");
}

TEST_F(TellVuroModel, AReadOnlyStoreIsNotAskedToChange) {
    NoteStore readOnly{std::make_shared<UnavailableNotePersistence>(Error(QStringLiteral("The notes database can't be opened.")))};
    ASSERT_FALSE(readOnly.isWritable());
    CommandBarModel model(readOnly, provider, false);
    model.setText("add milk");
    model.send();
    EXPECT_EQ(message(model), "failed: The notes database can't be opened.");
    EXPECT_TRUE(server.requests().empty());
}

}  // namespace
}  // namespace vuro
