#include "base/Clock.h"
#include "base/Ids.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "notes/UnavailableNotePersistence.h"

#include "support/Printers.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

const QDateTime start(QDate(2026, 5, 1), QTime(9, 0), Qt::UTC);

struct StoreTest : testing::Test {
    std::shared_ptr<InMemoryNotePersistence> disk = std::make_shared<InMemoryNotePersistence>();
    std::unique_ptr<NoteStore> store;
    Clock::Override clock{start};

    NoteStore& open(std::chrono::milliseconds saveDelay = 40ms, std::chrono::milliseconds undoWindow = 10s) {
        store = std::make_unique<NoteStore>(disk, saveDelay, undoWindow);
        return *store;
    }
    void stored(const QString& id, double order = 0, bool archived = false, NoteOrigin origin = {}) {
        Note n;
        n.id = id;
        n.body = id;
        n.order = order;
        n.archived = archived;
        n.origin = std::move(origin);
        disk->rows.insert(id, n);
    }
    QStringList visibleIDs() const {
        QStringList ids;
        for (const Note& n : store->visibleNotes()) ids << n.id;
        return ids;
    }
};

}  // namespace

TEST_F(StoreTest, DebouncedEditsWriteOnceAfterTheLastKeystroke) {
    NoteStore& notes = open(80ms);
    const Note a = notes.create();
    const Note b = notes.create();
    const int afterCreate = disk->writeCount;
    for (const char* text : {"h", "he", "hel", "hell", "hello"}) {
        notes.setBody(a.id, QString::fromUtf8(text));
        QTest::qWait(20);
    }
    notes.setTitle(b.id, QStringLiteral("other"));
    EXPECT_EQ(disk->writeCount, afterCreate) << "a keystroke inside the delay must not write";
    EXPECT_EQ(notes.unsavedIDs(), (QSet<QString>{a.id, b.id}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return notes.unsavedIDs().isEmpty(); }, 3000));
    QTest::qWait(120);
    EXPECT_EQ(disk->writeCount, afterCreate + 2) << "one write per note";
    EXPECT_EQ(disk->rows[a.id].body, QStringLiteral("hello"));
    EXPECT_EQ(disk->rows[b.id].title, QStringLiteral("other"));
}

