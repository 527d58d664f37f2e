#include "support/PrivateBus.h"

namespace vuro::test {

PrivateBus::PrivateBus() {
    _daemon.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
    if (!_daemon.waitForStarted(10000)) return;
    while (_address.isEmpty() && _daemon.waitForReadyRead(10000))
        _address = QString::fromUtf8(_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
    for (const QString& name : _names) QDBusConnection::disconnectFromBus(name);
    _daemon.kill();
    _daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect(const QString& name) {
    _names.append(name);
    return QDBusConnection::connectToBus(_address, name);
}

}  // namespace vuro::test
