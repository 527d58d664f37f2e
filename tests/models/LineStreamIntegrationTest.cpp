#include "models/AIProviderError.h"
#include "models/LineStream.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"
#include "support/StreamDrain.h"

#include <QJsonArray>
#include <QNetworkAccessManager>
#include <gtest/gtest.h>
#include <qcoro/qcorotimer.h>

namespace vuro {
namespace {

using test::LoopbackHttpServer;
using test::ReplayedResponse;

QStringList texts(const std::vector<QByteArray>& payloads) {
    QStringList list;
    for (const QByteArray& payload : payloads) list.append(QString::fromUtf8(payload));
    return list;
}

struct LineCase {
    const char* name;
    LineExtract extract;
    QByteArray body;
    qsizetype pieceSize;
    QStringList expected;
};

class LineStreamTest : public testing::TestWithParam<LineCase> {};

TEST_P(LineStreamTest, YieldsThePayloadsOfTheBody) {
    const LineCase& c = GetParam();
    LoopbackHttpServer server;
    server.enqueue(ReplayedResponse::of(c.body, c.pieceSize));
    QNetworkAccessManager session;
    const auto drained = test::drain(lineStream(&session, jsonRequest(server.url("/v1/messages"), {}), c.extract));
    EXPECT_EQ(drained.errorMessage(), QString());
    EXPECT_EQ(texts(drained.values), c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, LineStreamTest,
    testing::Values(
        LineCase{"events", LineExtract::serverSentEvents,
                 "event: message_start\ndata: {\"a\":1}\n\n: keep-alive\nevent: ping\ndata:   {\"b\":2}  \n\n", 3,
                 {"{\"a\":1}", "{\"b\":2}"}},
        LineCase{"eventsOneBytePieces", LineExtract::serverSentEvents, "data: héllo wörld\n\ndata: ✓\n\n", 1,
                 {"héllo wörld", "✓"}},
        LineCase{"eventsCarriageReturns", LineExtract::serverSentEvents, "data: one\r\n\r\ndata: two\r\n\r\n", 5,
                 {"one", "two"}},
        LineCase{"emptyDataAndOtherFields", LineExtract::serverSentEvents,
                 "data:\ndata:    \nid: 7\nretry: 10\nDATA: shouting\n data: indented\ndata:x\n", 4, {"x"}},
        LineCase{"eventsLastLineWithoutNewline", LineExtract::serverSentEvents, "data: [DONE]", 2, {"[DONE]"}},
        LineCase{"delimited", LineExtract::newlineDelimited, "{\"a\":1}\n\n   \n  {\"b\":2}\t\n{\"c\":3}", 6,
                 {"{\"a\":1}", "{\"b\":2}", "{\"c\":3}"}},
        LineCase{"delimitedInOnePiece", LineExtract::newlineDelimited, "a\r\nb\r\n", 1000, {"a", "b"}},
        LineCase{"emptyBody", LineExtract::newlineDelimited, "", 1, {}}),
    [](const auto& param) { return std::string(param.param.name); });

struct ErrorCase {
    const char* name;
    int status;
    QByteArray body;
    QString expected;
};

class LineStreamErrorTest : public testing::TestWithParam<ErrorCase> {};

TEST_P(LineStreamErrorTest, TurnsAFailedStatusIntoTheProvidersWords) {
    const ErrorCase& c = GetParam();
    LoopbackHttpServer server;
    server.enqueue(ReplayedResponse::of(c.body, 100, c.status));
    QNetworkAccessManager session;
    const auto drained =
        test::drain(lineStream(&session, jsonRequest(server.url("/x"), {}), LineExtract::serverSentEvents));
    EXPECT_TRUE(drained.values.empty());
    EXPECT_EQ(drained.errorMessage(), c.expected);
    const auto* error = drained.errorAs<AIProviderError>();
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->kind(), AIProviderError::Kind::http);
    EXPECT_EQ(error->status(), c.status);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, LineStreamErrorTest,
    testing::Values(
        ErrorCase{"unauthorized", 401,
                  R"({"type":"error","error":{"type":"authentication_error","message":"invalid x-api-key"}})",
                  "The API key was not accepted (401)."},
        ErrorCase{"forbidden", 403, R"({"error":{"message":"no"}})", "The API key was not accepted (403)."},
        ErrorCase{"tooMany", 429, R"({"error":{"type":"rate_limit_error","message":"slow down"}})",
                  "Too many requests; try again in a moment."},
        ErrorCase{"serverErrorObject", 500, R"({"type":"error","error":{"type":"api_error","message":"Overloaded"}})",
                  "Overloaded"},
        ErrorCase{"errorAsText", 500, R"({"error":"model 'x' not found"})", "model 'x' not found"},
        ErrorCase{"topLevelMessage", 400, R"({"message":"bad request body"})", "bad request body"},
        ErrorCase{"errorObjectWithoutMessageFallsToTop", 400, R"({"error":{"code":3},"message":"top"})", "top"},
        ErrorCase{"plainText", 502, "  \n Bad gateway from proxy \n", "Bad gateway from proxy"},
        ErrorCase{"emptyBody", 500, "", "The provider returned an error (500)."},
        ErrorCase{"emptyMessage", 503, R"({"error":{"message":""}})", "The provider returned an error (503)."}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(LineStream, CutsALongErrorBodyBeforeLookingForItsMessage) {
    LoopbackHttpServer server;
    const QByteArray body = "{\"message\":\"" + QByteArray(40'000, 'a') + "\"}";
    server.enqueue(ReplayedResponse::of(body, 4096, 500));
    QNetworkAccessManager session;
    const auto drained =
        test::drain(lineStream(&session, jsonRequest(server.url("/x"), {}), LineExtract::serverSentEvents));
    // Cut at 32,000 bytes the JSON no longer parses, so the raw text is the message.
    EXPECT_EQ(drained.errorMessage(), QString::fromUtf8(body.left(errorBodyLimit)));
}

TEST(LineStream, ARefusedConnectionNamesTheHost) {
    QNetworkAccessManager session;
    const QUrl url(QStringLiteral("http://127.0.0.1:%1/v1/chat").arg(LoopbackHttpServer::closedPort()));
    const auto drained = test::drain(lineStream(&session, jsonRequest(url, {}), LineExtract::newlineDelimited));
    EXPECT_EQ(drained.errorMessage(), "Couldn't reach 127.0.0.1. Is the server running?");
    ASSERT_NE(drained.errorAs<AIProviderError>(), nullptr);
    EXPECT_EQ(drained.errorAs<AIProviderError>()->kind(), AIProviderError::Kind::cannotConnect);
}

TEST(LineStream, PostsSortedJsonWithTheGivenHeaders) {
    LoopbackHttpServer server;
    server.enqueue(ReplayedResponse::of("data: ok\n"));
    QNetworkAccessManager session;
    QJsonObject body{{"zeta", 1}, {"alpha", QJsonObject{{"b", true}, {"a", "x"}}}, {"mid", QJsonArray({3, 1})}};
    const auto request = jsonRequest(server.url("/v1/messages"), body, {{"x-api-key", "k-1"}, {"anthropic-version", "v"}});
    EXPECT_EQ(request.request.transferTimeout(), 180'000);
    const auto drained = test::drain(lineStream(&session, request, LineExtract::serverSentEvents));
    ASSERT_EQ(server.requests().size(), 1u);
    const auto& received = server.requests()[0];
    EXPECT_EQ(received.method, "POST");
    EXPECT_EQ(received.path, "/v1/messages");
    EXPECT_EQ(received.headers.value("content-type"), "application/json");
    EXPECT_EQ(received.headers.value("x-api-key"), "k-1");
    EXPECT_EQ(received.headers.value("anthropic-version"), "v");
    EXPECT_EQ(received.body, R"({"alpha":{"a":"x","b":true},"mid":[3,1],"zeta":1})");
    EXPECT_EQ(texts(drained.values), QStringList{"ok"});
}

QCoro::Task<int> takeThree(QNetworkAccessManager* session, QUrl url) {
    auto stream = lineStream(session, jsonRequest(url, {}), LineExtract::serverSentEvents);
    int seen = 0;
    for (auto it = co_await stream.begin(); it != stream.end() && seen < 3; co_await ++it) ++seen;
    co_return seen;
}

TEST(LineStream, StoppingEarlyAbortsTheRequestQuietly) {
    LoopbackHttpServer server;
    QByteArray body;
    for (int i = 0; i < 200; ++i) body += "data: line " + QByteArray::number(i) + "\n";
    server.enqueue(ReplayedResponse::of(body, 16));
    QNetworkAccessManager session;
    EXPECT_EQ(QCoro::waitFor(takeThree(&session, server.url("/x"))), 3);
    // The loop goes on turning without the abandoned reply touching freed state.
    QCoro::waitFor(QCoro::sleepFor(std::chrono::milliseconds(30)));
}

}  // namespace
}  // namespace vuro