TEST_F(StoreTest, ImmediateEditsTouchAndNoOpsDoNot) {
    NoteStore& notes = open();
    const Note note = notes.create(QStringLiteral("t"), QStringLiteral("b"));
    QSignalSpy changed(&notes, &NoteStore::notesChanged);
    const int writes = disk->writeCount;
    clock.advance(5000);

    notes.setBody(note.id, QStringLiteral("b"), false);  // unchanged
    notes.setColor(note.id, note.color);                  // unchanged
    notes.setTitle(QStringLiteral("NO-SUCH-ID"), QStringLiteral("x"), false);
    EXPECT_EQ(disk->writeCount, writes);
    EXPECT_EQ(changed.count(), 0);

    notes.togglePin(note.id, false, false);
    EXPECT_EQ(disk->rows[note.id].modified, start) << "touch false keeps modified";
    EXPECT_TRUE(disk->rows[note.id].pinned);
    notes.setBody(note.id, QStringLiteral("new"), false);
    EXPECT_EQ(disk->rows[note.id].modified, start.addSecs(5));
    EXPECT_EQ(disk->writeCount, writes + 2);
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(StoreTest, NewNotesGoOnTopAndCycleThroughTheColours) {
    NoteStore& notes = open();
    EXPECT_EQ(notes.create().order, -1.0);
    for (int i = 1; i < 8; ++i) notes.create();
    QList<int> colours;
    for (const Note& n : notes.notes()) colours << rawValue(n.color);
    EXPECT_EQ(colours, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(notes.notes().last().order, -8.0);
    EXPECT_EQ(notes.create().color, NoteColor::lemon) << "the ninth starts over";
    EXPECT_EQ(notes.create({}, {}, NoteColor::slate).color, NoteColor::slate);

    const QString id = notes.notes().first().id;
    notes.setColor(id, NoteColor::slate);
    notes.cycleColor(id);
    EXPECT_EQ(notes.note(id)->color, NoteColor::lemon) << "slate wraps to lemon";
}

TEST_F(StoreTest, ArchivingKeepsOrderAndUnarchivingComesBackOnTop) {
    stored("A", 3);
    stored("B", 5);
    NoteStore& notes = open();
    notes.setArchived("A", true);
    EXPECT_EQ(notes.note("A")->order, 3);
    EXPECT_EQ(visibleIDs(), QStringList{"B"});
    notes.setArchived("A", false);
    EXPECT_EQ(notes.note("A")->order, 4);
    EXPECT_EQ(disk->rows["A"].order, 4);
    EXPECT_EQ(visibleIDs(), (QStringList{"A", "B"}));
}

TEST_F(StoreTest, MoveClampsAndRenumbersOnlyWhatChanged) {
    stored("A", 0);
    stored("B", 1);
    stored("C", 2);
    stored("D", 3);
    stored("X", -10, true);
    NoteStore& notes = open();
    struct Step {
        const char* id;
        int delta;
        QStringList order;
        int writes;
    } steps[] = {
        {"A", 0, {"A", "B", "C", "D"}, 0},
        {"A", -5, {"A", "B", "C", "D"}, 0},
        {"D", 99, {"A", "B", "C", "D"}, 0},
        {"X", 1, {"A", "B", "C", "D"}, 0},  // archived notes are not in the list
        {"A", 100, {"B", "C", "D", "A"}, 4},
        {"A", -1, {"B", "C", "A", "D"}, 2},
        {"D", -100, {"D", "B", "C", "A"}, 4},
    };
    for (const Step& s : steps) {
        const int before = disk->writeCount;
        notes.move(s.id, s.delta);
        EXPECT_EQ(visibleIDs(), s.order) << s.id << " by " << s.delta;
        EXPECT_EQ(disk->writeCount - before, s.writes) << s.id << " by " << s.delta;
    }
    for (int i = 0; i < 4; ++i) EXPECT_EQ(disk->rows[visibleIDs()[i]].order, double(i));
    EXPECT_EQ(disk->rows["A"].modified, QDateTime()) << "moving doesn't touch";
}

TEST_F(StoreTest, DeleteCanBeUndoneOnceWithinTheWindow) {
    stored("A", 2);
    stored("B", 7);
    stored("C", 9);
    NoteStore& notes = open(40ms, 200ms);
    QSignalSpy undoChanged(&notes, &NoteStore::pendingUndoChanged);

    notes.remove("B");
    EXPECT_FALSE(disk->rows.contains("B")) << "the record goes at once";
    ASSERT_TRUE(notes.pendingUndo());
    EXPECT_EQ(notes.pendingUndo()->deadline, start) << "whole seconds of a 0.2 s window";

    notes.remove("C");  // finalises B
    EXPECT_EQ(notes.pendingUndo()->note.id, QStringLiteral("C"));
    notes.undoDelete();
    EXPECT_FALSE(notes.pendingUndo());
    EXPECT_EQ(disk->rows["C"].order, 9) << "undo brings order back";
    EXPECT_EQ(visibleIDs(), (QStringList{"A", "C"}));
    notes.undoDelete();  // nothing pending
    EXPECT_EQ(visibleIDs(), (QStringList{"A", "C"}));

    notes.remove("A");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !notes.pendingUndo(); }, 3000)) << "the window ends";
    notes.undoDelete();
    EXPECT_FALSE(notes.note("A"));
    EXPECT_EQ(undoChanged.count(), 5);
}

