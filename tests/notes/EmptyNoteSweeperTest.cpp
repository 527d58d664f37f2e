#include "notes/EmptyNoteSweeper.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"

#include "support/Printers.h"

#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

TEST(EmptyNoteSweeper, RemovesABlankNoteOnlyAfterTheLastEditorLetsGo) {
    NoteStore store(std::make_shared<InMemoryNotePersistence>());
    EmptyNoteSweeper sweeper([&] { return &store; });
    sweeper.delay = 30ms;
    QString busyID;
    sweeper.isBusy = [&](const QString& id) { return id == busyID; };

    const QString blank = store.create().id;
    const QString written = store.create(QStringLiteral("kept")).id;
    const QString moved = store.create().id;
    const QString twice = store.create().id;
    const QString attaching = store.create().id;
    for (const QString& id : {blank, written, moved, twice, twice, attaching}) sweeper.open(id);

    sweeper.close(blank);
    sweeper.close(written);
    sweeper.close(moved);
    sweeper.open(moved);  // shown in another panel before the delay ends
    sweeper.close(twice);  // one of two editors still shows it
    busyID = attaching;
    sweeper.close(attaching);
    QTest::qWait(150);

    EXPECT_FALSE(store.note(blank));
    for (const QString& id : {written, moved, twice, attaching}) EXPECT_TRUE(store.note(id)) << id.toStdString();
    EXPECT_FALSE(store.pendingUndo());
    EXPECT_EQ(sweeper.openCounts.value(twice), 1);

    auto gone = std::make_unique<NoteStore>(std::make_shared<InMemoryNotePersistence>());
    NoteStore* current = gone.get();
    sweeper.store = [&] { return current; };
    const QString late = gone->create().id;
    sweeper.open(late);
    sweeper.close(late);
    gone.reset();
    current = nullptr;  // the store went away while the sweeper waited
    QTest::qWait(100);
}
