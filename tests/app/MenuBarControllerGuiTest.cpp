#include "app/ui/MenuBarController.h"

#include "support/Printers.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

QStringList texts(const QMenu* menu) {
    QStringList result;
    for (const QAction* action : menu->actions())
        if (!action->isSeparator()) result.append(action->text());
    return result;
}

TEST(MenuBarController, AgentsSubmenuOpensChatsAndShowsUnreadReplies) {
    MenuBarController bar;
    const QStringList top = texts(bar.menu());
    const qsizetype notes = top.indexOf(QStringLiteral("Notes…"));
    ASSERT_GE(notes, 0);
    ASSERT_LT(notes + 1, top.size());
    EXPECT_EQ(top[notes + 1], QStringLiteral("Agents"));
    EXPECT_FALSE(bar.agentsMenu()->isEnabled());  // no agents yet

    struct Case {
        QList<MenuBarController::AgentEntry> agents;
        QStringList entries;
        QString title;
    };
    const Case cases[] = {
        {{{"vuro.notes", "V", "Vuro", false}, {"A1", "🦊", "Scout", false}}, {"V Vuro", "🦊 Scout"}, "Agents"},
        {{{"vuro.notes", "V", "Vuro", false}, {"A1", "🦊", "Scout", true}}, {"V Vuro", "🦊 Scout  ●"}, "Agents  ●"},
        {{{"A2", "", "Agent", true}}, {"Agent  ●"}, "Agents  ●"},
    };
    for (const Case& each : cases) {
        bar.setAgents(each.agents);
        EXPECT_EQ(texts(bar.agentsMenu()), each.entries);
        EXPECT_EQ(bar.agentsMenu()->title(), each.title);
        EXPECT_TRUE(bar.agentsMenu()->isEnabled());
    }

    QSignalSpy opened(&bar, &MenuBarController::agentChatRequested);
    bar.setAgents(cases[0].agents);
    bar.agentsMenu()->actions().at(1)->trigger();
    ASSERT_EQ(opened.count(), 1);
    EXPECT_EQ(opened.first().first().toString(), QStringLiteral("A1"));
}

}  // namespace