TEST_F(StoreTest, DeletingANoteWithAnUnsavedEditDoesNotResurrectIt) {
    stored("A");
    NoteStore& notes = open(30ms);
    notes.setBody("A", QStringLiteral("typing"));
    notes.remove("A");
    EXPECT_TRUE(notes.unsavedIDs().isEmpty());
    QTest::qWait(120);
    EXPECT_FALSE(disk->rows.contains("A"));
    EXPECT_TRUE(notes.flush());
}

TEST_F(StoreTest, FailedDeleteKeepsTheNote) {
    stored("A");
    NoteStore& notes = open();
    disk->failNextWrite = Error(QStringLiteral("The disk is full."));
    notes.remove("A");
    EXPECT_TRUE(notes.note("A"));
    EXPECT_FALSE(notes.pendingUndo());
    EXPECT_EQ(notes.lastError(), QStringLiteral("The disk is full."));
}

TEST_F(StoreTest, FailedWriteStaysDirtyUntilFlushSucceeds) {
    stored("A");
    stored("B");
    NoteStore& notes = open(20ms);
    QSignalSpy errors(&notes, &NoteStore::lastErrorChanged);
    disk->failNextWrite = Error(QStringLiteral("The disk is full."));
    notes.setBody("A", QStringLiteral("precious"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return notes.lastError().has_value(); }, 3000));
    EXPECT_EQ(*notes.lastError(), QStringLiteral("The disk is full."));
    EXPECT_EQ(notes.unsavedIDs(), QSet<QString>{"A"});
    EXPECT_EQ(notes.note("A")->body, QStringLiteral("precious")) << "the text stays in memory";

    notes.setBody("B", QStringLiteral("fine"), false);
    EXPECT_TRUE(notes.lastError()) << "A is still unsaved";
    QTest::qWait(60);
    EXPECT_EQ(disk->rows["A"].body, QStringLiteral("A")) << "no timer retries a failed write";

    EXPECT_TRUE(notes.flush());
    EXPECT_EQ(disk->rows["A"].body, QStringLiteral("precious"));
    EXPECT_FALSE(notes.lastError());
    EXPECT_EQ(errors.count(), 2);
}

TEST_F(StoreTest, FlushWritesPendingEditsAtOnce) {
    stored("A");
    NoteStore& notes = open(10s);
    notes.setBody("A", QStringLiteral("last words"));
    EXPECT_TRUE(notes.flush());
    EXPECT_EQ(disk->rows["A"].body, QStringLiteral("last words"));
    disk->failNextWrite = Error(QStringLiteral("No."));
    notes.setBody("A", QStringLiteral("more"));
    EXPECT_FALSE(notes.flush());
    EXPECT_EQ(notes.lastError(), QStringLiteral("No."));
}

TEST_F(StoreTest, ImportPutsNotesOnTopInTheirOwnOrder) {
    NoteStore& notes = open();
    auto incoming = [](std::initializer_list<std::pair<const char*, double>> items) {
        QList<Note> list;
        for (const auto& [id, order] : items) {
            Note n;
            n.id = QString::fromUtf8(id);
            n.body = n.id;
            n.order = order;
            list << n;
        }
        return list;
    };
    EXPECT_EQ(notes.importNotes(incoming({{"C", 30}, {"A", 1}, {"B", 2}})), 3);
    EXPECT_EQ(visibleIDs(), (QStringList{"A", "B", "C"}));
    EXPECT_EQ(notes.note("A")->order, -3.0);
    EXPECT_EQ(notes.note("C")->order, -1.0);

    EXPECT_EQ(notes.importNotes(incoming({{"A", 0}, {"D", -4}})), 2);
    const QList<Note> visible = notes.visibleNotes();
    ASSERT_EQ(visible.size(), 5);
    EXPECT_EQ(visible[0].id, QStringLiteral("D"));
    EXPECT_EQ(visible[0].order, -5.0);
    EXPECT_EQ(visible[1].body, QStringLiteral("A")) << "the clash got a new id";
    EXPECT_NE(visible[1].id, QStringLiteral("A"));
    EXPECT_EQ(visible[1].id, visible[1].id.toUpper());
    EXPECT_EQ(disk->rows.size(), 5);
}

