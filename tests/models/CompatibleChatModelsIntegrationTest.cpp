#include "models/ChatModelTesting.h"
#include "models/OllamaChatModel.h"
#include "models/OpenAICompatibleChatModel.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"

#include <QNetworkAccessManager>
#include <gmock/gmock.h>

namespace vuro {
namespace {

using test::LoopbackHttpServer;
using test::ReplayedResponse;
using test::ToolRecorder;

ReplayedResponse recording(const QString& name) { return ReplayedResponse::recording(QStringLiteral("models/recordings/") + name); }

ChatAttachment attachment(const QString& name, AgentAttachment::Kind kind, ChatAttachment::Content content) {
    AgentAttachment info;
    info.id = name;
    info.name = name;
    info.kind = kind;
    return {info, std::move(content)};
}

const AgentToolDefinition addTask{"add_task", "Adds a task.", {{"note", "Title", AgentToolDefinition::Parameter::Kind::string(), true}}, true, std::nullopt};
const char* addTaskJson =
    R"({"type":"function","function":{"name":"add_task","description":"Adds a task.","parameters":{"type":"object",
        "properties":{"note":{"type":"string","description":"Title"}},"required":["note"],"additionalProperties":false}}})";

class CompatibleChatModelsTest : public testing::Test {
protected:
    test::Drained<AgentEvent> run(const ChatModel& chat, QList<ChatTurn> turns, QList<AgentToolDefinition> tools = {}) {
        return test::drain(chat.streamReply(QStringLiteral("Sys"), std::move(turns), std::move(tools), tools_.runTool()));
    }
    static QList<ChatTurn> ask(const QString& text) { return {ChatTurn{ChatTurn::Role::user, text, {}}}; }
    QJsonArray sentMessages(size_t request) const { return server.requests().at(request).json().value("messages").toArray(); }

    LoopbackHttpServer server;
    QNetworkAccessManager session;
    ToolRecorder tools_;
};

TEST_F(CompatibleChatModelsTest, OpenAIAssemblesCallsFromPiecesAndRunsThemInOrderFirstSeen) {
    server.enqueue(recording("openai/tool-calls.sse"));
    server.enqueue(recording("openai/final.sse"));
    const OpenAICompatibleChatModel chat(AIProviderKind::openAI, "gpt-6.1-sol", "sk-1", server.url("/v1/"), &session);
    const auto drained = run(chat,
                             {{ChatTurn::Role::user,
                               "Find milk",
                               {attachment("a.png", AgentAttachment::Kind::image, ChatAttachment::Image{"PNGDATA", "image/png"}),
                                attachment("doc.pdf", AgentAttachment::Kind::pdf, ChatAttachment::Pdf{"%PDF-1"})}}},
                             {addTask});

    EXPECT_EQ(drained.errorMessage(), QString());
    EXPECT_THAT(drained.values, testing::ElementsAre(AgentEvent::text("Checking"), AgentEvent::toolStarted("read_note"),
                                                     AgentEvent::toolStarted("search_notes"), AgentEvent::text("Checking\n\nAll "),
                                                     AgentEvent::text("Checking\n\nAll done.")));
    ASSERT_EQ(tools_.calls.size(), 2u);
    EXPECT_EQ(tools_.calls[0], (AgentToolCall{"call_b", "read_note", {{"title", "Plan"}}}));
    EXPECT_EQ(tools_.calls[1], (AgentToolCall{"call_0", "search_notes", {{"query", "milk"}, {"limit", "3"}}}));

    ASSERT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(server.requests()[0].path, "/v1/chat/completions");
    EXPECT_EQ(server.requests()[0].headers.value("authorization"), "Bearer sk-1");
    EXPECT_EQ(server.requests()[0].json(), test::object(QByteArray(R"({"model":"gpt-6.1-sol","stream":true,"messages":[
        {"role":"system","content":"Sys"},
        {"role":"user","content":[{"type":"image_url","image_url":{"url":"data:image/png;base64,UE5HREFUQQ=="}},
            {"type":"file","file":{"filename":"doc.pdf","file_data":"data:application/pdf;base64,JVBERi0x"}},
            {"type":"text","text":"Find milk"}]}],"tools":[)") + addTaskJson + "]}"));
    EXPECT_EQ(sentMessages(1), test::array(R"([
        {"role":"system","content":"Sys"},
        {"role":"user","content":[{"type":"image_url","image_url":{"url":"data:image/png;base64,UE5HREFUQQ=="}},
            {"type":"file","file":{"filename":"doc.pdf","file_data":"data:application/pdf;base64,JVBERi0x"}},
            {"type":"text","text":"Find milk"}]},
        {"role":"assistant","content":"Checking","tool_calls":[
            {"id":"call_b","type":"function","function":{"name":"read_note","arguments":"{\"title\": \"Plan\"}"}},
            {"id":"call_0","type":"function","function":{"name":"search_notes","arguments":"{\"query\": \"milk\", \"limit\": 3}"}}]},
        {"role":"tool","tool_call_id":"call_b","content":"ran read_note"},
        {"role":"tool","tool_call_id":"call_0","content":"ran search_notes"}])"));
}

