#include "models/LineStream.h"

#include "models/AIProviderError.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <coroutine>
#include <memory>

namespace vuro {
namespace {

// Owns one reply and lets a coroutine wait until it has bytes to read or has finished.
// The wake-up state is shared with the reply's connections, so a stream destroyed while
// waiting leaves nothing dangling; the reply is aborted and deleted later.
class ReplyHandle {
    struct Waiter {
        std::coroutine_handle<> waiting;
    };

public:
    explicit ReplyHandle(QNetworkReply* reply) : _reply(reply), _waiter(std::make_shared<Waiter>()) {
        auto wake = [waiter = _waiter] {
            if (auto handle = std::exchange(waiter->waiting, {})) handle.resume();
        };
        QObject::connect(reply, &QNetworkReply::readyRead, reply, wake);
        QObject::connect(reply, &QNetworkReply::finished, reply, wake);
    }
    ~ReplyHandle() {
        if (!_reply) return;
        _reply->disconnect();
        _reply->abort();
        _reply->deleteLater();
    }
    ReplyHandle(const ReplyHandle&) = delete;
    ReplyHandle& operator=(const ReplyHandle&) = delete;

    QNetworkReply* operator->() const { return _reply.data(); }

    struct Activity {
        ReplyHandle* owner;
        bool await_ready() const { return owner->ready(); }
        void await_suspend(std::coroutine_handle<> handle) const { owner->_waiter->waiting = handle; }
        void await_resume() const {}
    };
    Activity activity() { return {this}; }

    bool ready() const { return !_reply || _reply->bytesAvailable() > 0 || _reply->isFinished(); }
    bool gone() const { return _reply.isNull(); }

private:
    QPointer<QNetworkReply> _reply;
    std::shared_ptr<Waiter> _waiter;
};

bool isConnectionProblem(QNetworkReply::NetworkError error) {
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
        return true;
    default:
        return false;
    }
}

void throwIfBroken(const ReplyHandle& reply, const QString& host) {
    if (reply.gone()) throw Error(QStringLiteral("The request was cancelled."));
    const QNetworkReply::NetworkError error = reply->error();
    if (error == QNetworkReply::NoError) return;
    if (isConnectionProblem(error)) throw AIProviderError::cannotConnect(host);
    throw Error(reply->errorString());
}

}  // namespace

QCoro::AsyncGenerator<QByteArray> lineStream(QNetworkAccessManager* session, JsonRequest request, LineExtract extract) {
    const QString host = request.request.url().host();
    ReplyHandle reply(session->post(request.request, request.body));
    co_await reply.activity();
    if (reply.gone()) throwIfBroken(reply, host);

    const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid()) {
        throwIfBroken(reply, host);
        throw AIProviderError::invalidResponse();
    }
    const int code = status.toInt();
    if (code < 200 || code > 299) {
        QByteArray body;
        for (;;) {
            const bool finished = reply->isFinished();
            body += reply->readAll();
            if (finished || body.size() > errorBodyLimit) break;
            co_await reply.activity();
            if (reply.gone()) break;
        }
        throw AIProviderError::http(code, providerErrorMessage(body.left(errorBodyLimit)));
    }

    LineBuffer lines;
    for (;;) {
        const bool finished = reply->isFinished();
        lines.append(reply->readAll());
        while (const auto line = lines.nextLine()) {
            if (const auto payload = extractPayload(extract, *line)) {
                QByteArray text = payload->toByteArray();
                co_yield text;
            }
        }
        if (finished) break;
        co_await reply.activity();
        if (reply.gone()) throwIfBroken(reply, host);
    }
    throwIfBroken(reply, host);
    if (const auto rest = lines.takeRest()) {
        if (const auto payload = extractPayload(extract, *rest)) {
            QByteArray text = payload->toByteArray();
            co_yield text;
        }
    }
}

}  // namespace vuro
