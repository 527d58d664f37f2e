#include "base/Defaults.h"
#include "editor/EditorBridge.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "shelf/DeckLayout.h"
#include "shelf/DeckManager.h"
#include "support/Printers.h"
#include "shelf/FakeDeckHost.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;
using namespace vuro::testing;

namespace {

const QPointF outside{200, 500};

class Deck : public ::testing::Test {
protected:
    Deck() {
        store.create(QStringLiteral("one"));
        store.create(QStringLiteral("two"));
        manager.refreshScreens();
    }

    DeckController& deck() { return *manager.deck(1); }
    FakePanel& panel() { return *host.panels.value(1); }
    QPointF inside() { return QRectF(deck().hotRect()).center(); }
    QRect frameFor(const DeckState& state) {
        return DeckLayout::panelFrame(state, host.screenList[0].visible, static_cast<int>(store.visibleNotes().size()),
                                      deck().model().prefs());
    }
    void enterFan() {
        host.pointerAt = inside();
        deck().pointerEntered();
        ASSERT_TRUE(deck().state().isFan());
        host.pointerAt = inside();  // the fan's hot rectangle is the same as the strip's
    }
    QString openNote() {
        const QString id = store.visibleNotes().front().id;
        deck().expand(id);
        time.advance(50);
        return id;
    }

