#include "agents/ui/AgentChatWindow.h"

#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentCenter.h"
#include "agents/AgentConversationPresence.h"
#include "agents/InMemoryAgentPersistence.h"
#include "agents/ui/ActionChip.h"
#include "agents/ui/ApprovalCard.h"
#include "agents/ui/AttachmentChip.h"
#include "agents/ui/AttachmentTray.h"
#include "agents/ui/ChatComposer.h"
#include "agents/ui/ChatMessageView.h"
#include "agents/ui/ChatPalette.h"
#include "agents/ui/ChatTranscript.h"
#include "agents/ui/ErrorLabel.h"
#include "agents/ui/MarkdownLabel.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"
#include "support/Screenshot.h"
#include "support/ScriptedChatModel.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

const QString editedAfter = QStringLiteral("The note was edited after this, so it was left as it is.");


// A warm light scheme beside the style's own, so that both are seen in the screenshots.
QPalette warmPalette() {
    QPalette palette = QApplication::style()->standardPalette();
    palette.setColor(QPalette::Window, QColor(0xF4, 0xF0, 0xE8));
    palette.setColor(QPalette::Base, QColor(0xFF, 0xFD, 0xF7));
    palette.setColor(QPalette::AlternateBase, QColor(0xF7, 0xF2, 0xE7));
    palette.setColor(QPalette::Button, QColor(0xEF, 0xEA, 0xDF));
    palette.setColor(QPalette::Highlight, QColor(0xC0, 0x62, 0x1A));
    palette.setColor(QPalette::Text, QColor(0x2E, 0x28, 0x22));
    palette.setColor(QPalette::WindowText, QColor(0x2E, 0x28, 0x22));
    palette.setColor(QPalette::ButtonText, QColor(0x2E, 0x28, 0x22));
    palette.setColor(QPalette::PlaceholderText, QColor(0x8A, 0x80, 0x74));
    return palette;
}

// A real center on in-memory stores and a real note store, answering through a scripted model,
// with the chat window of one agent on screen and registered as its conversation.
struct Fixture {
    AgentConversationPresence presence;
    std::shared_ptr<InMemoryNotePersistence> notePersistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore notes{notePersistence};
    std::shared_ptr<InMemoryAgentPersistence> persistence = std::make_shared<InMemoryAgentPersistence>();
    std::shared_ptr<InMemoryAgentAttachmentFiles> files = std::make_shared<InMemoryAgentAttachmentFiles>();
    std::shared_ptr<test::ChatScript> script = std::make_shared<test::ChatScript>();
    std::unique_ptr<AgentCenter> center;
    Agent scout;
    std::unique_ptr<AgentChatWindow> window;

    Fixture() {
        auto s = script;
        center = std::make_unique<AgentCenter>(
            persistence, &notes, files, [s](const Agent&) { return std::make_unique<test::ScriptedChatModel>(s); }, nullptr,
            false);
        center->unread().observe(presence);
        scout.name = QStringLiteral("Scout");
        scout.emoji = QStringLiteral("🦊");
        scout.color = NoteColor::peach;
        scout.provider = AIProviderKind::claude;
        scout.access = NoteAccess::readWrite;
        center->save(scout);
        window = std::make_unique<AgentChatWindow>(*center, scout.id, &presence);
        window->resize(560, 720);
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    const QList<AgentMessage>& conversation() { return center->conversation(scout.id); }
    bool replying() const { return center->replying().contains(scout.id); }
    void waitForReply() {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !replying(); }, 5000));
        QTest::qWait(30);  // the window redraws on the next turn of the loop
    }
    ChatMessageView* lastView() {
        const auto views = window->transcript()->messageViews();
        return views.isEmpty() ? nullptr : views.last();
    }
    void type(const QString& text) { QTest::keyClicks(window->composer(), text); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(window->composer(), key, modifiers); }
};

