#pragma once

#include "models/AIProvider.h"

namespace vuro {

// The assistant on this computer, where routing sends a request when the user chose no
// provider. This build has no on-device engine, so the provider says so instead of pretending:
// it reports itself unavailable, and every request ends with ChatModelError::unavailable carrying
// the same words. Main thread.
class OnDeviceProvider : public AIProvider {
public:
    static QString unavailableWords();  // "The on-device model is not available."

    QString name() const override;
    AIRoute route() const override { return AIRoute::onDevice(); }
    AIAvailability availability() const override { return AIAvailability::unavailable(unavailableWords()); }
    QCoro::AsyncGenerator<QString> streamText(QString system, QString prompt) const override;
    QCoro::Task<QStringList> extractTasks(QString system, QString prompt) const override;
    QCoro::Task<GeneratedCommand> generateCommand(QString system, QString prompt) const override;
};

}  // namespace vuro