    QTemporaryDir folder;
    Defaults defaults{folder.filePath(QStringLiteral("Vuro.conf")), {}};
    ManualTime time;
    FakeDeckHost host{time};
    NoteStore store{std::make_shared<InMemoryNotePersistence>()};
    DeckManager manager{host, store, defaults};
};

TEST_F(Deck, startsInRestWithTheStripFrontAndNoTimer) {
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_TRUE(panel().front);
    EXPECT_EQ(panel().frame(), frameFor(DeckState::rest()));
    EXPECT_FALSE(deck().idleTimerRunning());
    EXPECT_FALSE(deck().monitorsInstalled());
}

TEST_F(Deck, pointerEnteringFansOutAfterGrowingThePanel) {
    QList<QRect> framesAtPublish;
    QObject::connect(&deck().model(), &DeckModel::stateChanged, [&] { framesAtPublish.append(panel().frame()); });
    enterFan();
    EXPECT_EQ(framesAtPublish, (QList<QRect>{frameFor(DeckState::fan())}));
    EXPECT_EQ(deck().model().revealTick(), 1);
    EXPECT_TRUE(deck().idleTimerRunning());
}

TEST_F(Deck, altHeldLetsThePointerPass) {
    host.alt = true;
    host.pointerAt = inside();
    deck().pointerEntered();
    EXPECT_TRUE(deck().state().isRest());
}

TEST_F(Deck, exitIsConfirmedAfterAPauseAndThePanelShrinksAfterTheAnimation) {
    enterFan();
    time.advance(130);
    QList<DeckTransition> transitions;
    QObject::connect(&deck().model(), &DeckModel::stateChanged,
                     [&](const DeckState&, DeckTransition transition) { transitions.append(transition); });
    host.pointerAt = outside;
    deck().pointerExited();
    time.advance(120);  // the tick at 240 finds the pointer outside and closes
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_EQ(transitions, (QList<DeckTransition>{DeckTransition::spring}));
    EXPECT_EQ(panel().frame(), frameFor(DeckState::fan()));  // still large while the views shrink
    time.advance(439);
    EXPECT_EQ(panel().frame(), frameFor(DeckState::fan()));
    time.advance(1);
    EXPECT_EQ(panel().frame(), frameFor(DeckState::rest()));
    EXPECT_FALSE(deck().idleTimerRunning());
}

TEST_F(Deck, passingThroughTheStripAgainKeepsTheFan) {
    enterFan();
    time.advance(130);
    host.pointerAt = outside;
    deck().pointerExited();
    time.advance(50);
    host.pointerAt = inside();
    deck().pointerEntered();
    time.advance(500);
    EXPECT_TRUE(deck().state().isFan());
}

TEST_F(Deck, exitConfirmationAloneClosesWhenNoTickCame) {
    enterFan();
    deck().idlePeriod = std::chrono::milliseconds(100000);
    deck().returnToIdle();
    enterFan();  // restarts the timer with the long period
    host.pointerAt = outside;
    deck().pointerExited();
    time.advance(149);
    EXPECT_TRUE(deck().state().isFan());
    time.advance(1);
    EXPECT_TRUE(deck().state().isRest());
}

TEST_F(Deck, aDragOutOfTheHotRectangleDoesNotClose) {
    enterFan();
    deck().model().setDragging(true);
    host.pointerAt = outside;
    deck().pointerExited();
    time.advance(10000);
    EXPECT_TRUE(deck().state().isFan());
    deck().model().setDragging(false);
    time.advance(120);
    EXPECT_TRUE(deck().state().isRest());
}

TEST_F(Deck, fanClosesAfterFourStillSecondsButNotWhileThePointerMoves) {
    enterFan();
    for (int i = 0; i < 10; ++i) {  // moving 3 points every second
        host.pointerAt += QPointF(i % 2 ? 3 : -3, 0);
        time.advance(1000);
    }
    EXPECT_TRUE(deck().state().isFan());
    // The last move was seen by the tick at 9.12 s; a move within 2 points is no activity.
    host.pointerAt += QPointF(1, 1);
    time.advance(3000);
    EXPECT_TRUE(deck().state().isFan());
    time.advance(250);
    EXPECT_TRUE(deck().state().isRest());
}

TEST_F(Deck, alwaysShownMakesTheFanTheIdleStateWithoutTimer) {
    defaults.setValue(QStringLiteral("deckAlwaysShown"), true);
    EXPECT_TRUE(deck().state().isFan());
    EXPECT_FALSE(deck().idleTimerRunning());
    host.pointerAt = outside;
    deck().pointerExited();
    time.advance(60000);
    EXPECT_TRUE(deck().state().isFan());
    // Opening and closing a note comes back to the fan.
    openNote();
    deck().collapse();
    EXPECT_TRUE(deck().state().isFan());
    EXPECT_FALSE(deck().idleTimerRunning());

    host.pointerAt = outside;
    defaults.setValue(QStringLiteral("deckAlwaysShown"), false);
    EXPECT_TRUE(deck().state().isRest());
}

TEST_F(Deck, turningAlwaysShownOffWithThePointerInsideStartsTheTimer) {
    defaults.setValue(QStringLiteral("deckAlwaysShown"), true);
    host.pointerAt = inside();
    defaults.setValue(QStringLiteral("deckAlwaysShown"), false);
    EXPECT_TRUE(deck().state().isFan());
    EXPECT_TRUE(deck().idleTimerRunning());
}

TEST_F(Deck, announcementHoldsTheFanFourSecondsUnlessANoteIsOpen) {
    host.pointerAt = outside;
    deck().announce();
    EXPECT_TRUE(deck().state().isFan());
    time.advance(3900);
    EXPECT_TRUE(deck().state().isFan());
    time.advance(240);
    EXPECT_TRUE(deck().state().isRest());

    const QString id = openNote();
    deck().announce();
    EXPECT_EQ(deck().state(), DeckState::expanded(id));
    EXPECT_FALSE(deck().isAnnouncing());
}

TEST_F(Deck, noteOpenedFromElsewhereIsThereAtOnceAndFromTheFanAfterTheGrowWait) {
    host.pointerAt = outside;
    QList<DeckTransition> transitions;
    QObject::connect(&deck().model(), &DeckModel::stateChanged,
                     [&](const DeckState&, DeckTransition transition) { transitions.append(transition); });
    const QString id = store.visibleNotes().front().id;
    deck().expand(id);
    EXPECT_EQ(deck().model().state(), DeckState::expanded(id));
    EXPECT_EQ(transitions, (QList<DeckTransition>{DeckTransition::none}));
    EXPECT_EQ(host.opened, (QStringList{id}));
    EXPECT_TRUE(panel().key);
    EXPECT_TRUE(deck().monitorsInstalled());

    deck().collapse();
    EXPECT_EQ(host.deactivations, 1);
    host.pointerAt = inside();
    transitions.clear();
    const QString other = store.visibleNotes().back().id;
    deck().expand(other);
    EXPECT_TRUE(deck().model().state().isFan());  // content waits for the panel
    EXPECT_EQ(panel().frame(), frameFor(DeckState::expanded(other)));
    time.advance(33);
    EXPECT_EQ(deck().model().state(), DeckState::expanded(other));
    EXPECT_EQ(transitions, (QList<DeckTransition>{DeckTransition::plain}));
}

TEST_F(Deck, aNoteInAFloatingWindowIsNotOpenedTwice) {
    const QString id = store.visibleNotes().front().id;
    host.floating.append(id);
    deck().expand(id);
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_TRUE(host.opened.isEmpty());
}

TEST_F(Deck, openNoteClosesAfterSixtyIdleSecondsUnlessPinnedOrRecording) {
    host.pointerAt = inside();
    const QString id = openNote();
    store.togglePin(id);
    time.advance(3600 * 1000);
    EXPECT_EQ(deck().state(), DeckState::expanded(id));

    store.togglePin(id);
    host.recording = true;
    time.advance(120 * 1000);
    EXPECT_EQ(deck().state(), DeckState::expanded(id));
    host.recording = false;
    time.advance(60000);
    EXPECT_EQ(deck().state(), DeckState::expanded(id));
    time.advance(240);
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_EQ(host.deactivations, 1);
}

TEST_F(Deck, clicksOutsideCloseAnUnpinnedNote) {
    host.pointerAt = inside();
    const QString id = openNote();
    deck().clickInOwnWindow(true, true);    // the panel itself
    deck().clickInOwnWindow(false, false);  // an untitled window: a menu, a tooltip
    time.advance(1);
    EXPECT_TRUE(deck().state().isExpanded());
    deck().clickInOtherApplication();
    EXPECT_TRUE(deck().state().isExpanded());  // the click goes through first
    time.advance(1);
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_EQ(host.deactivations, 1);

    deck().expand(id);
    store.togglePin(id);
    deck().clickInOtherApplication();
    deck().clickInOwnWindow(false, true);
    time.advance(1);
    EXPECT_TRUE(deck().state().isExpanded());
    store.togglePin(id);
    deck().clickInOwnWindow(false, true);
    time.advance(1);
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_EQ(host.deactivations, 1);  // a click in our own window keeps the application active
}

class TaskLineProbe : public EditorBridge {
public:
    int calls = 0;
    void toggleTaskLine() override { ++calls; }
};

TEST_F(Deck, shortcutsActOnTheOpenNoteOnlyWhileThePanelIsKey) {
    host.pointerAt = inside();
    const QString id = openNote();
    TaskLineProbe bridge;
    deck().model().setBridge(&bridge);

    EXPECT_TRUE(deck().keyPressed(DeckShortcut::pin));
    EXPECT_TRUE(store.note(id)->pinned);
    const int colour = rawValue(store.note(id)->color);
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::colour));
    EXPECT_EQ(rawValue(store.note(id)->color), (colour + 1) % 8);
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::task));
    EXPECT_EQ(bridge.calls, 1);
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::bigger));
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::smaller));
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::smaller));
    EXPECT_DOUBLE_EQ(host.fontDelta, -1.5);
    EXPECT_FALSE(deck().keyPressed(std::nullopt));  // other keys pass on

    EXPECT_TRUE(deck().keyPressed(DeckShortcut::find));
    EXPECT_EQ(deck().model().findQuery(), std::optional<QString>(QString()));
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::close));  // first closes the find bar
    EXPECT_EQ(deck().model().findQuery(), std::nullopt);
    EXPECT_TRUE(deck().state().isExpanded());

    panel().key = false;
    EXPECT_FALSE(deck().keyPressed(DeckShortcut::close));
    EXPECT_TRUE(deck().state().isExpanded());
    panel().key = true;
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::close));
    EXPECT_TRUE(deck().state().isFan());
    EXPECT_FALSE(deck().monitorsInstalled());
    EXPECT_FALSE(deck().keyPressed(DeckShortcut::pin));  // nothing open
}

