#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariantMap>

namespace vuro {

// Tells when the user leaves and comes back: the screen saver or lock screen comes on
// (org.freedesktop.ScreenSaver and GNOME's twin on the session bus), or logind marks the session
// locked or idle (org.freedesktop.login1 on the system bus). Away while any of these holds.
// Buses that aren't there are skipped silently. Main thread only.
class AwayMonitor : public QObject {
    Q_OBJECT
public:
    AwayMonitor(QDBusConnection sessionBus, QDBusConnection systemBus, QObject* parent = nullptr);
    // The buses of this login session.
    static AwayMonitor* forThisSession(QObject* parent = nullptr);

    bool isAway() const { return _screenSaver || _locked || _idle; }
    // True once logind has told which session is ours.
    bool watchesSession() const { return _watchesSession; }

Q_SIGNALS:
    void awayChanged(bool away);

private Q_SLOTS:
    void screenSaverChanged(bool active);
    void sessionLocked();
    void sessionUnlocked();
    void sessionPropertiesChanged(const QString& interface, const QVariantMap& changed, const QStringList& invalidated);

private:
    void update(bool& flag, bool value);
    void findSession(QDBusConnection bus, bool byProcess);
    void watchSession(QDBusConnection bus, const QString& path);

    bool _screenSaver = false;
    bool _locked = false;
    bool _idle = false;
    bool _watchesSession = false;
};

}  // namespace vuro
