#include "models/AnthropicChatModel.h"
#include "models/ChatModelTesting.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"

#include <QNetworkAccessManager>
#include <gmock/gmock.h>

namespace vuro {
namespace {

using test::LoopbackHttpServer;
using test::ReplayedResponse;
using test::ToolRecorder;

ReplayedResponse recording(const char* name) { return ReplayedResponse::recording(QStringLiteral("models/recordings/anthropic/") + name); }

ChatAttachment attachment(const QString& name, AgentAttachment::Kind kind, ChatAttachment::Content content) {
    AgentAttachment info;
    info.id = name;
    info.name = name;
    info.kind = kind;
    return {info, std::move(content)};
}

const AgentToolDefinition addTask{"add_task", "Adds a task to a note.",
                            {{"note", "The note's title", AgentToolDefinition::Parameter::Kind::string(), true}}, true, std::nullopt};

class AnthropicChatModelTest : public testing::Test {
protected:
    AnthropicChatModel model(const QString& name, bool web = false, std::optional<QString> key = QStringLiteral("sk-ant-test")) {
        return AnthropicChatModel(name, key, server.url("/v1/"), &session, web);
    }
    test::Drained<AgentEvent> run(const AnthropicChatModel& chat, QList<ChatTurn> turns, QList<AgentToolDefinition> tools = {}) {
        return test::drain(chat.streamReply(QStringLiteral("You are Vuro."), std::move(turns), std::move(tools), tools_.runTool()));
    }
    static QList<ChatTurn> ask(const QString& text) { return {ChatTurn{ChatTurn::Role::user, text, {}}}; }

    LoopbackHttpServer server;
    QNetworkAccessManager session;
    ToolRecorder tools_;
};

TEST_F(AnthropicChatModelTest, StreamsTextAcrossBlocksAndSendsTheExactRequest) {
    server.enqueue(recording("text-blocks.sse"));
    const QList<ChatTurn> turns{
        {ChatTurn::Role::user,
         "What's the weather?",
         {attachment("a\"b.png", AgentAttachment::Kind::image, ChatAttachment::Image{"PNGDATA", "image/png"}),
          attachment("doc.pdf", AgentAttachment::Kind::pdf, ChatAttachment::Pdf{"%PDF-1"}),
          attachment("notes \"x\".txt", AgentAttachment::Kind::text, ChatAttachment::Text{"line one"})}},
        {ChatTurn::Role::assistant, "Earlier answer.", {}},
        {ChatTurn::Role::user, "And now?", {attachment("late.m4a", AgentAttachment::Kind::audio, ChatAttachment::Pending{})}},
    };
    const auto drained = run(model("claude-sonnet-5-5", true), turns, {addTask});

    EXPECT_EQ(drained.errorMessage(), QString());
    EXPECT_THAT(drained.values, testing::ElementsAre(AgentEvent::text("Hello"), AgentEvent::text("Hello, wörld"),
                                                     AgentEvent::toolStarted("web_search"),
                                                     AgentEvent::text("Hello, wörld\n\nIt rains.")));
    ASSERT_EQ(server.requests().size(), 1u);
    const auto& request = server.requests()[0];
    EXPECT_EQ(request.path, "/v1/messages");
    EXPECT_EQ(request.headers.value("x-api-key"), "sk-ant-test");
    EXPECT_EQ(request.headers.value("anthropic-version"), "2026-10-21");
    EXPECT_EQ(request.headers.value("anthropic-beta"), "server-side-fallback-2026-07-01");
    EXPECT_EQ(request.headers.value("content-type"), "application/json");
    EXPECT_EQ(request.json(), test::object(R"({
        "model": "claude-sonnet-5-5", "max_tokens": 64000, "stream": true, "system": "You are Vuro.",
        "output_config": {"effort": "medium"}, "fallbacks": "default",
        "messages": [
            {"role": "user", "content": [
                {"type": "image", "source": {"type": "base64", "media_type": "image/png", "data": "UE5HREFUQQ=="}},
                {"type": "document", "title": "doc.pdf", "source": {"type": "base64", "media_type": "application/pdf", "data": "JVBERi0x"}},
                {"type": "text", "text": "<attachment name=\"notes 'x'.txt\">\nline one\n</attachment>\n\nWhat's the weather?"}]},
            {"role": "assistant", "content": "Earlier answer."},
            {"role": "user", "content": "<attachment name=\"late.m4a\">(its content isn't included here)</attachment>\n\nAnd now?"}],
        "tools": [
            {"name": "add_task", "description": "Adds a task to a note.", "eager_input_streaming": true,
             "input_schema": {"type": "object", "properties": {"note": {"type": "string", "description": "The note's title"}},
                              "required": ["note"], "additionalProperties": false}},
            {"type": "web_search_20260209", "name": "web_search", "max_uses": 5},
            {"type": "web_fetch_20260209", "name": "web_fetch", "max_uses": 5}]
    })"));
}

TEST_F(AnthropicChatModelTest, AnImageAloneIsSentWithoutATextBlock) {
    server.enqueue(recording("final-text.sse"));
    run(model("claude-3-7-sonnet"),
        {{ChatTurn::Role::user, "", {attachment("p.jpg", AgentAttachment::Kind::image, ChatAttachment::Image{"JPG", "image/jpeg"})}}});
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(server.requests()[0].json().value("messages").toArray(), test::array(R"([{"role":"user","content":[
        {"type":"image","source":{"type":"base64","media_type":"image/jpeg","data":"SlBH"}}]}])"));
}

