#include "base/Defaults.h"
#include "models/AIKeyStore.h"
#include "models/AnthropicProvider.h"
#include "models/OpenAICompatibleProvider.h"
#include "models/RoutingProvider.h"
#include "storage/InMemoryKeychain.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"
#include "support/StreamDrain.h"
#include "support/VendorReplies.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using test::LoopbackHttpServer;
using test::ReplayedResponse;
using test::anthropicReply;
using test::openAIReply;

template <typename T>
struct Outcome {
    std::optional<T> value;
    QString error;
};

template <typename T>
QCoro::Task<Outcome<T>> settle(QCoro::Task<T> task) {
    Outcome<T> outcome;
    try {
        outcome.value = co_await std::move(task);
    } catch (const Error& error) {
        outcome.error = error.message();
    }
    co_return outcome;
}

template <typename T>
Outcome<T> await(QCoro::Task<T> task) {
    return QCoro::waitFor(settle(std::move(task)));
}

class AssistantProvidersTest : public testing::Test {
protected:
    QJsonObject sent(size_t i = 0) const { return server.requests().at(i).json(); }

    LoopbackHttpServer server;
    QNetworkAccessManager session;
};

TEST_F(AssistantProvidersTest, AnthropicForcesTheCommandSchemaAndReadsJsonInsideProse) {
    server.enqueue(anthropicReply({"Sure: {\"action\":\"addTask\",\"note", "Hint\":\"Shopping\",\"text\":\"milk tomorrow\",", "\"title\":\"\"} hope that helps"}));
    const AnthropicProvider provider("claude-opus-5-5", "sk-ant", server.url("/v1/"), &session);
    const auto outcome = await(provider.generateCommand("Sys", "Request: add milk tomorrow"));

    EXPECT_EQ(outcome.error, QString());
    EXPECT_EQ(outcome.value, (GeneratedCommand{"addTask", "Shopping", "milk tomorrow", ""}));
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(server.requests()[0].path, "/v1/messages");
    EXPECT_EQ(server.requests()[0].headers.value("x-api-key"), "sk-ant");
    EXPECT_EQ(server.requests()[0].headers.value("anthropic-beta"), "server-side-fallback-2026-07-01");
    QJsonObject expected{{"model", "claude-opus-5-5"},
                         {"max_tokens", 16000},
                         {"stream", true},
                         {"system", "Sys"},
                         {"messages", QJsonArray{QJsonObject{{"role", "user"}, {"content", "Request: add milk tomorrow"}}}},
                         {"output_config", QJsonObject{{"effort", "low"},
                                                       {"format", QJsonObject{{"type", "json_schema"}, {"schema", StructuredOutput::command().schema}}}}},
                         {"fallbacks", "default"}};
    EXPECT_EQ(sent(), expected);
    const QJsonObject action = StructuredOutput::command().schema.value("properties").toObject().value("action").toObject();
    EXPECT_EQ(action.value("description").toString(), "addTask, createNote, appendToNote, completeTask or unknown");
}

TEST_F(AssistantProvidersTest, AnthropicStreamsTextPiecesAndRefuses) {
    server.enqueue(anthropicReply({"Hel", "lo ", "there"}));
    server.enqueue(anthropicReply({"I can"}, "refusal"));
    const AnthropicProvider provider("claude-3-7-sonnet", "k", server.url("/v1/"), &session);
    const auto text = test::drain(provider.streamText("", "Hi"));
    EXPECT_EQ(text.errorMessage(), QString());
    EXPECT_EQ(text.values, (std::vector<QString>{"Hel", "lo ", "there"}));
    const QJsonObject body = sent();
    EXPECT_FALSE(body.contains("system"));
    EXPECT_FALSE(body.contains("output_config"));
    EXPECT_FALSE(body.contains("fallbacks"));

    EXPECT_EQ(await(provider.extractTasks("", "x")).error, "The model declined this request.");
}

TEST_F(AssistantProvidersTest, OpenAIForcesTheTasksSchema) {
    server.enqueue(openAIReply({"{\"tasks\":[\"Buy milk\",", "\" \",\"Call Ann\"]}"}));
    const OpenAICompatibleProvider provider(AIProviderKind::openAI, "gpt-6.1-sol", "sk-o", server.url("/v1/"), &session);
    const auto outcome = await(provider.extractTasks("Find tasks.", "Buy milk and call Ann"));

    EXPECT_EQ(outcome.value, (QStringList{"Buy milk", "Call Ann"}));
    EXPECT_EQ(server.requests()[0].path, "/v1/chat/completions");
    EXPECT_EQ(server.requests()[0].headers.value("authorization"), "Bearer sk-o");
    QJsonObject expected{{"model", "gpt-6.1-sol"},
                         {"stream", true},
                         {"messages", QJsonArray{QJsonObject{{"role", "system"}, {"content", "Find tasks."}},
                                                 QJsonObject{{"role", "user"}, {"content", "Buy milk and call Ann"}}}},
                         {"response_format", QJsonObject{{"type", "json_schema"},
                                                         {"json_schema", QJsonObject{{"name", "ExtractedTasks"},
                                                                                     {"schema", StructuredOutput::tasks().schema},
                                                                                     {"strict", true}}}}}};
    EXPECT_EQ(sent(), expected);
}

