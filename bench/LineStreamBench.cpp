// Throughput of reading streamed model replies: cutting the body into lines and taking out the
// payloads (the budget is 100 MB/s), and, for scale, the same with the vendor parsers on top.
#include "models/AnthropicStreamTurn.h"
#include "models/LineBuffer.h"
#include "models/OllamaStreamTurn.h"

#include <benchmark/benchmark.h>

namespace {

// A long reply as the Messages API streams it: one event line, one data line and a blank line
// per text delta of about twenty characters.
QByteArray anthropicBody(int deltas) {
    QByteArray body = "event: content_block_start\ndata: {\"type\":\"content_block_start\",\"index\":0,\"content_block\":{\"type\":\"text\",\"text\":\"\"}}\n\n";
    for (int i = 0; i < deltas; ++i)
        body += "event: content_block_delta\ndata: {\"type\":\"content_block_delta\",\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":\"word number " +
                QByteArray::number(i % 1000) + " and \"}}\n\n";
    return body;
}

QByteArray ollamaBody(int lines) {
    QByteArray body;
    for (int i = 0; i < lines; ++i)
        body += "{\"model\":\"qwen3\",\"created_at\":\"2026-11-21T08:00:00.000Z\",\"message\":{\"role\":\"assistant\",\"content\":\"word " +
                QByteArray::number(i % 1000) + " \"},\"done\":false}\n";
    return body;
}

// Bodies arrive from the network in pieces of a few kilobytes.
constexpr qsizetype pieceSize = 16 * 1024;

template <typename Each>
void readLines(const QByteArray& body, vuro::LineExtract extract, Each each) {
    vuro::LineBuffer lines;
    for (qsizetype at = 0; at < body.size(); at += pieceSize) {
        lines.append(QByteArrayView(body).sliced(at, std::min(pieceSize, body.size() - at)));
        while (const auto line = lines.nextLine())
            if (const auto payload = vuro::extractPayload(extract, *line)) each(*payload);
    }
}

void BM_ServerSentEventLines(benchmark::State& state) {
    const QByteArray body = anthropicBody(50'000);
    for (auto _ : state) {
        qsizetype total = 0;
        readLines(body, vuro::LineExtract::serverSentEvents, [&](QByteArrayView payload) { total += payload.size(); });
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(BM_ServerSentEventLines);

void BM_NewlineDelimitedLines(benchmark::State& state) {
    const QByteArray body = ollamaBody(50'000);
    for (auto _ : state) {
        qsizetype total = 0;
        readLines(body, vuro::LineExtract::newlineDelimited, [&](QByteArrayView payload) { total += payload.size(); });
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(BM_NewlineDelimitedLines);

void BM_AnthropicStreamParse(benchmark::State& state) {
    const QByteArray body = anthropicBody(20'000);
    for (auto _ : state) {
        vuro::AnthropicStreamTurn turn;
        readLines(body, vuro::LineExtract::serverSentEvents, [&](QByteArrayView payload) { turn.apply(payload); });
        benchmark::DoNotOptimize(turn.text().size());
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(BM_AnthropicStreamParse)->Unit(benchmark::kMillisecond);

void BM_OllamaStreamParse(benchmark::State& state) {
    const QByteArray body = ollamaBody(20'000);
    for (auto _ : state) {
        vuro::OllamaStreamTurn turn;
        readLines(body, vuro::LineExtract::newlineDelimited, [&](QByteArrayView payload) { turn.apply(payload); });
        benchmark::DoNotOptimize(turn.text().size());
    }
    state.SetBytesProcessed(state.iterations() * body.size());
}
BENCHMARK(BM_OllamaStreamParse)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
