#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QTcpServer>
#include <QUrl>
#include <chrono>
#include <deque>
#include <vector>

namespace vuro::test {

// One request as the server received it. Header names are lower-cased.
struct RecordedRequest {
    QByteArray method;
    QByteArray path;
    QMap<QByteArray, QByteArray> headers;
    QByteArray body;

    QJsonObject json() const;  // the body parsed as a JSON object (empty when it isn't one)
};

// One answer to replay: the body is written in the given pieces with a pause between them, so
// that a client sees lines split across reads the way a slow network delivers them.
struct ReplayedResponse {
    int status = 200;
    QByteArray contentType = "text/event-stream";
    QList<QByteArray> pieces;
    std::chrono::milliseconds pause{1};

    // The body cut into pieces of at most pieceSize bytes.
    static ReplayedResponse of(const QByteArray& body, qsizetype pieceSize = 7, int status = 200);
    // The body of a recording under tests/<path>, cut the same way.
    static ReplayedResponse recording(const QString& path, qsizetype pieceSize = 7);
};

// An HTTP/1.1 server on 127.0.0.1 with a random port. Each request takes the next queued
// response in order (a request with none queued gets a 500) and is recorded. Every response
// closes its connection. Lives on the thread that made it.
class LoopbackHttpServer : public QObject {
public:
    LoopbackHttpServer();

    QUrl url(const QString& path = QStringLiteral("/")) const;
    void enqueue(ReplayedResponse response);
    const std::vector<RecordedRequest>& requests() const { return _requests; }

    // A local port on which nothing listens: connecting to it is refused.
    static quint16 closedPort();

private:
    void serve(class QTcpSocket* socket);

    QTcpServer _server;
    std::deque<ReplayedResponse> _queue;
    std::vector<RecordedRequest> _requests;
};

}  // namespace vuro::test