struct ModelRuleCase {
    const char* model;
    bool fallback;
    bool effort;
    const char* searchType;
    const char* fetchType;
};

class AnthropicModelRulesTest : public AnthropicChatModelTest, public testing::WithParamInterface<ModelRuleCase> {};

TEST_P(AnthropicModelRulesTest, ChoosesHeadersBodyAndWebToolsByModel) {
    const ModelRuleCase& c = GetParam();
    server.enqueue(recording("final-text.sse"));
    run(model(c.model, true), ask("hi"));
    ASSERT_EQ(server.requests().size(), 1u);
    const auto& request = server.requests()[0];
    const QJsonObject body = request.json();
    EXPECT_EQ(request.headers.contains("anthropic-beta"), c.fallback);
    EXPECT_EQ(body.value("fallbacks"), c.fallback ? QJsonValue("default") : QJsonValue(QJsonValue::Undefined));
    EXPECT_EQ(body.value("output_config"), c.effort ? QJsonValue(test::object(R"({"effort":"medium"})")) : QJsonValue(QJsonValue::Undefined));
    const QJsonArray tools = body.value("tools").toArray();
    ASSERT_EQ(tools.size(), 2);
    EXPECT_EQ(tools[0].toObject().value("type").toString(), c.searchType);
    EXPECT_EQ(tools[1].toObject().value("type").toString(), c.fetchType);
}

INSTANTIATE_TEST_SUITE_P(
    Models, AnthropicModelRulesTest,
    testing::Values(ModelRuleCase{"claude-sonnet-5-5", true, true, "web_search_20260209", "web_fetch_20260209"},
                    ModelRuleCase{"claude-opus-5", true, true, "web_search_20260209", "web_fetch_20260209"},
                    ModelRuleCase{"claude-opus-5-1", false, true, "web_search_20260209", "web_fetch_20260209"},
                    ModelRuleCase{"claude-fable-5-1", true, true, "web_search_20250305", "web_fetch_20250910"},
                    ModelRuleCase{"claude-haiku-5-2", false, true, "web_search_20250305", "web_fetch_20250910"},
                    ModelRuleCase{"claude-opus-4-7", false, true, "web_search_20260209", "web_fetch_20260209"},
                    ModelRuleCase{"claude-sonnet-4-5", false, false, "web_search_20250305", "web_fetch_20250910"},
                    ModelRuleCase{"claude-3-7-sonnet", false, false, "web_search_20250305", "web_fetch_20250910"}));