const QString reply = QStringLiteral(
    "Done: **milk** is on your *Shopping list*.\n\n"
    "Your list now:\n\n"
    "- bread\n"
    "- milk\n\n"
    "Tip: write `tomorrow 10` after a task to give it a date.");

TEST(AgentChatWindow, StreamsTheReplyWithItsActionAndUndoesIt) {
    Fixture f;
    const QString noteID = f.notes.create(QStringLiteral("Shopping list"), QStringLiteral("- [ ] bread")).id;
    f.script->between = 250ms;
    f.script->steps = {QStringLiteral("Sure, adding **milk**"),
                       AgentToolCall{"t1", "add_task", {{"task", "milk"}, {"note", "shopping"}}}, reply};
    EXPECT_EQ(f.window->windowTitle(), QStringLiteral("🦊 Scout"));

    f.type(QStringLiteral("add milk to my shopping list"));
    f.press(Qt::Key_Return);
    ASSERT_EQ(f.conversation().size(), 2);
    EXPECT_EQ(f.conversation().first().text, QStringLiteral("add milk to my shopping list"));
    EXPECT_TRUE(f.window->composer()->toPlainText().isEmpty());
    EXPECT_EQ(f.window->sendButton()->text(), QStringLiteral("Stop"));

    // The reply shows while it is being written, and so does the tool at work.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return f.lastView() && f.lastView()->replyText()->markdown().startsWith(QStringLiteral("Sure, adding"));
    }, 3000));
    EXPECT_TRUE(f.replying());
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.lastView()->chips().size() == 1; }, 3000));
    EXPECT_TRUE(f.replying());
    EXPECT_EQ(f.window->transcript()->activityLabel()->text(), QStringLiteral("Updating your notes…"));
    f.waitForReply();
    EXPECT_FALSE(f.window->transcript()->activityLabel()->isVisible());
    EXPECT_EQ(f.window->sendButton()->text(), QStringLiteral("Send"));

    ChatMessageView* view = f.lastView();
    ASSERT_EQ(view->replyText()->markdown(), reply);
    const QString html = view->replyText()->text();
    EXPECT_TRUE(html.contains(QStringLiteral("<li"))) << html.toStdString();
    EXPECT_TRUE(html.contains(QStringLiteral("font-weight:700"))) << html.toStdString();
    EXPECT_FALSE(html.contains(QStringLiteral("**")));
    ActionChip* chip = view->chips().first();
    EXPECT_TRUE(chip->undoButton()->isVisible());
    EXPECT_EQ(f.notes.note(noteID)->body, QStringLiteral("- [ ] bread\n- [ ] milk"));
    // The reply arrived while its conversation was on screen.
    EXPECT_FALSE(f.center->unread().agentIDs().contains(f.scout.id));
    test::screenshot(*f.window, QStringLiteral("agent-chat-reply"));
    f.window->setPalette(warmPalette());
    QTest::qWait(30);
    test::screenshot(*f.window, QStringLiteral("agent-chat-reply-warm"));

    // Edited since: the change stands and the chip says why.
    f.notes.setBody(noteID, QStringLiteral("- [ ] bread\n- [ ] milk\n- [ ] jam"));
    QTest::mouseClick(chip->undoButton(), Qt::LeftButton);
    QTest::qWait(30);
    EXPECT_EQ(chip->refusalLabel()->text(), editedAfter);
    EXPECT_TRUE(chip->refusalLabel()->isVisible());
    EXPECT_TRUE(chip->undoButton()->isVisible());
    test::screenshot(*f.window, QStringLiteral("agent-chat-undo-refused"));

    f.notes.setBody(noteID, QStringLiteral("- [ ] bread\n- [ ] milk"));
    QTest::mouseClick(chip->undoButton(), Qt::LeftButton);
    QTest::qWait(30);
    EXPECT_EQ(f.notes.note(noteID)->body, QStringLiteral("- [ ] bread"));
    ASSERT_EQ(f.lastView()->chips().first(), chip);  // updated in place
    EXPECT_FALSE(chip->undoButton()->isVisible());
    EXPECT_FALSE(chip->refusalLabel()->isVisible());
    EXPECT_TRUE(f.persistence->loadMessages(f.scout.id).last().actions.first().undone);
}

