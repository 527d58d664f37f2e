#include "inbox/AwayMonitor.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>

namespace vuro {

namespace {

const QString login1 = QStringLiteral("org.freedesktop.login1");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
// The object path of our login session: signals come from the real path, never from the
// "auto" alias. Empty when we run outside a session.
QString ownSessionPath(QDBusConnection& bus) {
    const QString manager = QStringLiteral("org.freedesktop.login1.Manager");
    const QString path = QStringLiteral("/org/freedesktop/login1");
    QDBusReply<QDBusObjectPath> reply =
        bus.call(QDBusMessage::createMethodCall(login1, path, manager, QStringLiteral("GetSessionByPID"))
                     << quint32(QCoreApplication::applicationPid()), QDBus::Block, 2000);
    if (!reply.isValid())
        reply = bus.call(QDBusMessage::createMethodCall(login1, path, manager, QStringLiteral("GetSession"))
                             << QStringLiteral("auto"), QDBus::Block, 2000);
    return reply.isValid() ? reply.value().path() : QString();
}

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
    const QString ownSession = systemBus.isConnected() ? ownSessionPath(systemBus) : QString();
    if (!ownSession.isEmpty()) {
        systemBus.connect(login1, ownSession, sessionInterface, QStringLiteral("Lock"), this, SLOT(sessionLocked()));
        systemBus.connect(login1, ownSession, sessionInterface, QStringLiteral("Unlock"), this, SLOT(sessionUnlocked()));
        systemBus.connect(login1, ownSession, QStringLiteral("org.freedesktop.DBus.Properties"),
                          QStringLiteral("PropertiesChanged"), this,
                          SLOT(sessionPropertiesChanged(QString, QVariantMap, QStringList)));
    }
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
