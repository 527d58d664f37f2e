#include "inbox/ui/AwayDigestWindow.h"

#include "inbox/AwayMonitor.h"
#include "inbox/DropInbox.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"
#include "support/Screenshot.h"
#include "support/PrivateBus.h"

#include <QCommandLinkButton>
#include <QDBusMessage>
#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

const QDateTime now = QDateTime::fromSecsSinceEpoch(1'780'000'000, Qt::UTC);

DropSource agent(const QString& id, const QString& name, NoteColor color) {
    DropSource source;
    source.id = id;
    source.name = name;
    source.color = color;
    return source;
}

Drop drop(const QString& id, const DropSource& source, const QString& text) {
    return Drop{id, source.id, source.id.mid(6), source.name, now, text};
}

// The application's path from the screen saver to the digest: a monitor on a bus of the test's
// own, the inbox it marks away, and the window that follows it.
struct Fixture {
    test::PrivateBus bus;
    QDBusConnection screenSaver = bus.connect(QStringLiteral("screen-saver"));
    NoteStore store{std::make_shared<InMemoryNotePersistence>(), 250ms, 10s};
    DropInbox inbox{store, std::make_shared<InMemoryUnreadDropStore>()};
    AwayMonitor monitor{bus.connect(QStringLiteral("monitor")), QDBusConnection(QStringLiteral("no system bus"))};
    AwayDigestWindow window{inbox, nullptr};

    Fixture() { window.follow(monitor); }
    void setScreenSaver(bool active) {
        QDBusMessage message = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/ScreenSaver"),
                                                          QStringLiteral("org.freedesktop.ScreenSaver"),
                                                          QStringLiteral("ActiveChanged"));
        message.setArguments({active});
        ASSERT_TRUE(screenSaver.send(message));
        ASSERT_TRUE(QTest::qWaitFor([&] { return inbox.isAway() == active; }, 10000));
    }
};

TEST(AwayDigestWindow, ComingBackShowsWhatAgentsLeftMeanwhile) {
    Fixture f;
    ASSERT_FALSE(f.bus.address().isEmpty());
    const DropSource scout = agent(QStringLiteral("agent.S"), QStringLiteral("Scout"), NoteColor::mint);
    const DropSource editor = agent(QStringLiteral("agent.E"), QStringLiteral("Editor"), NoteColor::sky);
    f.inbox.receive(drop(QStringLiteral("D0"), scout, QStringLiteral("Arrived before leaving")), scout, now);

    f.setScreenSaver(true);
    f.inbox.receive(drop(QStringLiteral("D1"), scout, QStringLiteral("# Morning digest\nThree issues opened overnight")),
                    scout, now);
    f.inbox.receive(drop(QStringLiteral("D2"), editor, QStringLiteral("- [ ] proofread the launch post\n- [ ] fix the title")),
                    editor, now);
    f.inbox.receive(drop(QStringLiteral("D3"), scout, QStringLiteral("Weather: rain after four")), scout, now);
    EXPECT_FALSE(f.window.isVisible());

    f.setScreenSaver(false);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&f.window));
    const AwayDigest& digest = f.window.digest();
    ASSERT_EQ(digest.groups.size(), 2);
    EXPECT_EQ(digest.groups[0].sourceName, QStringLiteral("Scout"));
    EXPECT_EQ(digest.groups[0].notes.size(), 2);  // not the note from before the absence
    EXPECT_EQ(digest.groups[1].openTasks, 2);
    QStringList lines;
    for (const auto* button : f.window.findChildren<QCommandLinkButton*>()) lines.append(button->text());
    EXPECT_EQ(lines, (QStringList{"Weather: rain after four", "Morning digest", "proofread the launch post"}));

    test::screenshot(f.window, QStringLiteral("away-digest"));

    // A note opened from the digest; closing it ends the absence.
    QSignalSpy opened(&f.window, &AwayDigestWindow::openNote);
    QTest::mouseClick(f.window.findChildren<QCommandLinkButton*>().first(), Qt::LeftButton);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.first().first().toString(), QStringLiteral("D3"));
    f.window.close();
    EXPECT_TRUE(f.inbox.awayNoteIDs().isEmpty());

    // Away and back with nothing new: no window.
    f.setScreenSaver(true);
    f.setScreenSaver(false);
    QTest::qWait(100);
    EXPECT_FALSE(f.window.isVisible());
}

}  // namespace