TEST(AgentChatWindow, FailuresAndNoticesHaveTheirOwnLines) {
    Fixture f;
    AgentMessage notice;
    notice.id = newId();
    notice.agentID = f.scout.id;
    notice.role = AgentMessage::Role::notice;
    notice.text = QStringLiteral("Couldn't do “Morning digest”.");
    notice.failure = QStringLiteral("No API key for Anthropic.");
    notice.createdAt = Clock::now();
    f.center->append(notice, true);
    f.script->steps = {QStringLiteral("Let me look at your week.")};
    f.script->failure = QStringLiteral("Couldn't reach api.example. Is the server running?");
    f.type(QStringLiteral("what's on this week?"));
    f.press(Qt::Key_Enter);
    f.waitForReply();

    const auto views = f.window->transcript()->messageViews();
    ASSERT_EQ(views.size(), 3);
    EXPECT_EQ(views[0]->plainText()->text(), notice.text);
    EXPECT_EQ(views[0]->plainText()->alignment() & Qt::AlignHCenter, Qt::AlignHCenter);
    EXPECT_EQ(views[0]->failureLabel()->text(), QStringLiteral("No API key for Anthropic."));
    ChatMessageView* failed = views[2];
    EXPECT_EQ(failed->replyText()->markdown(), QStringLiteral("Let me look at your week."));
    EXPECT_TRUE(failed->failureLabel()->isVisible());
    EXPECT_EQ(failed->failureLabel()->text(), QStringLiteral("Couldn't reach api.example. Is the server running?"));
    const auto inkOf = [](QWidget* label) { return label->palette().color(label->foregroundRole()); };
    EXPECT_EQ(inkOf(failed->failureLabel()), ChatPalette::error(failed->failureLabel()->palette()));
    EXPECT_EQ(inkOf(views[0]->failureLabel()), ChatPalette::error(failed->failureLabel()->palette()));
    test::screenshot(*f.window, QStringLiteral("agent-chat-failure"));

    // Under another palette the error colour follows the new base.
    f.window->setPalette(warmPalette());
    QTest::qWait(30);
    EXPECT_EQ(failed->failureLabel()->palette().color(QPalette::Base), QColor(0xFF, 0xFD, 0xF7));
    EXPECT_EQ(inkOf(failed->failureLabel()), ChatPalette::error(warmPalette()));
}

TEST(AgentChatWindow, EnterSendsShiftEnterBreaksTheLineAndStopCancels) {
    Fixture f;
    f.press(Qt::Key_Return);  // nothing to send
    EXPECT_TRUE(f.conversation().isEmpty());
    EXPECT_FALSE(f.window->sendButton()->isEnabled());

    f.type(QStringLiteral("first line"));
    f.press(Qt::Key_Return, Qt::ShiftModifier);
    f.type(QStringLiteral("second line"));
    EXPECT_EQ(f.window->composer()->toPlainText(), QStringLiteral("first line\nsecond line"));
    EXPECT_TRUE(f.conversation().isEmpty());
    EXPECT_TRUE(f.window->sendButton()->isEnabled());

    f.script->pause = 400ms;
    f.script->steps = {QStringLiteral("too late")};
    f.press(Qt::Key_Return);
    ASSERT_EQ(f.conversation().size(), 2);
    EXPECT_EQ(f.conversation().first().text, QStringLiteral("first line\nsecond line"));

    // While the agent replies, Enter keeps what is typed next and Stop ends the reply.
    f.type(QStringLiteral("next question"));
    f.press(Qt::Key_Return);
    EXPECT_EQ(f.window->composer()->toPlainText(), QStringLiteral("next question"));
    EXPECT_EQ(f.conversation().size(), 2);
    QTest::mouseClick(f.window->sendButton(), Qt::LeftButton);
    EXPECT_FALSE(f.replying());
    QTest::qWait(500);
    EXPECT_EQ(f.conversation().size(), 1);  // a reply stopped before its first word leaves nothing
    EXPECT_EQ(f.window->transcript()->messageViews().size(), 1);
    EXPECT_EQ(f.window->sendButton()->text(), QStringLiteral("Send"));
}

