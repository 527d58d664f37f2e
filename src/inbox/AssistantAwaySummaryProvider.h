#pragma once

#include "inbox/AwaySummaryProvider.h"

namespace vuro {

class AIProvider;

// The away digest's summaries from the user's assistant: one streamed reply, joined. Holds the
// assistant by reference; the assistant lives as long as the application environment, which
// outlives every summary. Failures are the assistant's own (AIProviderError). Main thread.
class AssistantAwaySummaryProvider : public AwaySummaryProvider {
public:
    explicit AssistantAwaySummaryProvider(const AIProvider& assistant) : _assistant(assistant) {}

    QCoro::Task<QString> respond(QString instruction, QString input) override;

private:
    const AIProvider& _assistant;
};

}  // namespace vuro