TEST_F(StoreTest, ImportResolvesFolderNames) {
    NoteStore& notes = open();
    const NoteFolder work = *notes.createFolder(QStringLiteral("Work"));
    QList<Note> incoming;
    for (const auto& folder : {std::optional<QString>("name:Home"), std::optional<QString>("name:home "),
                               std::optional<QString>("name:WORK"), std::optional<QString>(work.id),
                               std::optional<QString>("GONE"), std::optional<QString>("name:   ")}) {
        Note n;
        n.id = newId();
        n.folderID = folder;
        n.order = incoming.size();
        incoming << n;
    }
    EXPECT_EQ(notes.importNotes(incoming), 6);
    ASSERT_EQ(notes.folders().size(), 2);
    const NoteFolder home = notes.folders()[0];
    EXPECT_EQ(home.name, QStringLiteral("Home"));
    EXPECT_TRUE(disk->folders.contains(home.id));
    QList<std::optional<QString>> folders;
    for (const Note& n : notes.visibleNotes()) folders << n.folderID;
    EXPECT_EQ(folders, (QList<std::optional<QString>>{home.id, home.id, work.id, work.id, std::nullopt, std::nullopt}));
}

TEST_F(StoreTest, SweepsOnlyBlankLocalNotes) {
    stored("FULL");
    disk->rows["FULL"].body = QStringLiteral("keep");
    for (const auto& [id, origin] : {std::pair{"LOCAL", NoteOrigin::local()},
                                     std::pair{"AGENT", NoteOrigin::agent("a", "r", "n")},
                                     std::pair{"DROP", NoteOrigin::drop("c", "d", "s")}}) {
        stored(id, 0, false, origin);
        disk->rows[id].body = QStringLiteral("  \n ");
    }
    stored("ARCHIVED", 0, true);
    disk->rows["ARCHIVED"].body.clear();
    NoteStore& notes = open();
    EXPECT_FALSE(notes.discardIfEmpty("FULL"));
    EXPECT_FALSE(notes.discardIfEmpty("AGENT"));
    EXPECT_EQ(notes.sweepEmptyNotes(), 2);
    QStringList left = disk->rows.keys();
    left.sort();
    EXPECT_EQ(left, (QStringList{"AGENT", "DROP", "FULL"}));
    EXPECT_FALSE(notes.pendingUndo()) << "no undo for blank notes";
    EXPECT_EQ(notes.noteForOriginID("d")->id, QStringLiteral("DROP"));
    EXPECT_EQ(notes.noteForOriginID("r")->id, QStringLiteral("AGENT"));
    EXPECT_FALSE(notes.noteForOriginID(""));
}

TEST_F(StoreTest, AStoreThatCannotLoadIsReadOnly) {
    store = std::make_unique<NoteStore>(
        std::make_shared<UnavailableNotePersistence>(Error(QStringLiteral("The store could not be opened."))));
    NoteStore& notes = *store;
    EXPECT_FALSE(notes.isWritable());
    EXPECT_EQ(notes.lastError(), QStringLiteral("The store could not be opened."));
    const Note made = notes.create(QStringLiteral("lost"));
    EXPECT_EQ(made.title, QStringLiteral("lost"));
    EXPECT_TRUE(notes.notes().isEmpty());
    notes.setBody(made.id, QStringLiteral("x"));
    EXPECT_EQ(notes.importNotes({made}), 0);
    EXPECT_FALSE(notes.createFolder(QStringLiteral("F")));
    EXPECT_EQ(notes.sweepEmptyNotes(), 0);
    EXPECT_TRUE(notes.flush());
}