TEST(AgentChatWindow, DroppedFilesBecomeChipsOrSentences) {
    Fixture f;
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const auto write = [&](const QString& name, const QByteArray& data) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(data);
        return file.fileName();
    };
    QDir(folder.path()).mkdir(QStringLiteral("drafts"));
    struct Case {
        QString path;
        QString sentence;  // empty: it becomes a chip
    };
    const Case cases[] = {
        {write(QStringLiteral("groceries.txt"), "eggs\nflour\n"), {}},
        {write(QStringLiteral("report.pdf"), "not a pdf at all"), QStringLiteral("Couldn't read “report.pdf”.")},
        {write(QStringLiteral("tool.bin"), QByteArray("\x7f" "ELF\x02\x01\x01\0\0\0", 10)),
         QStringLiteral("“tool.bin” can't be attached: only images, PDFs, text, documents and recordings.")},
        {folder.filePath(QStringLiteral("drafts")),
         QStringLiteral("“drafts” can't be attached: only images, PDFs, text, documents and recordings.")},
    };
    QList<QUrl> urls;
    for (const Case& each : cases) urls.append(QUrl::fromLocalFile(each.path));

    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(100, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(f.window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(100, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(f.window.get(), &drop);
    AttachmentTray* tray = f.window->tray();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tray->isBusy(); }, 5000));

    QStringList chipNames, sentences;
    for (const AgentAttachmentDraft& draft : tray->drafts()) chipNames.append(draft.info.name);
    for (const Case& each : cases)
        if (!each.sentence.isEmpty()) sentences.append(each.sentence);
    EXPECT_EQ(chipNames, QStringList{QStringLiteral("groceries.txt")});
    EXPECT_EQ(tray->chips().size(), 1);
    EXPECT_EQ(tray->failureText(), sentences.join(QLatin1Char('\n')));
    EXPECT_TRUE(tray->isVisible());
    test::screenshot(*f.window, QStringLiteral("agent-chat-attachments"));

    // A file pasted into the text goes to the tray, never into the text as a path.
    f.type(QStringLiteral("see these"));
    auto* copied = new QMimeData;
    copied->setUrls({QUrl::fromLocalFile(write(QStringLiteral("notes.md"), "# plan"))});
    QApplication::clipboard()->setMimeData(copied);
    f.window->composer()->paste();
    ASSERT_TRUE(QTest::qWaitFor([&] { return tray->drafts().size() == 2 && !tray->isBusy(); }, 5000));
    EXPECT_EQ(f.window->composer()->toPlainText(), QStringLiteral("see these"));

    // Taking one off, then sending: the message carries the other, sealed in the store.
    QTest::mouseClick(tray->chips().first()->removeButton(), Qt::LeftButton);
    QTest::qWait(30);
    ASSERT_EQ(tray->drafts().size(), 1);
    EXPECT_EQ(tray->drafts().first().info.name, QStringLiteral("notes.md"));
    f.script->steps = {QStringLiteral("Got it.")};
    f.press(Qt::Key_Return);
    f.waitForReply();
    ASSERT_EQ(f.conversation().size(), 2);
    const AgentMessage sent = f.conversation().first();
    ASSERT_EQ(sent.attachments.size(), 1);
    EXPECT_EQ(sent.attachments.first().name, QStringLiteral("notes.md"));
    EXPECT_EQ(f.files->read(sent.attachments.first().id), QByteArray("# plan"));
    EXPECT_TRUE(tray->drafts().isEmpty());
    EXPECT_FALSE(tray->isVisible());
    EXPECT_EQ(f.window->transcript()->messageViews().first()->filesLabel()->text(), QStringLiteral("📎 notes.md"));
}

