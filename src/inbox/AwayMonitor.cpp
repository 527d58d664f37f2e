#include "inbox/AwayMonitor.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace vuro {

namespace {

const QString login1 = QStringLiteral("org.freedesktop.login1");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString managerPath = QStringLiteral("/org/freedesktop/login1");
const QString managerInterface = QStringLiteral("org.freedesktop.login1.Manager");

}  // namespace

AwayMonitor::AwayMonitor(QDBusConnection sessionBus, QDBusConnection systemBus, QObject* parent) : QObject(parent) {
    if (sessionBus.isConnected()) {
        // Any sender: screen savers own different names (KDE, GNOME, xfce, xscreensaver bridges).
        sessionBus.connect({}, QStringLiteral("/org/freedesktop/ScreenSaver"), QStringLiteral("org.freedesktop.ScreenSaver"),
                           QStringLiteral("ActiveChanged"), this, SLOT(screenSaverChanged(bool)));
        sessionBus.connect({}, QStringLiteral("/ScreenSaver"), QStringLiteral("org.freedesktop.ScreenSaver"),
                           QStringLiteral("ActiveChanged"), this, SLOT(screenSaverChanged(bool)));
        sessionBus.connect({}, QStringLiteral("/org/gnome/ScreenSaver"), QStringLiteral("org.gnome.ScreenSaver"),
                           QStringLiteral("ActiveChanged"), this, SLOT(screenSaverChanged(bool)));
    }
    if (systemBus.isConnected()) findSession(systemBus, true);
}

// Asked without blocking: logind may be slow or absent, and start-up must not wait for it.
// The session's signals come from its real path, never from the "auto" alias.
void AwayMonitor::findSession(QDBusConnection bus, bool byProcess) {
    auto call = byProcess ? QDBusMessage::createMethodCall(login1, managerPath, managerInterface, QStringLiteral("GetSessionByPID"))
                                << quint32(QCoreApplication::applicationPid())
                          : QDBusMessage::createMethodCall(login1, managerPath, managerInterface, QStringLiteral("GetSession"))
                                << QStringLiteral("auto");
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, bus, byProcess](QDBusPendingCallWatcher* done) {
        done->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *done;
        if (reply.isError()) {
            if (byProcess) findSession(bus, false);  // started outside a session: the user's display session
            return;
        }
        watchSession(bus, reply.value().path());
    });
}

void AwayMonitor::watchSession(QDBusConnection bus, const QString& path) {
    bus.connect(login1, path, sessionInterface, QStringLiteral("Lock"), this, SLOT(sessionLocked()));
    bus.connect(login1, path, sessionInterface, QStringLiteral("Unlock"), this, SLOT(sessionUnlocked()));
    bus.connect(login1, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"),
                this, SLOT(sessionPropertiesChanged(QString, QVariantMap, QStringList)));
    _watchesSession = true;
}

AwayMonitor* AwayMonitor::forThisSession(QObject* parent) {
    return new AwayMonitor(QDBusConnection::sessionBus(), QDBusConnection::systemBus(), parent);
}

void AwayMonitor::update(bool& flag, bool value) {
    const bool wasAway = isAway();
    flag = value;
    if (isAway() != wasAway) Q_EMIT awayChanged(isAway());
}

void AwayMonitor::screenSaverChanged(bool active) { update(_screenSaver, active); }
void AwayMonitor::sessionLocked() { update(_locked, true); }
void AwayMonitor::sessionUnlocked() { update(_locked, false); }

void AwayMonitor::sessionPropertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList&) {
    if (interface != sessionInterface) return;
    if (const auto locked = changed.constFind(QStringLiteral("LockedHint")); locked != changed.cend())
        update(_locked, locked->toBool());
    if (const auto idle = changed.constFind(QStringLiteral("IdleHint")); idle != changed.cend())
        update(_idle, idle->toBool());
}

}  // namespace vuro
