#include "commands/ui/CommandBar.h"

#include "base/Clock.h"
#include "commands/CommandBarModel.h"
#include "models/OpenAICompatibleProvider.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"
#include "support/Screenshot.h"
#include "support/VendorReplies.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using namespace std::chrono_literals;


struct TellVuroBar : testing::Test {
    Clock::Override clock{QDateTime(QDate(2026, 11, 21), QTime(9, 0))};
    test::LoopbackHttpServer server;
    QNetworkAccessManager session;
    OpenAICompatibleProvider provider{AIProviderKind::openAI, "gpt-6.1-sol", "sk-test", server.url("/v1/"), &session};
    std::shared_ptr<InMemoryNotePersistence> disk = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{disk};
    CommandBarModel model{store, provider, false};
    CommandBar bar{model};

    void open() {
        bar.present();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&bar));
    }
    bool thinking() const { return std::holds_alternative<CommandBarModel::Thinking>(model.phase()); }
};

TEST_F(TellVuroBar, EnterSendsShowsThinkingThenTheOutcomeWithUndo) {
    const QString shopping = store.create("Shopping list", "- [ ] bread").id;
    test::ReplayedResponse reply = test::openAIReply({R"({"action":"addTask","noteHint":"shopping list","text":"milk","title":""})"});
    reply.pause = 30ms;
    server.enqueue(reply);
    open();
    EXPECT_FALSE(bar.progress()->isVisible());
    EXPECT_FALSE(bar.message()->isVisible());

    QTest::keyClicks(bar.field(), "add milk to the shopping list");
    QTest::keyClick(bar.field(), Qt::Key_Return);
    EXPECT_TRUE(thinking());
    EXPECT_TRUE(bar.progress()->isVisible());
    EXPECT_EQ(bar.message()->text(), "Thinking…");
    EXPECT_FALSE(bar.undoButton()->isVisible());
    test::screenshot(bar, "tell-vuro-thinking");

    ASSERT_TRUE(QTest::qWaitFor([&] { return !thinking(); }, 5000));
    EXPECT_EQ(bar.message()->text(), "Added “milk” to Shopping list.");
    EXPECT_TRUE(bar.undoButton()->isVisible());
    EXPECT_FALSE(bar.progress()->isVisible());
    EXPECT_EQ(store.note(shopping)->body, "- [ ] bread\n- [ ] milk");
    test::screenshot(bar, "tell-vuro-done");

    QTest::mouseClick(bar.undoButton(), Qt::LeftButton);
    EXPECT_EQ(store.note(shopping)->body, "- [ ] bread");
    EXPECT_EQ(bar.message()->text(), "Undone.");
    EXPECT_FALSE(bar.undoButton()->isVisible());
}

TEST_F(TellVuroBar, FailuresShowAsSentencesAndEscCloses) {
    server.enqueue(test::ReplayedResponse::of(R"({"error":{"message":"bad key"}})", 40, 401));
    open();
    QTest::keyClicks(bar.field(), "new note: book recommendations");
    QTest::keyClick(bar.field(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !thinking(); }, 5000));
    EXPECT_EQ(bar.message()->text(), "The API key was not accepted (401).");
    EXPECT_FALSE(bar.undoButton()->isVisible());
    EXPECT_EQ(bar.field()->text(), "new note: book recommendations") << "the sentence stays to try again";
    test::screenshot(bar, "tell-vuro-failed");

    // Esc while thinking closes the bar and drops the answer.
    test::ReplayedResponse slow = test::openAIReply({R"({"action":"createNote","noteHint":"","text":"","title":"Books"})"});
    slow.pause = 30ms;
    server.enqueue(slow);
    QTest::keyClick(bar.field(), Qt::Key_Return);
    ASSERT_TRUE(thinking());
    QTest::keyClick(bar.field(), Qt::Key_Escape);
    EXPECT_FALSE(bar.isVisible());
    EXPECT_FALSE(thinking());
    QTest::qWait(1500);
    EXPECT_TRUE(store.notes().isEmpty());
}

TEST_F(TellVuroBar, ThePlaceholderTurnsThroughExamples) {
    bar.exampleInterval = 40ms;
    open();
    QStringList seen{bar.field()->placeholderText()};
    ASSERT_TRUE(QTest::qWaitFor([&] {
        if (!seen.contains(bar.field()->placeholderText())) seen << bar.field()->placeholderText();
        return seen.size() >= 2;
    }, 2000));
    EXPECT_EQ(seen.first(), "add milk to the shopping list");
    EXPECT_EQ(seen[1], "new note: book recommendations");
}

}  // namespace
}  // namespace vuro
