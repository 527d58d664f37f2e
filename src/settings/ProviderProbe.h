#pragma once

#include "base/Async.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <qcoro/qcoroasyncgenerator.h>
#include <variant>

namespace vuro {

class AIProvider;

// The "Test" of the assistant settings: one short request through a provider, and its outcome in
// words: the reply, or the provider's sentence for what went wrong. A new start or cancel() drops
// the request under way; its late answer is ignored. Main thread.
class ProviderProbe : public QObject {
    Q_OBJECT
public:
    struct Idle {};
    struct Running {};
    struct Answered {
        QString reply;
    };
    struct Failed {
        QString sentence;
    };
    using State = std::variant<Idle, Running, Answered, Failed>;

    static QString prompt();  // "Reply with the single word: OK"

    explicit ProviderProbe(QObject* parent = nullptr);
    ~ProviderProbe() override;

    const State& state() const { return _state; }
    bool isRunning() const { return std::holds_alternative<Running>(_state); }

    void start(const AIProvider& provider);
    void cancel();

Q_SIGNALS:
    void stateChanged();

private:
    static QCoro::Task<> run(QPointer<ProviderProbe> self, CancelToken token, QCoro::AsyncGenerator<QString> reply);
    void setState(State state);

    State _state = Idle{};
    CancelToken _token;
};

}  // namespace vuro
