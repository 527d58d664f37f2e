#include "library/LibraryModel.h"

#include "base/Clock.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

struct Fixture {
    std::shared_ptr<InMemoryNotePersistence> persistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{persistence, 250ms, 10s};
    LibraryModel library{store};

    QString add(const QString& title, const QString& body = {}) { return store.create(title, body).id; }
};

QStringList titles(LibraryModel& library) {
    QStringList result;
    for (const Note& note : library.shown()) result.append(note.title);
    return result;
}

TEST(LibraryModel, ShowsWhatSectionSearchAndFilterLetThroughInOrder) {
    Clock::Override clock(QDateTime::fromSecsSinceEpoch(1'780'000'000));
    Fixture f;
    const QString groceries = f.add(QStringLiteral("Groceries"), QStringLiteral("- [ ] milk\n- [ ] bread"));
    clock.advance(1000);
    const QString trip = f.add(QStringLiteral("İstanbul trip"), QStringLiteral("ferry times"));
    clock.advance(1000);
    const QString old = f.add(QStringLiteral("Old plan"));
    f.store.setArchived(old, true);
    f.store.addTags(trip, {QStringLiteral("travel")});

    EXPECT_EQ(titles(f.library), (QStringList{"İstanbul trip", "Groceries"}));  // latest edit first
    f.library.setQuery(QStringLiteral("ISTANBUL"));
    EXPECT_EQ(titles(f.library), QStringList{"İstanbul trip"});
    f.library.setQuery({});
    f.library.setSection(NotesSection::tasks());
    EXPECT_EQ(titles(f.library), QStringList{"Groceries"});
    f.library.setSection(NotesSection::archive());
    EXPECT_EQ(titles(f.library), QStringList{"Old plan"});
    f.library.setSection(NotesSection::all());
    NoteFilter byTitle;
    byTitle.sort = NoteFilter::Sort::title;
    f.library.setFilter(byTitle);
    EXPECT_EQ(titles(f.library), (QStringList{"Groceries", "İstanbul trip"}));

    const LibraryModel::Counts& counts = f.library.counts();
    EXPECT_EQ(counts.all, 2);
    EXPECT_EQ(counts.tasks, 1);
    EXPECT_EQ(counts.agents, 0);
    EXPECT_EQ(counts.archive, 1);
    EXPECT_EQ(counts.tags.value(QStringLiteral("travel")), 1);

    // An edit elsewhere shows at once.
    f.store.setBody(groceries, QStringLiteral("nothing left"), false);
    f.library.setSection(NotesSection::tasks());
    EXPECT_TRUE(f.library.shown().isEmpty());
}

TEST(LibraryModel, ManyChangesMakeOneNotification) {
    Fixture f;
    QStringList ids;
    for (int i = 0; i < 20; ++i) ids.append(f.add(QStringLiteral("n%1").arg(i)));
    QTest::qWait(1);
    QSignalSpy changed(&f.library, &LibraryModel::changed);
    f.library.setColor(ids, NoteColor::rose);
    f.library.setQuery(QStringLiteral("n1"));
    EXPECT_EQ(changed.size(), 0);
    QTest::qWait(1);
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(f.library.shown().size(), 11);  // n1, n10…n19
}

TEST(LibraryModel, BulkChangesReachEveryNote) {
    Fixture f;
    const QString a = f.add(QStringLiteral("a"));
    const QString b = f.add(QStringLiteral("b"));
    const QString c = f.add(QStringLiteral("c"));
    const auto folder = f.store.createFolder(QStringLiteral("Work"));
    ASSERT_TRUE(folder);

    f.library.addTags({a, b}, {QStringLiteral("urgent"), QStringLiteral("q3")});
    f.library.removeTags({b}, {QStringLiteral("q3")});
    f.library.moveToFolder({a, c}, folder->id);
    f.library.setColor({a, b, c}, NoteColor::slate);
    EXPECT_EQ(f.store.note(a)->tags, (QStringList{"urgent", "q3"}));
    EXPECT_EQ(f.store.note(b)->tags, QStringList{"urgent"});
    EXPECT_EQ(f.store.note(a)->folderID, folder->id);
    EXPECT_FALSE(f.store.note(b)->folderID.has_value());
    for (const QString& id : {a, b, c}) EXPECT_EQ(f.store.note(id)->color, NoteColor::slate);
    f.library.setSection(NotesSection::folder(folder->id));
    EXPECT_EQ(f.library.shown().size(), 2);
    EXPECT_EQ(f.library.counts().folders.value(folder->id), 2);

    f.library.setSection(NotesSection::all());
    f.library.archive({a, b, c});
    EXPECT_TRUE(f.library.shown().isEmpty());
    f.library.setSection(NotesSection::archive());
    f.library.unarchive({c, a});
    // The first of the list comes back on top of the Shelf.
    const QList<Note> shelf = f.store.visibleNotes();
    ASSERT_EQ(shelf.size(), 2);
    EXPECT_EQ(shelf[0].id, c);
    EXPECT_EQ(shelf[1].id, a);
}

TEST(LibraryModel, DeletingSeveralNotesCanBeUndoneWhole) {
    Fixture f;
    f.library.setUndoWindow(100ms);
    const QString a = f.add(QStringLiteral("a"));
    const QString b = f.add(QStringLiteral("b"));
    const QString c = f.add(QStringLiteral("c"));

    f.library.remove({a, b});
    EXPECT_TRUE(f.library.canUndoRemove());
    EXPECT_EQ(f.library.pendingRemovalCount(), 2);
    EXPECT_EQ(f.library.shownIDs(), QStringList{c});
    EXPECT_EQ(f.library.counts().all, 1);
    f.library.undoRemove();
    EXPECT_FALSE(f.library.canUndoRemove());
    EXPECT_EQ(f.library.shown().size(), 3);
    EXPECT_TRUE(f.persistence->rows.contains(a));

    f.library.remove({a, b});
    QTest::qWait(200);  // the window ends: now they are gone from the store and the disk
    EXPECT_FALSE(f.store.note(a));
    EXPECT_FALSE(f.store.note(b));
    EXPECT_FALSE(f.persistence->rows.contains(a));
    EXPECT_FALSE(f.library.canUndoRemove());
    EXPECT_EQ(f.library.shownIDs(), QStringList{c});

    // One note goes through the store's own undo.
    f.library.remove({c});
    EXPECT_FALSE(f.store.note(c));
    EXPECT_TRUE(f.library.canUndoRemove());
    f.library.undoRemove();
    EXPECT_TRUE(f.store.note(c));
}

TEST(LibraryModel, SelectionFollowsWhatIsShown) {
    Clock::Override clock(QDateTime::fromSecsSinceEpoch(1'780'000'000));
    Fixture f;
    const QString a = f.add(QStringLiteral("apple"));
    clock.advance(1000);
    const QString b = f.add(QStringLiteral("banana"));
    clock.advance(1000);
    const QString c = f.add(QStringLiteral("cherry"));
    f.library.click(c);
    f.library.shiftClick(a);  // the list is newest first: c, b, a
    EXPECT_EQ(f.library.selectedIDs(), (QStringList{c, b, a}));
    f.library.setQuery(QStringLiteral("an"));
    EXPECT_EQ(f.library.selectedIDs(), QStringList{b});
    EXPECT_EQ(f.library.selection().primary, b);
    f.library.remove(f.library.selectedIDs());
    EXPECT_TRUE(f.library.selectedIDs().isEmpty());
}

}  // namespace
