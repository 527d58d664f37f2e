#pragma once

#include "models/AIRoute.h"
#include "models/GeneratedCommand.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <qcoro/qcoroasyncgenerator.h>
#include <qcoro/qcorotask.h>

namespace vuro {

// Whether a provider can take a request now, and if not, the words saying why.
struct AIAvailability {
    std::optional<QString> problem;  // none: available

    static AIAvailability available() { return {}; }
    static AIAvailability unavailable(QString words) { return {std::move(words)}; }
    bool isAvailable() const { return !problem; }
    bool operator==(const AIAvailability&) const = default;
};

// The one-shot assistant: a text reply, the tasks in a text, or one command from a sentence.
// Each request runs on its own and ends when its stream or task is dropped; the request copies
// what it needs, so the provider may go away meanwhile. Failures are AIProviderError (or the
// on-device model's own errors). Main thread.
class AIProvider {
public:
    virtual ~AIProvider() = default;

    virtual QString name() const = 0;
    virtual AIRoute route() const = 0;
    virtual AIAvailability availability() const = 0;

    // The reply in pieces as they arrive; joined they make the whole reply.
    virtual QCoro::AsyncGenerator<QString> streamText(QString system, QString prompt) const = 0;
    // The task texts the model finds in the prompt.
    virtual QCoro::Task<QStringList> extractTasks(QString system, QString prompt) const = 0;
    // The one command the model makes of the prompt.
    virtual QCoro::Task<GeneratedCommand> generateCommand(QString system, QString prompt) const = 0;
};

}  // namespace vuro
