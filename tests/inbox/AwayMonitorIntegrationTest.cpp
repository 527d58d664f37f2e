#include "inbox/AwayMonitor.h"

#include "support/Printers.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <memory>
#include <gtest/gtest.h>

using namespace vuro;
using vuro::test::PrivateBus;

namespace {

const QString sessionPath = QStringLiteral("/org/freedesktop/login1/session/c7");

// Stands in for logind on a private bus: answers which session we are in.
class FakeLogind : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")
public Q_SLOTS:
    QDBusObjectPath GetSessionByPID(quint32) { return QDBusObjectPath(sessionPath); }
};

// The desktop's side: logind's name and every signal come from one connection, and the monitor
// listens on one connection (as its session and its system bus alike). The daemon keeps one
// sender's messages to one receiver in order, so each step can end with a screen-saver pulse
// (on, then off) and know that everything sent before has arrived once the pulse has: no fixed
// wait decides what "nothing more" means, however busy the machine is.
struct Desktop {
    PrivateBus bus;
    QDBusConnection sender = bus.connect(QStringLiteral("desktop"));
    FakeLogind logind;
    std::unique_ptr<AwayMonitor> monitor;
    std::unique_ptr<QSignalSpy> changes;

    void start() {
        ASSERT_FALSE(bus.address().isEmpty());
        ASSERT_TRUE(sender.registerObject(QStringLiteral("/org/freedesktop/login1"), &logind, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(sender.registerService(QStringLiteral("org.freedesktop.login1")));
        const QDBusConnection listener = bus.connect(QStringLiteral("monitor"));
        monitor = std::make_unique<AwayMonitor>(listener, listener);
        changes = std::make_unique<QSignalSpy>(monitor.get(), &AwayMonitor::awayChanged);
        ASSERT_TRUE(QTest::qWaitFor([&] { return monitor->watchesSession(); }, 10000));
    }
    void send(const QString& path, const QString& interface, const QString& name, const QVariantList& arguments = {}) {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        EXPECT_TRUE(sender.send(message));
    }
    void screenSaver(const QString& path, const QString& interface, bool active) {
        send(path, interface, QStringLiteral("ActiveChanged"), {active});
    }
    void session(const QString& path, const QString& name) {
        send(path, QStringLiteral("org.freedesktop.login1.Session"), name);
    }
    void idle(bool idle) {
        send(sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
             {QStringLiteral("org.freedesktop.login1.Session"), QVariantMap{{QStringLiteral("IdleHint"), idle}}, QStringList()});
    }
    // Sends the pulse, waits until as many changes as expected and the pulse's two have come, and
    // gives every change seen. Since the pulse comes last, a change that should not have
    // happened shows up before it, and a wrongly kept away state swallows the pulse.
    QList<bool> changesWithPulse(qsizetype expected) {
        const QString path = QStringLiteral("/org/freedesktop/ScreenSaver");
        const QString interface = QStringLiteral("org.freedesktop.ScreenSaver");
        screenSaver(path, interface, true);
        screenSaver(path, interface, false);
        (void)QTest::qWaitFor([&] { return changes->size() >= expected + 2; }, 10000);
        QList<bool> seen;
        for (const auto& change : *changes) seen.append(change.at(0).toBool());
        changes->clear();
        return seen;
    }
};

TEST(AwayMonitor, ScreenSaverLockAndIdleMakeTheUserAway) {
    Desktop desktop;
    desktop.start();
    ASSERT_FALSE(testing::Test::HasFatalFailure());
    const QString gnomePath = QStringLiteral("/org/gnome/ScreenSaver");
    const QString gnome = QStringLiteral("org.gnome.ScreenSaver");
    const QString freedesktop = QStringLiteral("org.freedesktop.ScreenSaver");

    struct Step {
        const char* name;
        std::function<void()> send;
        QList<bool> expected;
    };
    const Step steps[] = {
        {"KDE's screen saver path", [&] {
             desktop.screenSaver(QStringLiteral("/ScreenSaver"), freedesktop, true);
             desktop.screenSaver(QStringLiteral("/ScreenSaver"), freedesktop, false);
         }, {true, false}},
        {"GNOME's screen saver", [&] {
             desktop.screenSaver(gnomePath, gnome, true);
             desktop.screenSaver(gnomePath, gnome, false);
         }, {true, false}},
        // Locking while the screen saver runs changes nothing; coming back needs both to end.
        {"lock under the screen saver", [&] {
             desktop.screenSaver(gnomePath, gnome, true);
             desktop.session(sessionPath, QStringLiteral("Lock"));
             desktop.screenSaver(gnomePath, gnome, false);
             desktop.session(sessionPath, QStringLiteral("Unlock"));
         }, {true, false}},
        {"idle hint", [&] {
             desktop.idle(true);
             desktop.idle(false);
         }, {true, false}},
        {"another session's lock is not ours", [&] {
             desktop.session(QStringLiteral("/org/freedesktop/login1/session/c8"), QStringLiteral("Lock"));
         }, {}},
    };
    for (const Step& step : steps) {
        step.send();
        EXPECT_EQ(desktop.changesWithPulse(step.expected.size()), (step.expected + QList<bool>{true, false})) << step.name;
        EXPECT_FALSE(desktop.monitor->isAway()) << step.name;
    }

    desktop.session(sessionPath, QStringLiteral("Lock"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.changes->size() == 1; }, 10000));
    EXPECT_TRUE(desktop.monitor->isAway());
}

TEST(AwayMonitor, WithoutBusesNothingHappens) {
    AwayMonitor monitor(QDBusConnection(QStringLiteral("nowhere")), QDBusConnection(QStringLiteral("nowhere")));
    EXPECT_FALSE(monitor.isAway());
}

}  // namespace

#include "AwayMonitorIntegrationTest.moc"
