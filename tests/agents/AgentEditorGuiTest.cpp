#include "agents/ui/AgentEditorWindow.h"

#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentCenter.h"
#include "agents/InMemoryAgentPersistence.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"
#include "support/Screenshot.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace vuro {
namespace {


struct AgentEditor : testing::Test {
    std::shared_ptr<InMemoryNotePersistence> notePersistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore notes{notePersistence};
    std::shared_ptr<InMemoryAgentPersistence> persistence = std::make_shared<InMemoryAgentPersistence>();
    AgentCenter center{persistence, &notes, std::make_shared<InMemoryAgentAttachmentFiles>(),
                       [](const Agent&) { return nullptr; }, nullptr, false};

    std::unique_ptr<AgentEditorWindow> open(const QString& id) {
        auto window = std::make_unique<AgentEditorWindow>(center, id);
        window->confirmDelete = [](const QString&) { return true; };
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        return window;
    }
    static void replace(QLineEdit* field, const QString& text) {
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    Agent scout() const {
        Agent agent;
        agent.id = "SCOUT-1";
        agent.name = "Scout";
        agent.emoji = "🦊";
        agent.color = NoteColor::mint;
        agent.vibe = "curious and brief";
        agent.soul = "You are Scout, a research companion. You never invent sources.";
        agent.duty = "You collect links about the user's projects and summarise them in three bullets.";
        agent.memory = "- works on a garden planner\n- prefers metric units";
        agent.provider = AIProviderKind::claude;
        agent.model = "claude-opus-5-5";
        agent.access = NoteAccess::read;
        agent.web = true;
        agent.mcpServers = {"github"};
        return agent;
    }
};

TEST_F(AgentEditor, EditsAFilledAgentAndKeepsWhatItDoesntShow) {
    center.save(scout());
    const QDateTime created = center.agent("SCOUT-1")->createdAt;
    auto window = open("SCOUT-1");
    EXPECT_EQ(window->nameField()->text(), "Scout");
    EXPECT_EQ(window->backEndBox()->currentText(), "Anthropic API");
    EXPECT_EQ(window->accessBox()->currentText(), "Reads notes");
    EXPECT_TRUE(window->webBox()->isChecked());
    EXPECT_TRUE(window->deleteButton()->isEnabled());
    test::screenshot(*window, "agent-editor");

    replace(window->nameField(), "Scout II");
    window->backEndBox()->setCurrentText("Codex CLI");
    window->setColor(NoteColor::rose);
    window->memoryField()->appendPlainText("- has a dog called Pip");
    QSignalSpy saved(window.get(), &AgentEditorWindow::saved);
    QTest::mouseClick(window->saveButton(), Qt::LeftButton);
    ASSERT_EQ(saved.count(), 1);
    const Agent stored = *center.agent("SCOUT-1");
    EXPECT_EQ(stored.name, "Scout II");
    EXPECT_EQ(stored.cliTool, CLIToolKind::codex);
    EXPECT_EQ(stored.provider, AIProviderKind::claude) << "the provider stays for when the tool is taken off";
    EXPECT_EQ(stored.color, NoteColor::rose);
    EXPECT_TRUE(stored.memory.endsWith("\n- has a dog called Pip"));
    EXPECT_EQ(stored.mcpServers, QStringList{"github"});
    EXPECT_EQ(stored.createdAt, created);
    EXPECT_EQ(persistence->loadAgents().size(), 2);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(AgentEditor, RefusesABadDraftWithASentenceAndSavesNothing) {
    center.save(scout());
    auto window = open({});
    EXPECT_FALSE(window->deleteButton()->isEnabled()) << "nothing to delete yet";
    struct Case {
        QString name;
        QString emoji;
        QString expected;
    };
    const Case cases[] = {
        {"", "", "Give the agent a name."},
        {"scout", "", "Another agent is already called Scout."},
        {"Ada", "ab", "Use a single emoji for the face."},
    };
    for (const Case& c : cases) {
        window->nameField()->setText(c.name);
        window->emojiField()->setText(c.emoji);
        QTest::mouseClick(window->saveButton(), Qt::LeftButton);
        EXPECT_TRUE(window->problem()->isVisible());
        EXPECT_EQ(window->problem()->text(), c.expected);
        EXPECT_EQ(center.agents().size(), 2);
        EXPECT_TRUE(window->isVisible());
    }
    test::screenshot(*window, "agent-editor-refused");
    window->nameField()->setText("Ada");
    window->emojiField()->setText("🐝");
    EXPECT_TRUE(window->save());
    EXPECT_EQ(center.agents().size(), 3);
    EXPECT_EQ(center.agents().last().name, "Ada");
    EXPECT_EQ(center.agents().last().access, NoteAccess::read);
}

TEST_F(AgentEditor, TheBuiltInAgentKeepsItsFixedFieldsAndCantBeDeleted) {
    auto window = open(Agent::notesAgentID);
    EXPECT_TRUE(window->soulField()->isReadOnly());
    EXPECT_TRUE(window->dutyField()->isReadOnly());
    EXPECT_FALSE(window->accessBox()->isEnabled());
    EXPECT_FALSE(window->webBox()->isEnabled());
    EXPECT_FALSE(window->deleteButton()->isEnabled());
    EXPECT_FALSE(window->deleteAgent());
    replace(window->nameField(), "Vera");
    window->memoryField()->setPlainText("- likes tea");
    ASSERT_TRUE(window->save());
    const Agent stored = *center.agent(Agent::notesAgentID);
    EXPECT_EQ(stored.name, "Vera");
    EXPECT_EQ(stored.memory, "- likes tea");
    EXPECT_EQ(stored.access, NoteAccess::readWrite);

    center.save(scout());
    auto other = open("SCOUT-1");
    QSignalSpy deleted(other.get(), &AgentEditorWindow::deleted);
    QTest::mouseClick(other->deleteButton(), Qt::LeftButton);
    EXPECT_EQ(deleted.count(), 1);
    EXPECT_FALSE(center.agent("SCOUT-1"));
    EXPECT_TRUE(center.agent(Agent::notesAgentID));
}

}  // namespace
}  // namespace vuro