TEST_F(CompatibleChatModelsTest, OpenAICallsCutOffByTheLengthLimitNeverRun) {
    server.enqueue(recording("openai/length.sse"));
    const auto drained = run(OpenAICompatibleChatModel(AIProviderKind::openAI, "m", "k", server.url("/v1/"), &session), ask("Go"));
    EXPECT_EQ(drained.errorMessage(), QString());
    EXPECT_EQ(drained.values, std::vector{AgentEvent::text("Long answer")});
    EXPECT_TRUE(tools_.calls.empty());
    EXPECT_EQ(server.requests().size(), 1u);
}

TEST_F(CompatibleChatModelsTest, OpenAIInvalidArgumentsGoBackToTheModel) {
    server.enqueue(recording("openai/bad-arguments.sse"));
    server.enqueue(recording("openai/final.sse"));
    const auto drained = run(OpenAICompatibleChatModel(AIProviderKind::openAI, "m", "k", server.url("/v1/"), &session), ask("Go"));
    EXPECT_EQ(drained.values, (std::vector{AgentEvent::text("All "), AgentEvent::text("All done.")}));
    EXPECT_TRUE(tools_.calls.empty());
    ASSERT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(sentMessages(1), test::array(R"([{"role":"system","content":"Sys"},{"role":"user","content":"Go"},
        {"role":"assistant","content":null,"tool_calls":[{"id":"call_0","type":"function","function":{"name":"add_task","arguments":"{oops"}}]},
        {"role":"tool","tool_call_id":"call_0","content":"Invalid JSON arguments, try again: {oops"}])"));
}

TEST_F(CompatibleChatModelsTest, KindsDifferInBaseKeyRouteAndAttachments) {
    server.enqueue(recording("openai/final.sse"));
    server.enqueue(recording("openai/final.sse"));
    const OpenAICompatibleChatModel lmStudio(AIProviderKind::lmStudio, "qwen", std::nullopt, server.url("/v1/"), &session);
    const OpenAICompatibleChatModel gemini(AIProviderKind::gemini, "gemini-3.8-flash", "g-key", server.url("/v1beta/openai/"), &session);
    EXPECT_EQ(run(lmStudio, ask("a")).errorMessage(), QString());
    EXPECT_EQ(run(gemini, ask("b")).errorMessage(), QString());
    ASSERT_EQ(server.requests().size(), 2u);
    EXPECT_FALSE(server.requests()[0].headers.contains("authorization"));
    EXPECT_EQ(server.requests()[1].path, "/v1beta/openai/chat/completions");
    EXPECT_EQ(server.requests()[1].headers.value("authorization"), "Bearer g-key");

    EXPECT_EQ(lmStudio.route(), AIRoute::localServer("127.0.0.1"));
    EXPECT_EQ(gemini.route(), AIRoute::cloud("Google"));
    EXPECT_EQ(lmStudio.nativeAttachments(), QList<AgentAttachment::Kind>{AgentAttachment::Kind::image});
    EXPECT_EQ(OpenAICompatibleChatModel(AIProviderKind::openAI, "m", "k", QUrl(), &session).nativeAttachments(),
              (QList<AgentAttachment::Kind>{AgentAttachment::Kind::image, AgentAttachment::Kind::pdf}));
    EXPECT_EQ(lmStudio.availabilityProblem(), std::nullopt);
    EXPECT_EQ(OpenAICompatibleChatModel(AIProviderKind::gemini, "m", "", QUrl(), &session).availabilityProblem(),
              "Add your Google API key in Settings → Assistant.");
    EXPECT_EQ(run(OpenAICompatibleChatModel(AIProviderKind::openAI, "m", std::nullopt, server.url("/v1/"), &session), ask("c")).errorMessage(),
              "Add your OpenAI API key in Settings → Assistant.");
    EXPECT_EQ(run(OpenAICompatibleChatModel(AIProviderKind::lmStudio, "", std::nullopt, server.url("/v1/"), &session), ask("c")).errorMessage(),
              "Choose a model in Settings → Assistant.");
    EXPECT_EQ(server.requests().size(), 2u);
}

