// The Test of the assistant settings against providers on a loopback vendor server.
#include "settings/ProviderProbe.h"

#include "models/AnthropicProvider.h"
#include "models/OpenAICompatibleProvider.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"
#include "support/VendorReplies.h"

#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QTest>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using namespace std::chrono_literals;
using test::anthropicReply;
using test::openAIReply;
using test::ReplayedResponse;

QString outcome(const ProviderProbe& probe) {
    if (const auto* answered = std::get_if<ProviderProbe::Answered>(&probe.state())) return "answered: " + answered->reply;
    if (const auto* failed = std::get_if<ProviderProbe::Failed>(&probe.state())) return "failed: " + failed->sentence;
    return probe.isRunning() ? "running" : "idle";
}

struct ProviderProbeRun : testing::Test {
    test::LoopbackHttpServer server;
    QNetworkAccessManager session;
    ProviderProbe probe;

    QString run(const AIProvider& provider) {
        probe.start(provider);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !probe.isRunning(); }, 5000));
        return outcome(probe);
    }
};

TEST_F(ProviderProbeRun, SendsTheTestSentenceAndShowsTheReplyOrTheProvidersWords) {
    const AnthropicProvider claude("claude-opus-5-5", "sk-ant", server.url("/v1/"), &session);
    const OpenAICompatibleProvider openAI(AIProviderKind::openAI, "gpt-6.1-sol", "sk-o", server.url("/v1/"), &session);
    struct Case {
        const char* what;
        const AIProvider& provider;
        ReplayedResponse response;
        QString expected;
    };
    const Case cases[] = {
        {"Anthropic says OK", claude, anthropicReply({"O", "K"}), "answered: OK"},
        {"a chatty reply is one line", openAI, openAIReply({"OK!\n\nAnything else?"}), "answered: OK!  Anything else?"},
        {"an empty reply", openAI, openAIReply({"  ", "\n"}), "failed: The provider returned nothing."},
        {"a rejected key", claude, ReplayedResponse::of(R"({"error":{"message":"invalid x-api-key"}})", 50, 401),
         "failed: The API key was not accepted (401)."},
        {"too many requests", openAI, ReplayedResponse::of("{}", 10, 429), "failed: Too many requests; try again in a moment."},
        {"a server's own words", openAI, ReplayedResponse::of(R"({"error":{"message":"model not found"}})", 50, 404),
         "failed: model not found"},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(cases[i].what);
        server.enqueue(cases[i].response);
        EXPECT_EQ(run(cases[i].provider), cases[i].expected);
        ASSERT_EQ(server.requests().size(), i + 1);
    }
    EXPECT_EQ(server.requests()[0].json().value("messages").toArray()[0].toObject().value("content").toString(),
              "Reply with the single word: OK");
}

TEST_F(ProviderProbeRun, AProviderThatCantTakeRequestsSaysWhyWithoutSending) {
    const OpenAICompatibleProvider keyless(AIProviderKind::gemini, "gemini-3.8-flash", std::nullopt, server.url("/v1/"), &session);
    EXPECT_EQ(run(keyless), "failed: Add your Google API key in Settings → Assistant.");
    const OpenAICompatibleProvider modelless(AIProviderKind::lmStudio, "", std::nullopt, server.url("/v1/"), &session);
    EXPECT_EQ(run(modelless), "failed: Choose a model in Settings → Assistant.");
    EXPECT_TRUE(server.requests().empty());

    const OpenAICompatibleProvider absent(AIProviderKind::ollama, "llama3.2", std::nullopt,
                                          QUrl(QStringLiteral("http://127.0.0.1:%1/v1/").arg(test::LoopbackHttpServer::closedPort())),
                                          &session);
    EXPECT_EQ(run(absent), "failed: Couldn't reach 127.0.0.1. Is the server running?");
}

TEST_F(ProviderProbeRun, CancelAndRestartDropTheLateAnswer) {
    const OpenAICompatibleProvider openAI(AIProviderKind::openAI, "gpt-6.1-sol", "sk-o", server.url("/v1/"), &session);
    ReplayedResponse slow = openAIReply({"too late"});
    slow.pause = 50ms;
    server.enqueue(slow);
    probe.start(openAI);
    EXPECT_EQ(outcome(probe), "running");
    probe.cancel();
    EXPECT_EQ(outcome(probe), "idle");
    QTest::qWait(2000);
    EXPECT_EQ(outcome(probe), "idle") << "the cancelled answer arrived and must be ignored";

    server.enqueue(slow);
    server.enqueue(openAIReply({"OK"}));
    probe.start(openAI);
    EXPECT_EQ(run(openAI), "answered: OK");
    QTest::qWait(2000);
    EXPECT_EQ(outcome(probe), "answered: OK");
}

}  // namespace
}  // namespace vuro
