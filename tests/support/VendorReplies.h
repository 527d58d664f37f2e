#pragma once

#include "support/LoopbackHttpServer.h"

#include <QStringList>

namespace vuro::test {

// Streams as the vendors send them, for a loopback server to replay.
// A Messages stream of one text block in the given pieces.
ReplayedResponse anthropicReply(const QStringList& pieces, const char* stopReason = "end_turn");
// A chat-completions stream of the given pieces.
ReplayedResponse openAIReply(const QStringList& pieces, const char* finishReason = "stop");

}  // namespace vuro::test
