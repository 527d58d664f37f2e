#include "support/LoopbackHttpServer.h"

#include <QFile>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTimer>
#include <memory>

namespace vuro::test {

QJsonObject RecordedRequest::json() const { return QJsonDocument::fromJson(body).object(); }

ReplayedResponse ReplayedResponse::of(const QByteArray& body, qsizetype pieceSize, int status) {
    ReplayedResponse response;
    response.status = status;
    for (qsizetype i = 0; i < body.size(); i += pieceSize) response.pieces.append(body.mid(i, pieceSize));
    return response;
}

ReplayedResponse ReplayedResponse::recording(const QString& path, qsizetype pieceSize) {
    QFile file(QStringLiteral(VURO_SOURCE_DIR "/tests/") + path);
    if (!file.open(QIODevice::ReadOnly)) qFatal("missing recording %s", qPrintable(path));
    ReplayedResponse response = of(file.readAll(), pieceSize);
    if (path.endsWith(QLatin1String(".ndjson"))) response.contentType = "application/x-ndjson";
    return response;
}

LoopbackHttpServer::LoopbackHttpServer() {
    if (!_server.listen(QHostAddress::LocalHost, 0)) qFatal("loopback server cannot listen");
    connect(&_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = _server.nextPendingConnection()) serve(socket);
    });
}

QUrl LoopbackHttpServer::url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(_server.serverPort()).arg(path));
}

void LoopbackHttpServer::enqueue(ReplayedResponse response) { _queue.push_back(std::move(response)); }

quint16 LoopbackHttpServer::closedPort() {
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

namespace {
const char* reason(int status) {
    switch (status) {
    case 200: return "OK";
    case 400: return "Bad Request";
    case 401: return "Unauthorized";
    case 403: return "Forbidden";
    case 429: return "Too Many Requests";
    default: return "Error";
    }
}
}  // namespace

void LoopbackHttpServer::serve(QTcpSocket* socket) {
    socket->setParent(this);
    auto buffer = std::make_shared<QByteArray>();
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer] {
        buffer->append(socket->readAll());
        const qsizetype headerEnd = buffer->indexOf("\r\n\r\n");
        if (headerEnd < 0) return;
        RecordedRequest request;
        const QList<QByteArray> lines = buffer->left(headerEnd).split('\n');
        const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
        request.method = requestLine.value(0);
        request.path = requestLine.value(1);
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines[i].indexOf(':');
            if (colon > 0) request.headers.insert(lines[i].left(colon).trimmed().toLower(), lines[i].mid(colon + 1).trimmed());
        }
        const qsizetype length = request.headers.value("content-length").toLongLong();
        if (buffer->size() < headerEnd + 4 + length) return;
        request.body = buffer->mid(headerEnd + 4, length);
        buffer->clear();
        _requests.push_back(request);

        ReplayedResponse response;
        if (_queue.empty()) {
            response = ReplayedResponse::of(R"({"error":{"message":"no response queued"}})", 1024, 500);
        } else {
            response = std::move(_queue.front());
            _queue.pop_front();
        }
        qsizetype total = 0;
        for (const QByteArray& piece : response.pieces) total += piece.size();
        socket->write(QByteArray("HTTP/1.1 ") + QByteArray::number(response.status) + ' ' + reason(response.status) +
                      "\r\nContent-Type: " + response.contentType + "\r\nContent-Length: " + QByteArray::number(total) +
                      "\r\nConnection: close\r\n\r\n");
        auto pieces = std::make_shared<QList<QByteArray>>(response.pieces);
        auto* timer = new QTimer(socket);
        timer->setInterval(response.pause);
        connect(timer, &QTimer::timeout, socket, [socket, pieces, timer] {
            if (pieces->isEmpty()) {
                timer->stop();
                socket->disconnectFromHost();
                return;
            }
            socket->write(pieces->takeFirst());
        });
        timer->start();
    });
}

}  // namespace vuro::test
