#include "inbox/AwayMonitor.h"

#include "support/Printers.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

const QString sessionPath = QStringLiteral("/org/freedesktop/login1/session/c7");

// Stands in for logind on a private bus: answers which session we are in.
class FakeLogind : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")
public Q_SLOTS:
    QDBusObjectPath GetSessionByPID(quint32) { return QDBusObjectPath(sessionPath); }
};

// A dbus-daemon of our own, so the test neither needs nor disturbs the desktop's buses.
class PrivateBus {
public:
    PrivateBus() {
        daemon.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                     QStringLiteral("--print-address=1")});
        if (!daemon.waitForStarted(5000)) return;
        while (address.isEmpty() && daemon.waitForReadyRead(5000)) address = QString::fromUtf8(daemon.readLine()).trimmed();
    }
    ~PrivateBus() {
        for (const QString& name : names) QDBusConnection::disconnectFromBus(name);
        daemon.kill();
        daemon.waitForFinished();
    }
    QDBusConnection connect(const QString& name) {
        names.append(name);
        return QDBusConnection::connectToBus(address, name);
    }

    QProcess daemon;
    QString address;
    QStringList names;
};

void emitSignal(QDBusConnection& bus, const QString& path, const QString& interface, const QString& name,
                const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
    message.setArguments(arguments);
    ASSERT_TRUE(bus.send(message));
}

TEST(AwayMonitor, ScreenSaverLockAndIdleMakeTheUserAway) {
    PrivateBus session;
    PrivateBus system;
    ASSERT_FALSE(session.address.isEmpty());
    ASSERT_FALSE(system.address.isEmpty());

    QDBusConnection logindBus = system.connect(QStringLiteral("logind"));
    FakeLogind logind;
    ASSERT_TRUE(logindBus.registerObject(QStringLiteral("/org/freedesktop/login1"), &logind, QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(logindBus.registerService(QStringLiteral("org.freedesktop.login1")));

    AwayMonitor monitor(session.connect(QStringLiteral("monitor-session")), system.connect(QStringLiteral("monitor-system")));
    QSignalSpy changes(&monitor, &AwayMonitor::awayChanged);
    QDBusConnection saver = session.connect(QStringLiteral("saver"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return monitor.watchesSession(); }, 3000));

    const auto expectChanges = [&](QList<bool> expected) {
        (void)QTest::qWaitFor([&] { return changes.size() >= expected.size(); }, 3000);
        QTest::qWait(50);  // and nothing more
        QList<bool> seen;
        for (const auto& change : changes) seen.append(change.at(0).toBool());
        changes.clear();
        EXPECT_EQ(seen, expected);
    };

    const QString screenSaver = QStringLiteral("org.freedesktop.ScreenSaver");
    emitSignal(saver, QStringLiteral("/org/freedesktop/ScreenSaver"), screenSaver, QStringLiteral("ActiveChanged"), {true});
    expectChanges({true});
    EXPECT_TRUE(monitor.isAway());
    emitSignal(saver, QStringLiteral("/org/freedesktop/ScreenSaver"), screenSaver, QStringLiteral("ActiveChanged"), {false});
    expectChanges({false});

    emitSignal(saver, QStringLiteral("/org/gnome/ScreenSaver"), QStringLiteral("org.gnome.ScreenSaver"),
               QStringLiteral("ActiveChanged"), {true});
    expectChanges({true});
    // Locking while the screen saver runs changes nothing; coming back needs both to end.
    const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
    emitSignal(logindBus, sessionPath, sessionInterface, QStringLiteral("Lock"), {});
    emitSignal(saver, QStringLiteral("/org/gnome/ScreenSaver"), QStringLiteral("org.gnome.ScreenSaver"),
               QStringLiteral("ActiveChanged"), {false});
    expectChanges({});
    emitSignal(logindBus, sessionPath, sessionInterface, QStringLiteral("Unlock"), {});
    expectChanges({false});

    QVariantMap idle{{QStringLiteral("IdleHint"), true}};
    emitSignal(logindBus, sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"),
               QStringLiteral("PropertiesChanged"), {sessionInterface, idle, QStringList()});
    expectChanges({true});
    idle[QStringLiteral("IdleHint")] = false;
    emitSignal(logindBus, sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"),
               QStringLiteral("PropertiesChanged"), {sessionInterface, idle, QStringList()});
    expectChanges({false});

    // Another session's lock is not ours.
    emitSignal(logindBus, QStringLiteral("/org/freedesktop/login1/session/c8"), sessionInterface, QStringLiteral("Lock"), {});
    expectChanges({});
}

TEST(AwayMonitor, WithoutBusesNothingHappens) {
    AwayMonitor monitor(QDBusConnection(QStringLiteral("nowhere")), QDBusConnection(QStringLiteral("nowhere")));
    EXPECT_FALSE(monitor.isAway());
}

}  // namespace

#include "AwayMonitorIntegrationTest.moc"
