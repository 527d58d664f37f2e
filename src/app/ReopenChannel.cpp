#include "app/ReopenChannel.h"

#include "app/AppPaths.h"
#include "base/Log.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vuro {
namespace {
const QByteArray reopenMessage = QByteArrayLiteral("reopen\n");
}  // namespace

ReopenChannel::ReopenChannel(QObject* parent) : QObject(parent), _server(new QLocalServer(this)) {
    _server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = _server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readFrom(socket); });
            readFrom(socket);
        }
    });
}

ReopenChannel::~ReopenChannel() = default;

QString ReopenChannel::serverName() {
    QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty() || !QDir(folder).exists()) folder = QDir::tempPath();
    return QStringLiteral("%1/%2.reopen.%3").arg(folder, QLatin1String(AppPaths::appID)).arg(::getuid());
}

bool ReopenChannel::listen() {
    QLocalServer::removeServer(serverName());
    if (_server->listen(serverName())) return true;
    log(QStringLiteral("the reopen channel could not start — ") + _server->errorString());
    return false;
}

void ReopenChannel::readFrom(QLocalSocket* socket) {
    while (socket->canReadLine()) {
        if (socket->readLine() == reopenMessage) Q_EMIT reopenRequested();
    }
}

// Plain POSIX: the sending copy has no application object and no event loop yet.
bool ReopenChannel::sendReopen() {
    const QByteArray path = QFile::encodeName(serverName());
    sockaddr_un address{};
    if (size_t(path.size()) >= sizeof address.sun_path) return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    const timeval timeout{1, 0};
    ::setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof timeout);
    bool sent = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (sent) sent = ::send(fd, reopenMessage.constData(), size_t(reopenMessage.size()), MSG_NOSIGNAL) == reopenMessage.size();
    ::close(fd);
    return sent;
}

}  // namespace vuro