TEST_F(AssistantProvidersTest, LocalServersGetTheInstructionInsteadOfASchema) {
    server.enqueue(openAIReply({"```json\n{\"action\":\"createNote\",\"title\":\"Books\"}\n```"}));
    server.enqueue(openAIReply({"{\"tasks\":[]}"}));
    const OpenAICompatibleProvider ollama(AIProviderKind::ollama, "qwen3", std::nullopt, server.url("/v1/"), &session);
    EXPECT_EQ(await(ollama.generateCommand("Sys", "new note: books")).value, (GeneratedCommand{"createNote", "", "", "Books"}));
    EXPECT_EQ(await(ollama.extractTasks("", "nothing")).value, QStringList());

    EXPECT_FALSE(server.requests()[0].headers.contains("authorization"));
    EXPECT_FALSE(sent(0).contains("response_format"));
    EXPECT_EQ(sent(0).value("messages").toArray()[0].toObject().value("content").toString(),
              "Sys\n\nReply only with JSON: {\"action\": \"addTask|createNote|appendToNote|completeTask|unknown\", "
              "\"noteHint\": \"\", \"text\": \"\", \"title\": \"\"}");
    EXPECT_EQ(sent(1).value("messages").toArray()[0].toObject(),
              (QJsonObject{{"role", "system"}, {"content", "Reply only with JSON: {\"tasks\": [\"…\"]}"}}));
    EXPECT_EQ(ollama.route(), AIRoute::localServer("127.0.0.1"));
}

TEST_F(AssistantProvidersTest, FailuresCarryTheProvidersWords) {
    server.enqueue(openAIReply({"I won't"}, "content_filter"));
    server.enqueue(openAIReply({"No JSON here, sorry."}));
    server.enqueue(ReplayedResponse::of(R"({"error":{"message":"Incorrect API key provided"}})", 40, 401));
    const OpenAICompatibleProvider gemini(AIProviderKind::gemini, "gemini-3.8-flash", "g", server.url("/v1beta/openai/"), &session);
    EXPECT_EQ(await(gemini.extractTasks("", "a")).error, "The model declined this request.");
    EXPECT_EQ(await(gemini.extractTasks("", "b")).error, "The provider sent an unexpected response.");
    EXPECT_EQ(await(gemini.generateCommand("", "c")).error, "The API key was not accepted (401).");
    EXPECT_EQ(server.requests()[0].path, "/v1beta/openai/chat/completions");

    const OpenAICompatibleProvider keyless(AIProviderKind::openAI, "m", std::nullopt, server.url("/v1/"), &session);
    EXPECT_EQ(keyless.availability(), AIAvailability::unavailable("Add your OpenAI API key in Settings → Assistant."));
    EXPECT_EQ(await(keyless.extractTasks("", "d")).error, "Add your OpenAI API key in Settings → Assistant.");
    const AnthropicProvider modelless("", "k", server.url("/v1/"), &session);
    EXPECT_EQ(modelless.availability(), AIAvailability::unavailable("Choose a model in Settings → Assistant."));
    EXPECT_EQ(test::drain(modelless.streamText("", "e")).errorMessage(), "Choose a model in Settings → Assistant.");
    EXPECT_EQ(server.requests().size(), 3u);
}

// Stands in for the on-device model, which this machine doesn't have: it answers from memory.
class RecordingOnDeviceProvider : public AIProvider {
public:
    QString name() const override { return "On-device model"; }
    AIRoute route() const override { return AIRoute::onDevice(); }
    AIAvailability availability() const override { return AIAvailability::available(); }
    QCoro::AsyncGenerator<QString> streamText(QString, QString prompt) const override { return echo(prompt); }
    QCoro::Task<QStringList> extractTasks(QString, QString prompt) const override { return list(prompt); }
    QCoro::Task<GeneratedCommand> generateCommand(QString, QString prompt) const override { return command(prompt); }

private:
    static QCoro::AsyncGenerator<QString> echo(QString prompt) { co_yield prompt; }
    static QCoro::Task<QStringList> list(QString prompt) { co_return QStringList{prompt}; }
    static QCoro::Task<GeneratedCommand> command(QString prompt) { co_return GeneratedCommand{"unknown", "", prompt, ""}; }
};

TEST_F(AssistantProvidersTest, RoutingFollowsTheChoiceInTheSettings) {
    QTemporaryDir folder;
    Defaults defaults(folder.filePath("Vuro.conf"), {});
    InMemoryKeychain keychain;
    AIKeyStore keys(keychain, true);
    keys.store(AIProviderKind::claude, "sk-ant");
    RecordingOnDeviceProvider onDevice;
    RoutingProvider routing(onDevice, [&] { return selectedAPIProvider(defaults, keys, session); });

    EXPECT_EQ(routing.name(), "On-device model");
    EXPECT_EQ(await(routing.extractTasks("", "walk the dog")).value, QStringList{"walk the dog"});
    for (const char* choice : {"apple", "cli.codex", "nonsense"}) {
        defaults.setValue("aiProvider", choice);
        EXPECT_EQ(routing.route(), AIRoute::onDevice()) << choice;
    }

    defaults.setValue("aiProvider", "claude");
    EXPECT_EQ(routing.route(), AIRoute::cloud("Anthropic"));
    EXPECT_TRUE(routing.availability().isAvailable());
    defaults.setValue("aiProvider", "gemini");
    EXPECT_EQ(routing.availability(), AIAvailability::unavailable("Add your Google API key in Settings → Assistant."));

    defaults.setValue("aiProvider", "lmStudio");
    defaults.setValue("aiModel.lmStudio", "qwen");
    defaults.setValue("aiBaseURL.lmStudio", server.url("/lm/v1/").toString());
    server.enqueue(openAIReply({"Hello", " there"}));
    const auto text = test::drain(routing.streamText("", "Hi"));
    EXPECT_EQ(text.values, (std::vector<QString>{"Hello", " there"}));
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(server.requests()[0].path, "/lm/v1/chat/completions");
    EXPECT_EQ(sent().value("model").toString(), "qwen");
}

}  // namespace
}  // namespace vuro
