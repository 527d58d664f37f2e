#include "inbox/DefaultsUnreadDropStore.h"
#include "inbox/DropInbox.h"

#include "base/Defaults.h"
#include "base/Error.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/UnavailableNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

const QDateTime now = QDateTime::fromSecsSinceEpoch(1'780'000'000, Qt::UTC);

Drop makeDrop(int n, const QString& source = QStringLiteral("agent.S")) {
    return Drop{QStringLiteral("DROP-%1").arg(n), source, QStringLiteral("S"), QStringLiteral("Scout"), now,
                QStringLiteral("Result %1").arg(n)};
}

DropSource scout() {
    DropSource source;
    source.id = QStringLiteral("agent.S");
    source.name = QStringLiteral("Scout");
    source.color = NoteColor::mint;
    source.kind = DropSource::Kind::agent;
    return source;
}

QStringList noteIDs(const QList<DropInbox::ReceivedDrop>& drops) {
    QStringList ids;
    for (const auto& received : drops) ids.append(received.noteID);
    return ids;
}

struct Fixture {
    std::shared_ptr<InMemoryNotePersistence> persistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{persistence};
    std::shared_ptr<InMemoryUnreadDropStore> unread = std::make_shared<InMemoryUnreadDropStore>();
};

TEST(DropInbox, TheSameDropTwiceMakesOneNote) {
    Fixture f;
    DropInbox inbox(f.store, f.unread);
    int announced = 0;
    inbox.onReceive = [&](const DropInbox::ReceivedDrop&) { ++announced; };

    const auto first = inbox.receive(makeDrop(1), scout(), now);
    const auto again = inbox.receive(makeDrop(1), scout(), now.addSecs(60));
    ASSERT_TRUE(first && again);
    EXPECT_EQ(first->id, QStringLiteral("DROP-1"));
    EXPECT_EQ(*again, *first);
    EXPECT_EQ(f.store.notes().size(), 1);
    EXPECT_EQ(inbox.recent().size(), 1);
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(inbox.unreadNoteIDs(), QSet<QString>{QStringLiteral("DROP-1")});
    EXPECT_EQ(inbox.lastArrivedNoteID(), QStringLiteral("DROP-1"));
}

TEST(DropInbox, NoteTakesTheDropsTextColourAndSender) {
    Fixture f;
    DropInbox inbox(f.store, f.unread);
    const Note local = f.store.create(QStringLiteral("mine"));
    const auto fromAgent = inbox.receive(makeDrop(1), scout(), now);
    DropSource ann = scout();
    ann.id = QStringLiteral("chat.ann");
    ann.kind = DropSource::Kind::person;
    ann.color = NoteColor::rose;
    const auto fromPerson =
        inbox.receive(Drop{QStringLiteral("D2"), ann.id, QStringLiteral("ann"), QStringLiteral("Ann"), now,
                           QStringLiteral("lunch?")},
                      ann, now);
    ASSERT_TRUE(fromAgent && fromPerson);
    EXPECT_EQ(fromAgent->body, QStringLiteral("Result 1"));
    EXPECT_EQ(fromAgent->color, NoteColor::mint);
    EXPECT_EQ(fromAgent->created, now);
    EXPECT_EQ(fromAgent->origin, NoteOrigin::agent(QStringLiteral("S"), QStringLiteral("DROP-1"), QStringLiteral("Scout")));
    EXPECT_EQ(fromPerson->origin, NoteOrigin::drop(QStringLiteral("chat.ann"), QStringLiteral("D2"), QStringLiteral("Ann")));
    EXPECT_EQ(fromPerson->color, NoteColor::rose);
    // Each arrival stands on top of the Shelf.
    const QList<Note> shelf = f.store.visibleNotes();
    ASSERT_EQ(shelf.size(), 3);
    EXPECT_EQ(shelf[0].id, QStringLiteral("D2"));
    EXPECT_EQ(shelf[2].id, local.id);
    EXPECT_TRUE(f.store.noteForOriginID(QStringLiteral("D2")).has_value());
}

TEST(DropInbox, RecentKeepsTheNewestUpToItsLimit) {
    Fixture f;
    DropInbox inbox(f.store, f.unread);
    ASSERT_EQ(inbox.recentLimit(), 20);
    for (int n = 1; n <= 21; ++n) ASSERT_TRUE(inbox.receive(makeDrop(n), scout(), now));
    ASSERT_EQ(inbox.recent().size(), 20);
    EXPECT_EQ(inbox.recent().first().noteID, QStringLiteral("DROP-2"));
    EXPECT_EQ(inbox.recent().last().noteID, QStringLiteral("DROP-21"));
    EXPECT_EQ(inbox.unreadNoteIDs().size(), 21);  // unread isn't bounded by the list

    DropInbox small(f.store, f.unread, 2);
    for (int n = 30; n < 35; ++n) small.receive(makeDrop(n), scout(), now);
    EXPECT_EQ(noteIDs(small.recent()), (QStringList{"DROP-33", "DROP-34"}));
}

TEST(DropInbox, ArchivedAndDeletedNotesLeaveWhatIsShownAndTheUnreadSet) {
    Fixture f;
    {
        DropInbox inbox(f.store, f.unread);
        for (int n = 1; n <= 3; ++n) inbox.receive(makeDrop(n), scout(), now);
        f.store.setArchived(QStringLiteral("DROP-2"), true);
        EXPECT_EQ(noteIDs(inbox.unseenRecent()), (QStringList{"DROP-1", "DROP-3"}));
        EXPECT_EQ(inbox.unreadNoteIDs().size(), 3);  // until the next load
        f.store.remove(QStringLiteral("DROP-3"));
        EXPECT_EQ(noteIDs(inbox.unseenRecent()), (QStringList{"DROP-1"}));
    }
    const int savesBefore = f.unread->saveCount();
    DropInbox reloaded(f.store, f.unread);
    EXPECT_EQ(reloaded.unreadNoteIDs(), QSet<QString>{QStringLiteral("DROP-1")});
    EXPECT_EQ(f.unread->load(), QSet<QString>{QStringLiteral("DROP-1")});
    EXPECT_EQ(f.unread->saveCount(), savesBefore + 1);

    DropInbox unchanged(f.store, f.unread);  // nothing to prune: nothing written
    EXPECT_EQ(f.unread->saveCount(), savesBefore + 1);
}

TEST(DropInbox, UnreadIdsSurviveThroughThePreferences) {
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("Vuro.conf"));
    Fixture f;
    {
        Defaults defaults(file, {});
        DropInbox inbox(f.store, std::make_shared<DefaultsUnreadDropStore>(defaults));
        inbox.receive(makeDrop(1), scout(), now);
        inbox.receive(makeDrop(2), scout(), now);
        inbox.markRead(QStringLiteral("DROP-1"));
        defaults.sync();
    }
    Defaults reopened(file, {});
    EXPECT_EQ(reopened.stringList(QStringLiteral("unreadDropNoteIDs")), QStringList{QStringLiteral("DROP-2")});
    DropInbox inbox(f.store, std::make_shared<DefaultsUnreadDropStore>(reopened));
    EXPECT_EQ(inbox.unreadNoteIDs(), QSet<QString>{QStringLiteral("DROP-2")});
    inbox.markAllRead();
    EXPECT_TRUE(DefaultsUnreadDropStore(reopened).load().isEmpty());
}

