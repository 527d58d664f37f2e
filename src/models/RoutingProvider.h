#pragma once

#include "models/AIProvider.h"

#include <functional>
#include <memory>

class QNetworkAccessManager;

namespace vuro {

class AIKeyStore;
class Defaults;

// The assistant the rest of the program talks to: each request goes to the provider the user
// selected, made fresh for that request so that a changed setting or key applies at once, and to
// the on-device provider when none is selected. Main thread.
class RoutingProvider : public AIProvider {
public:
    using Selected = std::function<std::unique_ptr<AIProvider>()>;

    RoutingProvider(AIProvider& onDevice, Selected selected);

    QString name() const override { return target()->name(); }
    AIRoute route() const override { return target()->route(); }
    AIAvailability availability() const override { return target()->availability(); }
    QCoro::AsyncGenerator<QString> streamText(QString system, QString prompt) const override;
    QCoro::Task<QStringList> extractTasks(QString system, QString prompt) const override;
    QCoro::Task<GeneratedCommand> generateCommand(QString system, QString prompt) const override;

private:
    // The selected provider, held until the next request; the on-device one without a selection.
    const AIProvider* target() const;

    AIProvider& _onDevice;
    Selected _selected;
    mutable std::unique_ptr<AIProvider> _current;
};

// The API provider chosen under "aiProvider", built from the user's model, base and key; none for
// the on-device model, a command-line tool, or no choice.
std::unique_ptr<AIProvider> selectedAPIProvider(const Defaults& defaults, AIKeyStore& keys, QNetworkAccessManager& session);

}  // namespace vuro
