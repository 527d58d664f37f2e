#pragma once

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace vuro {

// How a second start reaches the running copy: a local socket named after the application id
// and the user id, in $XDG_RUNTIME_DIR (else the temporary folder). The running copy listens;
// a second copy connects and sends "reopen". Only the lock holder listens, so it may clear a
// socket file left by a crashed copy. Main thread only.
class ReopenChannel : public QObject {
    Q_OBJECT
public:
    explicit ReopenChannel(QObject* parent = nullptr);
    ~ReopenChannel() override;

    static QString serverName();

    // Starts listening; false (and a log line) when the socket can't be made.
    bool listen();

    // Sends "reopen" to the running copy and waits briefly for it to be written; a copy that
    // isn't listening is no error.
    static bool sendReopen();

Q_SIGNALS:
    void reopenRequested();

private:
    void readFrom(QLocalSocket* socket);
    QLocalServer* _server;
};

}  // namespace vuro
