#include "base/Defaults.h"
#include "editor/ui/NoteEditor.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "shelf/DeckLayout.h"
#include "shelf/DeckManager.h"
#include "shelf/ui/DeckPanel.h"
#include "shelf/ui/QtDeckHost.h"
#include "support/Printers.h"
#include "support/Screenshot.h"

#include <QCursor>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;

namespace {


class Shelf : public testing::Test {
protected:
    void SetUp() override {
        QCursor::setPos(100, 100);  // away from the right edge
        const char* bodies[] = {
            "# Groceries\n- [ ] milk\n- [ ] bread tomorrow\n- [x] eggs",
            "Call the **plumber** about the `kitchen` tap",
            "# Reading list\n> Slow is smooth\n- [ ] finish the *second* chapter",
            "Ideas for the weekend",
            "Meeting notes\n[agenda.pdf](vuro-file://F1)"};
        for (const char* body : bodies) store.create({}, QString::fromUtf8(body));
        manager.refreshScreens();
        ASSERT_FALSE(manager.decks().empty());
        deck = manager.decks().begin()->second.get();
        panel = static_cast<DeckPanel*>(&deck->panel());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(panel));
    }
    QRect expectedFrame(const DeckState& state) {
        return DeckLayout::panelFrame(state, deck->screen().visible, static_cast<int>(store.visibleNotes().size()),
                                      deck->model().prefs());
    }

    std::shared_ptr<InMemoryNotePersistence> rows = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{rows};
    QtDeckHost host{store};
    DeckManager manager{host, store, Defaults::standard()};
    DeckController* deck = nullptr;
    DeckPanel* panel = nullptr;
};

TEST_F(Shelf, restFanAndExpandedAtTheScreenEdge) {
    EXPECT_TRUE(deck->state().isRest());
    EXPECT_EQ(panel->geometry(), expectedFrame(DeckState::rest()));
    EXPECT_EQ(panel->geometry().right(), deck->screen().visible.right());
    EXPECT_TRUE(panel->testAttribute(Qt::WA_X11NetWmWindowTypeDock));
    test::screenshot(*panel, QStringLiteral("shelf-rest"));

    deck->setState(DeckState::fan());
    QTest::qWait(50);
    EXPECT_EQ(panel->geometry(), expectedFrame(DeckState::fan()));
    ASSERT_EQ(panel->list()->count(), 5);
    EXPECT_EQ(panel->list()->item(0)->text(), QStringLiteral("Meeting notes"));
    test::screenshot(*panel, QStringLiteral("shelf-fan"));

    const QString id = store.visibleNotes()[4].id;
    deck->expand(id);
    QTest::qWait(80);
    EXPECT_EQ(deck->model().state(), DeckState::expanded(id));
    EXPECT_EQ(panel->editor()->storedText(), store.note(id)->body);
    test::screenshot(*panel, QStringLiteral("shelf-expanded"));
    deck->collapse();
}

TEST_F(Shelf, editsInTheOpenNoteReachTheStore) {
    const QString id = store.visibleNotes()[2].id;
    deck->expand(id);
    QTest::qWait(80);
    panel->editor()->moveCursor(QTextCursor::End);
    QTest::keyClicks(panel->editor(), QStringLiteral(" soon"));
    EXPECT_TRUE(store.note(id)->body.endsWith(QStringLiteral("second* chapter soon")));
    deck->model().setFindQuery(QStringLiteral("chapter"));
    EXPECT_EQ(panel->editor()->extraSelections().size(), 1);
    deck->model().setFindQuery(std::nullopt);
    EXPECT_TRUE(panel->editor()->extraSelections().isEmpty());
    deck->collapse();
}

TEST_F(Shelf, findBarTakesTheTypingAndStepsThroughMatches) {
    const QString id = store.create({}, QStringLiteral("tap water\nthe kitchen tap\nno match here\ntap again")).id;
    deck->expand(id);
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel));
    QLineEdit* find = panel->findChild<QLineEdit*>();
    ASSERT_NE(find, nullptr);
    EXPECT_FALSE(find->isVisible());

    QTest::keyClick(panel->editor(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(find->isVisible());
    EXPECT_TRUE(find->hasFocus());
    QTest::keyClicks(find, QStringLiteral("tap"));
    EXPECT_EQ(deck->model().findQuery(), QStringLiteral("tap"));
    EXPECT_EQ(panel->editor()->extraSelections().size(), 3);
    test::screenshot(*panel, QStringLiteral("shelf-find"));

    // Return selects the next match after the caret, and starts from the top after the last.
    QList<int> lines;
    for (int i = 0; i < 4; ++i) {
        QTest::keyClick(find, Qt::Key_Return);
        EXPECT_EQ(panel->editor()->textCursor().selectedText(), QStringLiteral("tap"));
        lines.append(panel->editor()->textCursor().blockNumber());
    }
    EXPECT_EQ(lines, (QList<int>{0, 1, 3, 0}));

    // Escape closes the bar first and gives the typing back to the note; a second one folds it.
    QTest::keyClick(find, Qt::Key_Escape);
    EXPECT_FALSE(deck->model().findQuery().has_value());
    EXPECT_FALSE(find->isVisible());
    EXPECT_TRUE(panel->editor()->hasFocus());
    EXPECT_TRUE(deck->state().isExpanded());
    QTest::keyClick(panel->editor(), Qt::Key_Escape);
    EXPECT_TRUE(deck->state().isFan());
    deck->returnToIdle();
}

TEST_F(Shelf, draggingACardReordersTheNotesOnceTheDropIsDone) {
    deck->setState(DeckState::fan());
    QTest::qWait(20);
    const QString first = store.visibleNotes()[0].id;
    ASSERT_TRUE(panel->list()->model()->moveRows(QModelIndex(), 0, 1, QModelIndex(), 3));
    EXPECT_TRUE(QTest::qWaitFor([&] { return store.visibleNotes()[2].id == first; }, 2000));
    EXPECT_EQ(rows->rows.value(first).order, 2.0);
    EXPECT_EQ(panel->list()->item(2)->data(Qt::UserRole).toString(), first);

    // A note arriving during a drag waits for the drag to end before the list shows it.
    deck->model().setDragging(true);
    const QString arrived = store.create(QStringLiteral("Arrived mid-drag")).id;
    EXPECT_EQ(panel->list()->count(), 5);
    deck->model().setDragging(false);
    ASSERT_EQ(panel->list()->count(), 6);
    EXPECT_EQ(panel->list()->item(0)->data(Qt::UserRole).toString(), arrived);
    deck->returnToIdle();
}

TEST_F(Shelf, stripGrowsWithTheNotes) {
    const int before = panel->height();
    for (int i = 0; i < 12; ++i) store.create(QStringLiteral("more %1").arg(i));
    // The window manager confirms each of the twelve resizes in turn.
    EXPECT_TRUE(QTest::qWaitFor([&] { return panel->geometry() == expectedFrame(DeckState::rest()); }, 3000))
        << panel->height() << " " << expectedFrame(DeckState::rest()).height();
    EXPECT_GT(panel->height(), before);
    test::screenshot(*panel, QStringLiteral("shelf-rest-many"));
}

}  // namespace