TEST_F(AnthropicChatModelTest, RunsToolsAndSendsTheBlocksBackAsReceived) {
    server.enqueue(recording("tool-use.sse"));
    server.enqueue(recording("final-text.sse"));
    tools_.answer = [](const AgentToolCall&) {
        return AgentToolOutcome{"Added milk to Shopping.", test::action("a1"), {test::action("a2")}};
    };
    const auto drained = run(model("claude-3-7-sonnet"), ask("Add milk"), {addTask});

    EXPECT_EQ(drained.errorMessage(), QString());
    EXPECT_THAT(drained.values,
                testing::ElementsAre(AgentEvent::text("Let me add that."), AgentEvent::toolStarted("add_task"),
                                     AgentEvent::action(test::action("a1")), AgentEvent::action(test::action("a2")),
                                     AgentEvent::text("Let me add that.\n\nDone.")));
    ASSERT_EQ(tools_.calls.size(), 1u);
    EXPECT_EQ(tools_.calls[0], (AgentToolCall{"toolu_01A", "add_task", {{"note", "Shopping"}, {"text", "milk"}, {"urgent", "true"}, {"count", "2"}}}));
    ASSERT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(server.requests()[1].json().value("messages").toArray(), test::array(R"([
        {"role": "user", "content": "Add milk"},
        {"role": "assistant", "content": [
            {"type": "thinking", "thinking": "The user wants milk on the list.", "signature": "EqQBCgIYAhIM1gbcDa9GJwZA2b3h"},
            {"type": "text", "text": "Let me add that."},
            {"type": "tool_use", "id": "toolu_01A", "name": "add_task",
             "input": {"note": "Shopping", "text": "milk", "urgent": true, "count": 2, "extra": null}}]},
        {"role": "user", "content": [{"type": "tool_result", "tool_use_id": "toolu_01A", "content": "Added milk to Shopping."}]}
    ])"));
}

TEST_F(AnthropicChatModelTest, AnswersMalformedToolInputWithAnErrorResult) {
    server.enqueue(recording("malformed-tool.sse"));
    server.enqueue(recording("final-text.sse"));
    const auto drained = run(model("claude-3-7-sonnet"), ask("Add milk"));

    EXPECT_THAT(drained.values, testing::ElementsAre(AgentEvent::toolStarted("list_notes"), AgentEvent::text("Done.")));
    ASSERT_EQ(tools_.calls.size(), 1u);
    EXPECT_EQ(tools_.calls[0], (AgentToolCall{"toolu_empty", "list_notes", {}}));
    ASSERT_EQ(server.requests().size(), 2u);
    const QJsonArray messages = server.requests()[1].json().value("messages").toArray();
    ASSERT_EQ(messages.size(), 3);
    EXPECT_EQ(messages[1].toObject().value("content").toArray()[0].toObject().value("input"), QJsonObject());
    EXPECT_EQ(messages[2].toObject(), test::object(R"({"role": "user", "content": [
        {"type": "tool_result", "tool_use_id": "toolu_bad", "is_error": true, "content": "Invalid JSON input, try again: {\"note\": \"Sho"},
        {"type": "tool_result", "tool_use_id": "toolu_empty", "content": "ran list_notes"}]})"));
}

TEST_F(AnthropicChatModelTest, ContinuesAPausedTurnFourTimes) {
    for (int i = 0; i < 6; ++i) server.enqueue(recording("pause-turn.sse"));
    const auto drained = run(model("claude-opus-5-5", true), ask("Research this"));

    EXPECT_EQ(drained.errorMessage(), QString());
    ASSERT_EQ(server.requests().size(), 5u);  // the fifth pause ends the run
    EXPECT_EQ(server.requests()[4].json().value("messages").toArray().size(), 5);
    EXPECT_EQ(server.requests()[1].json().value("messages").toArray()[1].toObject(), test::object(R"({"role":"assistant","content":[
        {"type":"text","text":"Searching"},
        {"type":"server_tool_use","id":"srvtoolu_p","name":"web_fetch","input":{"url":"https://example.org"}}]})"));
    ASSERT_EQ(drained.values.size(), 10u);
    EXPECT_EQ(drained.values[2], AgentEvent::text("Searching\n\nSearching"));
    EXPECT_EQ(drained.values[3], AgentEvent::toolStarted("web_fetch"));
    EXPECT_EQ(drained.values[8], AgentEvent::text("Searching\n\nSearching\n\nSearching\n\nSearching\n\nSearching"));
    EXPECT_TRUE(tools_.calls.empty());
}

