#include "settings/ProviderProbe.h"

#include "base/Error.h"
#include "base/Text.h"
#include "models/AIProvider.h"

namespace vuro {
namespace {
// A chatty model may say more than "OK"; the settings show one line of it.
constexpr qsizetype shownReplyLength = 200;
}  // namespace

QString ProviderProbe::prompt() { return QStringLiteral("Reply with the single word: OK"); }

ProviderProbe::ProviderProbe(QObject* parent) : QObject(parent) {}

ProviderProbe::~ProviderProbe() { _token.cancel(); }

void ProviderProbe::start(const AIProvider& provider) {
    _token.cancel();
    _token = CancelToken();
    if (const AIAvailability availability = provider.availability(); !availability.isAvailable()) {
        setState(Failed{*availability.problem});
        return;
    }
    setState(Running{});
    run(QPointer(this), _token, provider.streamText(QString(), prompt()));
}

void ProviderProbe::cancel() {
    _token.cancel();
    if (isRunning()) setState(Idle{});
}

void ProviderProbe::setState(State state) {
    _state = std::move(state);
    Q_EMIT stateChanged();
}

QCoro::Task<> ProviderProbe::run(QPointer<ProviderProbe> self, CancelToken token, QCoro::AsyncGenerator<QString> reply) {
    State outcome;
    try {
        QString text;
        for (auto it = co_await reply.begin(); it != reply.end(); co_await ++it) {
            if (!stillWanted(self, token)) co_return;
            text += *it;
        }
        text = Text::trimmed(text).replace(QLatin1Char('\n'), QLatin1Char(' '));
        outcome = text.isEmpty() ? State(Failed{tr("The provider returned nothing.")})
                                 : State(Answered{Text::cut(text, shownReplyLength)});
    } catch (const Error& error) {
        outcome = Failed{error.message()};
    } catch (...) {
        outcome = Failed{tr("The test failed.")};
    }
    if (!stillWanted(self, token)) co_return;
    self->setState(std::move(outcome));
}

}  // namespace vuro
