#pragma once

#include "base/Error.h"

namespace vuro {

// A chat run that ended for a reason of the run itself rather than of the provider
// (those are AIProviderError). message() is the sentence shown under the reply.
class ChatModelError : public Error {
public:
    enum class Kind { unavailable, tooManyToolRounds, blockedBySafetyFilter, contextTooLong };

    static ChatModelError unavailable(const QString& words);
    static ChatModelError tooManyToolRounds();
    static ChatModelError blockedBySafetyFilter();
    static ChatModelError contextTooLong();

    Kind kind() const { return _kind; }

private:
    ChatModelError(Kind kind, QString message) : Error(std::move(message)), _kind(kind) {}

    Kind _kind;
};

}  // namespace vuro
