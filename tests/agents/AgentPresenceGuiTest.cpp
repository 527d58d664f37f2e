#include "agents/AgentConversationPresence.h"
#include "app/AppEnvironment.h"
#include "base/Defaults.h"
#include "models/AIProviderSettings.h"
#include "models/OnDeviceProvider.h"
#include "support/Printers.h"

#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>

namespace vuro {
namespace {

// Waits until the window system has settled what the presence sees.
bool settlesTo(const AgentConversationPresence& presence, const QString& agentID, bool expected) {
    return QTest::qWaitFor([&] { return presence.isOnScreen(agentID) == expected; }, 3000);
}

TEST(AgentConversationPresence, FollowsTheWindowsOfEachAgent) {
    AgentConversationPresence presence;
    QSignalSpy changed(&presence, &AgentConversationPresence::presenceChanged);
    QWindow first, second;
    first.resize(200, 150);
    second.resize(200, 150);
    const int firstToken = presence.add("A", &first);
    presence.add("A", &second);
    auto stranger = std::make_unique<QWindow>();
    stranger->resize(100, 100);
    const int strangerToken = presence.add("B", stranger.get());

    struct Step {
        const char* what;
        std::function<void()> act;
        bool aOnScreen;
        bool bOnScreen;
        bool quiet = false;  // no window changes, so nothing may be told
    };
    const QList<Step> steps = {
        {"registered but never shown", [] {}, false, false, true},
        {"one window shown", [&] { first.show(); }, true, false},
        {"the other shown too", [&] { second.show(); }, true, false},
        {"one hidden, the other still shows", [&] { first.hide(); }, true, false},
        {"minimised counts as away", [&] { second.showMinimized(); }, false, false},
        {"restored", [&] { second.showNormal(); }, true, false},
        {"another agent's window", [&] { stranger->show(); }, true, true},
        {"a destroyed window stops counting", [&] { stranger.reset(); }, true, false},
        {"the removed token's window no longer counts", [&] {
             presence.remove(firstToken);
             first.show();
             second.hide();
         }, false, false},
        {"an unknown or removed token does nothing", [&] {
             presence.remove(firstToken);
             presence.remove(strangerToken + 100);
         }, false, false, true},
    };
    bool aBefore = false, bBefore = false;
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        const qsizetype told = changed.size();
        step.act();
        EXPECT_TRUE(settlesTo(presence, "A", step.aOnScreen));
        EXPECT_TRUE(settlesTo(presence, "B", step.bOnScreen));
        QTest::qWait(20);  // what the window system still had to say
        // A change is told; nothing is told when nothing changed. (A window system may flicker
        // its exposure on the way, which is told too.)
        if (step.aOnScreen != aBefore || step.bOnScreen != bBefore) {
            EXPECT_GT(changed.size(), told);
        }
        if (step.quiet) {
            EXPECT_EQ(changed.size(), told);
        }
        aBefore = step.aOnScreen;
        bBefore = step.bOnScreen;
    }
    EXPECT_FALSE(presence.isOnScreen("nobody"));
}

TEST(AgentConversationPresence, TheEnvironmentsUnreadMarksFollowTheWindows) {
    auto environment = AppEnvironment::build();
    AgentCenter& agents = environment->agents();
    const QString agentID = Agent::notesAgentID;
    agents.unread().clear(agentID);
    QWindow chat;
    chat.resize(300, 200);
    environment->presence().add(agentID, &chat);
    chat.show();
    ASSERT_TRUE(settlesTo(environment->presence(), agentID, true));

    // The built-in agent talks to the on-device model, which this build lacks: the reply is the
    // failure sentence, and it still counts as a reply.
    const auto replyOnce = [&] {
        const qsizetype before = agents.conversation(agentID).size();
        ASSERT_TRUE(agents.send("hello", {}, agentID));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !agents.replying().contains(agentID); }, 5000));
        ASSERT_EQ(agents.conversation(agentID).size(), before + 2);
        EXPECT_EQ(agents.conversation(agentID).last().failure, OnDeviceProvider::unavailableWords());
    };
    replyOnce();
    EXPECT_FALSE(agents.unread().agentIDs().contains(agentID)) << "the user saw it come";

    chat.hide();
    ASSERT_TRUE(settlesTo(environment->presence(), agentID, false));
    replyOnce();
    EXPECT_TRUE(agents.unread().agentIDs().contains(agentID));
    EXPECT_EQ(environment->providerSettings().stringList("unreadAgentIDs"), QStringList{agentID});

    chat.show();  // coming back to the conversation reads it
    EXPECT_TRUE(QTest::qWaitFor([&] { return !agents.unread().agentIDs().contains(agentID); }, 3000));
}

TEST(AppEnvironment, WiresKeysProvidersAndTheAssistant) {
    auto environment = AppEnvironment::build();
    EXPECT_EQ(AppEnvironment::current(), environment.get());
    EXPECT_EQ(environment->agents().agents().first().id, Agent::notesAgentID);

    // Nothing chosen: the on-device assistant, which says it isn't there.
    Defaults& settings = environment->providerSettings();
    settings.remove(AIProviderSettings::providerKey());
    EXPECT_EQ(environment->assistant().availability().problem, OnDeviceProvider::unavailableWords());

    // Anthropic chosen: without a key it asks for one; the key store of a test host is its own.
    settings.setValue(AIProviderSettings::providerKey(), "claude");
    EXPECT_EQ(environment->assistant().name(), "Anthropic");
    EXPECT_EQ(environment->assistant().availability().problem, "Add your Anthropic API key in Settings → Assistant.");
    environment->keys().store(AIProviderKind::claude, "  sk-ant-test  ");
    EXPECT_EQ(environment->keys().key(AIProviderKind::claude), "sk-ant-test");
    EXPECT_TRUE(environment->assistant().availability().isAvailable());

    // An agent on Anthropic gets its chat model from the same keys.
    Agent agent;
    agent.provider = AIProviderKind::claude;
    const auto model = environment->chatModels().modelFor(agent);
    EXPECT_EQ(model->availabilityProblem(), std::nullopt);
    environment->keys().remove(AIProviderKind::claude);
    EXPECT_NE(environment->chatModels().modelFor(agent)->availabilityProblem(), std::nullopt);
    settings.remove(AIProviderSettings::providerKey());
}

}  // namespace
}  // namespace vuro