TEST(DropInbox, NotesArrivingWhileAwayMakeTheDigest) {
    Fixture f;
    DropInbox inbox(f.store, f.unread);
    inbox.receive(makeDrop(1), scout(), now);
    inbox.setAway(true);
    inbox.receive(makeDrop(2), scout(), now);
    inbox.receive(makeDrop(3), scout(), now);
    inbox.receive(makeDrop(4), scout(), now);
    inbox.setAway(false);
    inbox.receive(makeDrop(5), scout(), now);
    f.store.setArchived(QStringLiteral("DROP-3"), true);

    QStringList away;
    for (const Note& note : inbox.awayNotes()) away.append(note.id);
    EXPECT_EQ(away, (QStringList{"DROP-2", "DROP-4"}));
    EXPECT_EQ(inbox.awayNoteIDs().size(), 3);
    EXPECT_EQ(inbox.recentSources().value(QStringLiteral("agent.S")).name, QStringLiteral("Scout"));
    inbox.clearAway();
    EXPECT_TRUE(inbox.awayNotes().isEmpty());
}

TEST(DropInbox, AStoreThatCouldNotLoadReceivesNothing) {
    auto broken = std::make_shared<UnavailableNotePersistence>(Error(QStringLiteral("The store could not be opened.")));
    NoteStore store(broken);
    DropInbox inbox(store, std::make_shared<InMemoryUnreadDropStore>());
    EXPECT_FALSE(inbox.receive(makeDrop(1), scout(), now).has_value());
    EXPECT_TRUE(inbox.recent().isEmpty());
    EXPECT_TRUE(inbox.unreadNoteIDs().isEmpty());
}

}  // namespace
