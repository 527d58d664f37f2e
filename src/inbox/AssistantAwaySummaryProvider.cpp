#include "inbox/AssistantAwaySummaryProvider.h"

#include "models/AIProvider.h"

namespace vuro {

QCoro::Task<QString> AssistantAwaySummaryProvider::respond(QString instruction, QString input) {
    // The request copies what it needs when it is made; nothing of this object is read later.
    QCoro::AsyncGenerator<QString> stream = _assistant.streamText(std::move(instruction), std::move(input));
    QString reply;
    auto piece = co_await stream.begin();
    while (piece != stream.end()) {
        reply += *piece;
        co_await ++piece;
    }
    co_return reply;
}

}  // namespace vuro