struct FailureCase {
    const char* name;
    std::function<ReplayedResponse()> response;
    std::vector<AgentEvent> events;
    QString words;
};

class AnthropicFailureTest : public AnthropicChatModelTest, public testing::WithParamInterface<FailureCase> {};

TEST_P(AnthropicFailureTest, EndsTheStreamWithTheProvidersWords) {
    server.enqueue(GetParam().response());
    const auto drained = run(model("claude-opus-5-5"), ask("hi"));
    EXPECT_EQ(drained.values, GetParam().events);
    EXPECT_EQ(drained.errorMessage(), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, AnthropicFailureTest,
    testing::Values(
        FailureCase{"refusal", [] { return recording("refusal.sse"); }, {AgentEvent::text("I can")}, "The model declined this request."},
        FailureCase{"errorEvent", [] { return recording("error-event.sse"); }, {AgentEvent::text("Par")}, "Overloaded"},
        FailureCase{"unauthorized",
                    [] { return ReplayedResponse::of(R"({"type":"error","error":{"type":"authentication_error","message":"invalid x-api-key"}})", 50, 401); },
                    {}, "The API key was not accepted (401)."},
        FailureCase{"rateLimited",
                    [] { return ReplayedResponse::of(R"({"type":"error","error":{"type":"rate_limit_error","message":"Number of request tokens has exceeded your per-minute rate limit"}})", 50, 429); },
                    {}, "Too many requests; try again in a moment."},
        FailureCase{"serverError",
                    [] { return ReplayedResponse::of(R"({"type":"error","error":{"type":"api_error","message":"Internal server error"}})", 50, 500); },
                    {}, "Internal server error"}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(AnthropicChatModelTest, ARefusedConnectionNamesTheHost) {
    const QUrl base(QStringLiteral("http://127.0.0.1:%1/v1/").arg(LoopbackHttpServer::closedPort()));
    const auto drained = test::drain(AnthropicChatModel("claude-opus-5-5", "k", base, &session, false).streamReply("", ask("hi"), {}, tools_.runTool()));
    EXPECT_EQ(drained.errorMessage(), "Couldn't reach 127.0.0.1. Is the server running?");
}

TEST_F(AnthropicChatModelTest, AMissingKeyOrModelFailsBeforeAnyRequest) {
    const struct {
        std::optional<QString> key;
        QString model;
        QString words;
    } cases[] = {{std::nullopt, "claude-opus-5-5", "Add your Anthropic API key in Settings → Assistant."},
                 {QString(), "", "Add your Anthropic API key in Settings → Assistant."},
                 {QStringLiteral("k"), "", "Choose a model in Settings → Assistant."}};
    for (const auto& c : cases) {
        const AnthropicChatModel chat = model(c.model, false, c.key);
        EXPECT_EQ(chat.availabilityProblem(), c.words);
        EXPECT_EQ(run(chat, ask("hi")).errorMessage(), c.words);
    }
    EXPECT_TRUE(server.requests().empty());
    EXPECT_EQ(model("claude-opus-5-5").availabilityProblem(), std::nullopt);
    EXPECT_EQ(model("x").route(), AIRoute::cloud("Anthropic"));
}

TEST_F(AnthropicChatModelTest, TheSixthResponsesToolsRunThenTheRunFails) {
    for (int i = 0; i < 7; ++i) server.enqueue(recording("any-tool.sse"));
    tools_.answer = [](const AgentToolCall&) { return AgentToolOutcome{"read", test::action("done"), {}}; };
    const auto drained = run(model("claude-opus-5-5"), ask("Loop"));

    EXPECT_EQ(drained.errorMessage(), "The agent kept calling tools without answering.");
    EXPECT_EQ(tools_.calls.size(), 6u);
    EXPECT_EQ(server.requests().size(), 6u);
    EXPECT_EQ(drained.values.size(), 12u);  // toolStarted and the action of each round stand
    EXPECT_EQ(drained.values.back(), AgentEvent::action(test::action("done")));
}

}  // namespace
}  // namespace vuro