TEST_F(StoreTest, FolderLoadFailureKeepsNotesButRefusesChanges) {
    struct FoldersBroken : InMemoryNotePersistence {
        QList<NoteFolder> loadFolders() override { throw Error(QStringLiteral("Folders are damaged.")); }
    };
    auto broken = std::make_shared<FoldersBroken>();
    Note n;
    n.id = "A";
    broken->rows.insert("A", n);
    NoteStore notes(broken);
    EXPECT_EQ(notes.notes().size(), 1);
    EXPECT_FALSE(notes.isWritable());
    notes.setTitle("A", QStringLiteral("x"), false);
    EXPECT_EQ(broken->writeCount, 0);
}

TEST_F(StoreTest, TagsAreNormalisedMergedAndDeleted) {
    stored("A");
    stored("B");
    NoteStore& notes = open();
    notes.addTags("A", {"#Work", "  big idea ", "work", "!!"});
    EXPECT_EQ(notes.note("A")->tags, (QStringList{"Work", "big-idea"}));
    notes.addTags("B", {"Home", "WORK"});
    EXPECT_EQ(notes.note("B")->tags, (QStringList{"Home", "Work"})) << "the spelling in use wins";
    EXPECT_EQ(notes.allTags(), (QStringList{"big-idea", "Home", "Work"}));

    clock.advance(1000);
    const int writes = disk->writeCount;
    notes.renameTag("work", "#home");
    EXPECT_EQ(notes.note("A")->tags, (QStringList{"home", "big-idea"}));
    EXPECT_EQ(notes.note("B")->tags, (QStringList{"Home"})) << "merged into the tag it already had";
    EXPECT_EQ(disk->writeCount - writes, 2);
    EXPECT_EQ(disk->rows["A"].modified, start.addSecs(1));

    notes.removeTags("A", {"Big Idea"});
    EXPECT_EQ(notes.note("A")->tags, QStringList{"home"});
    notes.deleteTag("HOME");
    EXPECT_TRUE(notes.allTags().isEmpty());
    const int before = disk->writeCount;
    notes.deleteTag("home");
    notes.renameTag("none", "other");
    EXPECT_EQ(disk->writeCount, before) << "notes that don't change aren't written";
}

TEST_F(StoreTest, FoldersRenameMergeAndDelete) {
    stored("A");
    stored("B");
    stored("C");
    NoteStore& notes = open();
    const NoteFolder zeta = *notes.createFolder(QStringLiteral(" zeta "));
    const NoteFolder alpha = *notes.createFolder(QStringLiteral("Alpha"));
    EXPECT_EQ(notes.createFolder(QStringLiteral("ALPHA"))->id, alpha.id) << "a name in use gives that folder";
    EXPECT_FALSE(notes.createFolder(QStringLiteral("  ")));
    EXPECT_EQ(notes.folders()[0].name, QStringLiteral("Alpha"));
    EXPECT_EQ(notes.folders()[1].name, QStringLiteral("zeta"));

    notes.setFolder("A", zeta.id);
    notes.setFolder("B", alpha.id);
    notes.setFolder("C", QStringLiteral("NOT-A-FOLDER"));
    EXPECT_FALSE(notes.note("C")->folderID);

    notes.renameFolder(zeta.id, QStringLiteral("Beta"));
    EXPECT_EQ(disk->folders[zeta.id].name, QStringLiteral("Beta"));
    EXPECT_EQ(notes.folders()[1].name, QStringLiteral("Beta"));

    notes.renameFolder(zeta.id, QStringLiteral("alpha"));
    EXPECT_EQ(notes.folders().size(), 1);
    EXPECT_FALSE(disk->folders.contains(zeta.id));
    EXPECT_EQ(notes.note("A")->folderID, alpha.id);
    EXPECT_EQ(disk->rows["A"].folderID, alpha.id);

    notes.deleteFolder(alpha.id);
    EXPECT_TRUE(notes.folders().isEmpty());
    EXPECT_FALSE(disk->rows["A"].folderID);
    EXPECT_FALSE(disk->rows["B"].folderID);
}
