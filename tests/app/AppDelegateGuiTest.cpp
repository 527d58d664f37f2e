#include "app/ui/AppDelegate.h"
#include "agents/AgentCenter.h"
#include "agents/ui/AgentChatWindow.h"
#include "agents/ui/AgentEditorWindow.h"
#include "commands/ui/CommandBar.h"
#include "settings/ui/SettingsWindow.h"
#include "notes/InMemoryNotePersistence.h"

#include "support/Printers.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

struct Quitting : testing::Test {
    std::shared_ptr<InMemoryNotePersistence> disk = std::make_shared<InMemoryNotePersistence>();
    AppDelegate delegate{std::make_unique<AppEnvironment>(AppEnvironment::Stores{disk, {}, {}}, 10s)};
    QSignalSpy terminated{&delegate, &AppDelegate::applicationWillTerminate};
    QStringList questions;

    void answer(bool quitAnyway) {
        delegate.confirmQuit = [this, quitAnyway](const QString& lastError) {
            questions << lastError;
            return quitAnyway;
        };
    }
    QString unsavedNote() {
        NoteStore& notes = delegate.environment().notes();
        const QString id = notes.create().id;
        disk->failNextWrite = Error(QStringLiteral("The disk is full."));
        notes.setBody(id, QStringLiteral("precious"));
        return id;
    }
};

}  // namespace

TEST_F(Quitting, WritesPendingEditsAndQuitsWithoutAsking) {
    answer(false);
    NoteStore& notes = delegate.environment().notes();
    EXPECT_EQ(AppEnvironment::current(), &delegate.environment());
    const QString id = notes.create().id;
    notes.setBody(id, QStringLiteral("typed just before quitting"));
    delegate.requestQuit();
    EXPECT_EQ(disk->rows[id].body, QStringLiteral("typed just before quitting"));
    EXPECT_TRUE(questions.isEmpty());
    EXPECT_EQ(terminated.count(), 1);
}

TEST_F(Quitting, AsksWhenANoteCannotBeWrittenAndStaysOnDontQuit) {
    const QString id = unsavedNote();
    answer(false);
    delegate.requestQuit();
    EXPECT_EQ(questions, QStringList{"The disk is full."});
    EXPECT_EQ(terminated.count(), 0);
    EXPECT_TRUE(delegate.environment().notes().unsavedIDs().contains(id)) << "the edit stays in memory, dirty";

    answer(true);
    disk->failNextWrite = Error(QStringLiteral("Still full."));
    delegate.requestQuit();
    EXPECT_EQ(questions.last(), QStringLiteral("Still full."));
    EXPECT_EQ(terminated.count(), 1);
}

TEST_F(Quitting, TheQuestionIsTheUnsavedNotesDialog) {
    unsavedNote();
    QString text, informative;
    QStringList buttons;
    QTimer::singleShot(200, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return;
        text = box->text();
        informative = box->informativeText();
        for (QAbstractButton* button : box->buttons()) buttons << button->text();
        QDir().mkpath(QStringLiteral(VURO_BINARY_DIR "/screenshots"));
        box->grab().save(QStringLiteral(VURO_BINARY_DIR "/screenshots/UnsavedNotesDialog.png"));
        for (QAbstractButton* button : box->buttons())
            if (button->text() == QStringLiteral("Don't Quit")) button->click();
    });
    delegate.requestQuit();
    EXPECT_EQ(text, QStringLiteral("Some notes could not be saved."));
    EXPECT_EQ(informative, QStringLiteral("The disk is full."));
    buttons.sort();
    EXPECT_EQ(buttons, (QStringList{"Don't Quit", "Quit Anyway"}));
    EXPECT_EQ(terminated.count(), 0);
}

TEST(AppDelegate, LaunchAndReopenStayAwayFromTheDesktopInATestHost) {
    AppDelegate delegate;
    QSignalSpy notesWindow(&delegate, &AppDelegate::notesWindowRequested);
    delegate.environment().notes().create();
    delegate.applicationDidFinishLaunching();
    delegate.handleReopen();
    EXPECT_EQ(delegate.menuBar(), nullptr);
    EXPECT_EQ(notesWindow.count(), 0);
    EXPECT_EQ(delegate.environment().notes().notes().size(), 1) << "no sweep in a test host";
}

TEST(AppDelegate, OpensOneEditorPerAgentSettingsAndTellVuro) {
    AppDelegate delegate;
    Agent scout;
    scout.name = QStringLiteral("Scout");
    delegate.environment().agents().save(scout);

    AgentEditorWindow* editor = delegate.showAgentEditor(scout.id);
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isVisible());
    EXPECT_EQ(editor->nameField()->text(), QStringLiteral("Scout"));
    EXPECT_EQ(delegate.showAgentEditor(scout.id), editor) << "an open editor comes forward";
    AgentEditorWindow* fresh = delegate.showAgentEditor(QString());
    EXPECT_NE(fresh, editor);
    EXPECT_TRUE(fresh->nameField()->text().isEmpty());
    const QPointer<AgentEditorWindow> closed(editor);
    editor->close();  // deletes itself; the next request opens a new one
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(closed.isNull());
    EXPECT_TRUE(delegate.showAgentEditor(scout.id)->isVisible());

    SettingsWindow* settings = delegate.showSettings();
    EXPECT_TRUE(settings->isVisible());
    EXPECT_EQ(delegate.showSettings(), settings);
    CommandBar* bar = delegate.showTellVuro();
    EXPECT_TRUE(bar->isVisible());
}

TEST(AppDelegateAgents, OneChatWindowPerAgentThatGoesWithItsAgent) {
    AppDelegate delegate{std::make_unique<AppEnvironment>(AppEnvironment::Stores{std::make_shared<InMemoryNotePersistence>()}, 10s)};
    AgentCenter& agents = delegate.environment().agents();
    delegate.showAgentChat(QStringLiteral("nobody"));
    EXPECT_EQ(delegate.agentChat(QStringLiteral("nobody")), nullptr);

    delegate.showAgentChat(Agent::notesAgentID);
    AgentChatWindow* window = delegate.agentChat(Agent::notesAgentID);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Vuro"));
    window->close();
    delegate.showAgentChat(Agent::notesAgentID);
    EXPECT_EQ(delegate.agentChat(Agent::notesAgentID), window);  // the same window comes back
    EXPECT_TRUE(window->isVisible());

    Agent scout;
    scout.name = QStringLiteral("Scout");
    agents.save(scout);
    delegate.showAgentChat(scout.id);
    ASSERT_NE(delegate.agentChat(scout.id), nullptr);
    ASSERT_TRUE(agents.remove(scout.id));
    EXPECT_EQ(delegate.agentChat(scout.id), nullptr);
    EXPECT_EQ(delegate.agentChat(Agent::notesAgentID), window);
}
