#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace vuro::test {

// A dbus-daemon of the test's own, so that a test neither needs nor disturbs the desktop's
// buses. address is empty when the daemon could not start.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // A new connection to this bus under a name unique in the process.
    QDBusConnection connect(const QString& name);
    const QString& address() const { return _address; }

private:
    QProcess _daemon;
    QString _address;
    QStringList _names;
};

}  // namespace vuro::test
