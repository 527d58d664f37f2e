// Feeds arbitrary bytes through the streamed-line handling and the three vendor stream parsers,
// cut into pieces at positions taken from the input itself. Nothing may crash, hang or leak;
// an error event or line is an ordinary outcome.
#include "models/AIProviderError.h"
#include "models/AnthropicStreamTurn.h"
#include "models/LineBuffer.h"
#include "models/OllamaStreamTurn.h"
#include "models/OpenAIStreamTurn.h"

#include <cstddef>
#include <cstdint>

namespace {

template <typename Turn>
void feed(Turn& turn, bool& failed, QByteArrayView payload) {
    if (failed) return;
    try {
        turn.apply(payload);
    } catch (const vuro::AIProviderError&) {
        failed = true;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const qsizetype step = 1 + data[0] % 64;
    const QByteArrayView input(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));

    vuro::LineBuffer lines;
    vuro::AnthropicStreamTurn anthropic;
    vuro::OpenAIStreamTurn openAI;
    vuro::OllamaStreamTurn ollama;
    bool anthropicFailed = false, openAIFailed = false, ollamaFailed = false;
    auto handle = [&](QByteArrayView line) {
        if (const auto event = vuro::extractPayload(vuro::LineExtract::serverSentEvents, line)) {
            feed(anthropic, anthropicFailed, *event);
            anthropic.takeServerToolStart();
            feed(openAI, openAIFailed, *event);
        }
        if (const auto object = vuro::extractPayload(vuro::LineExtract::newlineDelimited, line))
            feed(ollama, ollamaFailed, *object);
    };
    for (qsizetype at = 0; at < input.size(); at += step) {
        lines.append(input.sliced(at, std::min(step, input.size() - at)));
        while (const auto line = lines.nextLine()) handle(*line);
    }
    if (const auto rest = lines.takeRest()) handle(*rest);

    (void)anthropic.blocks();
    (void)anthropic.toolUses();
    (void)openAI.calls();
    (void)ollama.toolCalls();
    return 0;
}