TEST_F(CompatibleChatModelsTest, OllamaTakesArgumentsAsObjectOrText) {
    server.enqueue(recording("ollama/tools.ndjson"));
    server.enqueue(recording("ollama/final.ndjson"));
    const OllamaChatModel chat("qwen3", server.url("/v1/"), &session);
    const auto drained = run(chat,
                             {{ChatTurn::Role::user,
                               "Add milk",
                               {attachment("a.png", AgentAttachment::Kind::image, ChatAttachment::Image{"PNGDATA", "image/png"})}}},
                             {addTask});

    EXPECT_EQ(drained.errorMessage(), QString());
    EXPECT_THAT(drained.values, testing::ElementsAre(AgentEvent::text("Look"), AgentEvent::text("Looking"),
                                                     AgentEvent::toolStarted("add_task"), AgentEvent::toolStarted("search_notes"),
                                                     AgentEvent::text("Looking\n\nAdded "), AgentEvent::text("Looking\n\nAdded milk.")));
    ASSERT_EQ(tools_.calls.size(), 2u);
    EXPECT_EQ(tools_.calls[0], (AgentToolCall{"", "add_task", {{"note", "Shopping"}, {"text", "milk"}, {"urgent", "true"}}}));
    EXPECT_EQ(tools_.calls[1], (AgentToolCall{"call_t", "search_notes", {{"query", "milk"}}}));

    ASSERT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(server.requests()[0].path, "/api/chat");
    EXPECT_FALSE(server.requests()[0].headers.contains("authorization"));
    EXPECT_EQ(server.requests()[0].json(), test::object(QByteArray(R"({"model":"qwen3","stream":true,"options":{"num_ctx":16384},
        "messages":[{"role":"system","content":"Sys"},{"role":"user","content":"Add milk","images":["UE5HREFUQQ=="]}],"tools":[)") +
                                                        addTaskJson + "]}"));
    EXPECT_EQ(sentMessages(1), test::array(R"([{"role":"system","content":"Sys"},
        {"role":"user","content":"Add milk","images":["UE5HREFUQQ=="]},
        {"role":"assistant","content":"Looking","tool_calls":[
            {"type":"function","function":{"name":"add_task","arguments":{"note":"Shopping","text":"milk","urgent":true}}},
            {"type":"function","id":"call_t","function":{"name":"search_notes","arguments":{"query":"milk"}}},
            {"type":"function","function":{"name":"bad","arguments":{}}}]},
        {"role":"tool","tool_name":"add_task","content":"ran add_task"},
        {"role":"tool","tool_name":"search_notes","tool_call_id":"call_t","content":"ran search_notes"},
        {"role":"tool","tool_name":"bad","content":"Invalid JSON arguments, try again: {not json"}])"));
}

TEST_F(CompatibleChatModelsTest, OllamaAnErrorLineEndsTheRun) {
    server.enqueue(recording("ollama/error.ndjson"));
    const auto drained = run(OllamaChatModel("qwen3", server.url("/"), &session), ask("Hi"));
    EXPECT_EQ(drained.values, std::vector{AgentEvent::text("Hal")});
    EXPECT_EQ(drained.errorMessage(), "an error was encountered while running the model: unexpected EOF");
    EXPECT_EQ(run(OllamaChatModel("", server.url("/"), &session), ask("Hi")).errorMessage(), "Choose a model in Settings → Assistant.");
}

TEST(OllamaChatModel, FindsTheChatEndpointUnderItsBase) {
    const std::pair<const char*, const char*> cases[] = {
        {"http://localhost:11434/v1/", "http://localhost:11434/api/chat"},
        {"http://gpu.lan/ollama/v1/", "http://gpu.lan/ollama/api/chat"},
        {"http://gpu.lan/ollama", "http://gpu.lan/ollama/api/chat"},
        {"http://gpu.lan:8080/", "http://gpu.lan:8080/api/chat"},
        {"http://gpu.lan/v1x/", "http://gpu.lan/v1x/api/chat"},
    };
    for (const auto& [base, expected] : cases) EXPECT_EQ(OllamaChatModel::chatURL(QUrl(base)).toString(), expected) << base;
    EXPECT_EQ(OllamaChatModel("m", QUrl("http://gpu.lan:11434/v1/"), nullptr).route(), AIRoute::localServer("gpu.lan"));
}

struct RoundLimitCase {
    const char* name;
    const char* recording;
    std::function<std::unique_ptr<ChatModel>(QUrl, QNetworkAccessManager*)> make;
};

class RoundLimitTest : public CompatibleChatModelsTest, public testing::WithParamInterface<RoundLimitCase> {};

TEST_P(RoundLimitTest, TheSixthResponsesToolsRunThenTheRunFails) {
    for (int i = 0; i < 7; ++i) server.enqueue(recording(GetParam().recording));
    const auto drained = run(*GetParam().make(server.url("/v1/"), &session), ask("Loop"));
    EXPECT_EQ(drained.errorMessage(), "The agent kept calling tools without answering.");
    EXPECT_EQ(tools_.calls.size(), 6u);
    EXPECT_EQ(server.requests().size(), 6u);
    EXPECT_EQ(drained.values.size(), 6u);
}

INSTANTIATE_TEST_SUITE_P(
    BackEnds, RoundLimitTest,
    testing::Values(RoundLimitCase{"openAI", "openai/any-tool.sse",
                                   [](QUrl base, QNetworkAccessManager* session) -> std::unique_ptr<ChatModel> {
                                       return std::make_unique<OpenAICompatibleChatModel>(AIProviderKind::openAI, "m", "k", base, session);
                                   }},
                    RoundLimitCase{"ollama", "ollama/any-tool.ndjson",
                                   [](QUrl base, QNetworkAccessManager* session) -> std::unique_ptr<ChatModel> {
                                       return std::make_unique<OllamaChatModel>("m", base, session);
                                   }}),
    [](const auto& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace vuro