TEST_F(Deck, archiveAndDeleteShortcutsCollapse) {
    host.pointerAt = inside();
    const QString first = openNote();
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::archiveNote));
    EXPECT_TRUE(store.note(first)->archived);
    EXPECT_TRUE(deck().state().isFan());

    const QString second = openNote();
    EXPECT_TRUE(deck().keyPressed(DeckShortcut::deleteNote));
    EXPECT_FALSE(store.note(second));
    ASSERT_TRUE(store.pendingUndo());
    EXPECT_EQ(store.pendingUndo()->note.id, second);
}

TEST_F(Deck, stripHeightFollowsTheNoteCountInRest) {
    const int before = panel().frame().height();
    for (int i = 0; i < 20; ++i) store.create(QStringLiteral("n%1").arg(i));
    EXPECT_EQ(panel().frame(), frameFor(DeckState::rest()));
    EXPECT_EQ(panel().frame().height(), before + 13 * 12);  // 2 → 15 rows
}

TEST_F(Deck, displaysComeAndGoEachWithItsDeck) {
    host.screenList.append({7, {1600, 0, 1280, 800}, {1600, 0, 1280, 800}});
    manager.refreshScreens();
    ASSERT_EQ(manager.decks().size(), 2u);
    DeckController& second = *manager.deck(7);
    EXPECT_EQ(host.panels.value(7)->frame().right(), 1600 + 1280 - 1);

    // A note open on one display goes back when the pointer reaches the other's strip.
    host.pointerAt = inside();
    openNote();
    host.pointerAt = QRectF(second.hotRect()).center();
    second.pointerEntered();
    EXPECT_TRUE(second.state().isFan());
    EXPECT_TRUE(deck().state().isRest());
    EXPECT_EQ(manager.deckUnderPointer(), &second);

    host.screenList.removeLast();
    manager.refreshScreens();
    EXPECT_EQ(manager.decks().size(), 1u);
    EXPECT_FALSE(manager.deck(7));

    // Choosing one display serves only that one.
    host.screenList.append({7, {1600, 0, 1280, 800}, {1600, 0, 1280, 800}});
    defaults.setValue(QStringLiteral("deckDisplay"), 7);
    EXPECT_EQ(manager.decks().size(), 1u);
    EXPECT_TRUE(manager.deck(7));
}

TEST_F(Deck, managerOpensANewNoteOnTheDeckUnderThePointer) {
    host.pointerAt = outside;
    const QString id = manager.createAndExpand();
    ASSERT_FALSE(id.isEmpty());
    EXPECT_EQ(deck().state(), DeckState::expanded(id));
    EXPECT_EQ(store.visibleNotes().front().id, id);
}

}  // namespace