TEST(AgentChatWindow, AFailedSendKeepsTheTextAndSaysWhy) {
    Fixture f;
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("plan.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("the plan");
    file.close();
    f.window->addFiles({file.fileName()});
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.window->tray()->drafts().size() == 1; }, 5000));
    f.files->failingID = f.window->tray()->drafts().first().info.id;
    f.type(QStringLiteral("read this"));
    f.press(Qt::Key_Return);
    EXPECT_TRUE(f.conversation().isEmpty());
    EXPECT_EQ(f.window->composer()->toPlainText(), QStringLiteral("read this"));
    EXPECT_EQ(f.window->tray()->drafts().size(), 1);
    EXPECT_TRUE(f.window->statusLabel()->isVisible());
    EXPECT_EQ(f.window->statusLabel()->text(), QStringLiteral("The attachment couldn't be saved."));
}

TEST(AgentChatWindow, ClearingAsksFirst) {
    Fixture f;
    f.script->steps = {QStringLiteral("Hello!")};
    f.type(QStringLiteral("hi"));
    f.press(Qt::Key_Return);
    f.waitForReply();
    ASSERT_EQ(f.conversation().size(), 2);
    int asked = 0;
    bool agree = false;
    f.window->confirmClear = [&](QWidget*) {
        ++asked;
        return agree;
    };
    QTest::keyClick(f.window.get(), Qt::Key_Backspace, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(f.conversation().size(), 2);
    agree = true;
    f.window->clearConversation();
    QTest::qWait(30);
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(f.conversation().isEmpty());
    EXPECT_TRUE(f.persistence->loadMessages(f.scout.id).isEmpty());
    EXPECT_TRUE(f.window->transcript()->messageViews().isEmpty());
}

TEST(AgentChatWindow, TheWindowClosesWhenItsAgentIsDeleted) {
    Fixture f;
    Agent renamed = f.scout;
    renamed.name = QStringLiteral("Scout Prime");
    renamed.emoji.clear();
    f.center->save(renamed);
    EXPECT_EQ(f.window->windowTitle(), QStringLiteral("Scout Prime"));
    ASSERT_TRUE(f.center->remove(f.scout.id));
    EXPECT_FALSE(f.window->isVisible());
}

QCoro::Task<> ask(AgentCenter* center, MCPApprovalRequest request, std::shared_ptr<std::optional<MCPApprovalDecision>> answer) {
    *answer = co_await center->requestApproval(std::move(request), std::nullopt, CancelToken());
}

MCPApprovalRequest request(const QString& agentID, std::optional<QString> jobTitle = std::nullopt) {
    return {newId(),
            agentID,
            QStringLiteral("github"),
            QStringLiteral("GitHub"),
            QStringLiteral("create_issue"),
            QStringLiteral("Create issue"),
            {{QStringLiteral("repo"), QStringLiteral("tarnvale/vuro")},
             {QStringLiteral("title"), QStringLiteral("Crash when a note is empty")},
             {QStringLiteral("body"), QStringLiteral("Steps: open the Shelf, add a blank note, close it. The app quits.")}},
            std::move(jobTitle)};
}

TEST(AgentChatWindow, AsksForApprovalInPlaceAndPassesTheAnswerOn) {
    Fixture f;
    struct Case {
        QPushButton* (ApprovalCard::*button)() const;
        MCPApprovalDecision decision;
    };
    const Case cases[] = {
        {&ApprovalCard::allowOnceButton, MCPApprovalDecision::allowOnce},
        {&ApprovalCard::allowAlwaysButton, MCPApprovalDecision::allowAlways},
        {&ApprovalCard::denyButton, MCPApprovalDecision::deny},
    };
    Agent other;
    other.name = QStringLiteral("Other");
    f.center->save(other);
    for (const Case& each : cases) {
        auto answer = std::make_shared<std::optional<MCPApprovalDecision>>();
        auto elsewhere = std::make_shared<std::optional<MCPApprovalDecision>>();
        ask(f.center.get(), request(f.scout.id), answer);
        ask(f.center.get(), request(other.id), elsewhere);  // another agent's question stays in its own chat
        ASSERT_EQ(f.window->approvalCards().size(), 1);
        EXPECT_EQ(f.window->transcript()->activityLabel()->text(), QStringLiteral("Waiting for your OK…"));
        if (each.decision == MCPApprovalDecision::allowOnce) test::screenshot(*f.window, QStringLiteral("agent-chat-approval"));
        QTest::mouseClick((f.window->approvalCards().first()->*each.button)(), Qt::LeftButton);
        QTest::qWait(30);
        EXPECT_EQ(*answer, each.decision);
        EXPECT_FALSE(elsewhere->has_value());
        EXPECT_TRUE(f.window->approvalCards().isEmpty());
        EXPECT_FALSE(f.window->transcript()->activityLabel()->isVisible());
        f.center->answer(f.center->pendingApprovals().first().id, MCPApprovalDecision::deny);
        EXPECT_EQ(*elsewhere, MCPApprovalDecision::deny);
    }

    // A job's question says which job asks.
    auto answer = std::make_shared<std::optional<MCPApprovalDecision>>();
    ask(f.center.get(), request(f.scout.id, QStringLiteral("Weekly triage")), answer);
    ASSERT_EQ(f.window->approvalCards().size(), 1);
    QStringList texts;
    for (QLabel* label : f.window->approvalCards().first()->findChildren<QLabel*>()) texts.append(label->text());
    EXPECT_TRUE(texts.join(QLatin1Char('\n')).contains(QStringLiteral("For the job “Weekly triage”."))) << texts.join(QLatin1Char('|')).toStdString();
    test::screenshot(*f.window, QStringLiteral("agent-chat-approval-job"));
    f.center->answer(f.center->pendingApprovals().first().id, MCPApprovalDecision::deny);
}

// A model's text is not trusted: nothing in it may load a file, run markup or reach the network.
TEST(MarkdownLabel, RendersMarkdownAndKeepsModelTextInert) {
    struct Case {
        const char* markdown;
        QStringList present;
        QStringList absent;
    };
    const Case cases[] = {
        {"**bold** and *soft*", {"font-weight:700", "font-style:italic", ">bold<"}, {"**"}},
        {"- one\n- two\n\n1. first", {"<li", "<ul", "<ol"}, {}},
        {"see [docs](https://example.com/a)", {"href=\"https://example.com/a\""}, {}},
        {"![the cat](file:///etc/passwd)", {"[image: the cat]"}, {"<img", "passwd"}},
        {"![](https://tracker.example/p.gif)", {}, {"<img", "tracker"}},
        {"<img src=\"/etc/passwd\"> <b>raw</b>", {"&lt;img", "&lt;b&gt;"}, {"<img", "<b>"}},
        {"```\ncode block\n```", {"background-color:", "code block"}, {"```"}},
    };
    const QColor shade(0xEE, 0xEE, 0xEE);
    for (const Case& each : cases) {
        const QString html = MarkdownLabel::html(QString::fromUtf8(each.markdown), QApplication::font(), shade);
        for (const QString& piece : each.present)
            EXPECT_TRUE(html.contains(piece)) << each.markdown << " lacks " << piece.toStdString() << "\n" << html.toStdString();
        for (const QString& piece : each.absent)
            EXPECT_FALSE(html.contains(piece)) << each.markdown << " has " << piece.toStdString() << "\n" << html.toStdString();
    }
}

}  // namespace
