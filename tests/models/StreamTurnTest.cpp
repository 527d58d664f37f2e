#include "models/AIProviderError.h"
#include "models/AnthropicStreamTurn.h"
#include "models/OllamaStreamTurn.h"
#include "models/OpenAIStreamTurn.h"
#include "support/Printers.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

namespace vuro {
namespace {

template <typename Turn>
QList<bool> feed(Turn& turn, const QList<QByteArray>& lines) {
    QList<bool> changes;
    for (const QByteArray& line : lines) changes.append(turn.apply(line));
    return changes;
}

QJsonArray array(const char* json) { return QJsonDocument::fromJson(json).array(); }

TEST(AnthropicStreamTurn, SeparatesATextBlockAfterAToolBlockButNotAfterText) {
    AnthropicStreamTurn turn;
    const auto changes = feed(turn, {
        R"({"type":"message_start","message":{"id":"m"}})",
        R"({"type":"content_block_start","index":0,"content_block":{"type":"text","text":""}})",
        R"({"type":"content_block_delta","index":0,"delta":{"type":"text_delta","text":"One"}})",
        R"({"type":"content_block_start","index":1,"content_block":{"type":"text","text":""}})",
        R"({"type":"content_block_delta","index":1,"delta":{"type":"text_delta","text":" two"}})",
        R"({"type":"content_block_start","index":2,"content_block":{"type":"server_tool_use","id":"s1","name":"web_search","input":{}}})",
        R"({"type":"content_block_delta","index":2,"delta":{"type":"input_json_delta","partial_json":"{\"query\":"}})",
        R"({"type":"content_block_delta","index":2,"delta":{"type":"input_json_delta","partial_json":"\"rain\"}"}})",
        R"({"type":"content_block_stop","index":2})",
        R"({"type":"content_block_start","index":3,"content_block":{"type":"text","text":"Three"}})",
        R"({"type":"content_block_delta","index":3,"delta":{"type":"text_delta","text":"!"}})",
        R"({"type":"message_delta","delta":{"stop_reason":"end_turn"}})",
        R"({"type":"message_stop"})",
    });
    EXPECT_EQ(changes, (QList<bool>{false, false, true, false, true, false, false, false, false, false, true, false, false}));
    // The start block's own text belongs to the block but was never streamed as a delta.
    EXPECT_EQ(turn.text(), "One two\n\n!");
    EXPECT_EQ(turn.stopReason(), "end_turn");
    EXPECT_EQ(turn.blocks(), array(R"([{"type":"text","text":"One"},{"type":"text","text":" two"},
        {"type":"server_tool_use","id":"s1","name":"web_search","input":{"query":"rain"}},{"type":"text","text":"Three!"}])"));
    EXPECT_TRUE(turn.toolUses().isEmpty());
}

TEST(AnthropicStreamTurn, ReportsAServerToolOnce) {
    AnthropicStreamTurn turn;
    turn.apply(R"({"type":"content_block_start","index":0,"content_block":{"type":"server_tool_use","id":"s","name":"web_fetch"}})");
    EXPECT_EQ(turn.takeServerToolStart(), "web_fetch");
    EXPECT_EQ(turn.takeServerToolStart(), std::nullopt);
}

TEST(AnthropicStreamTurn, PadsMissingBlocksAndKeepsThinkingAndSignatures) {
    AnthropicStreamTurn turn;
    feed(turn, {
        R"({"type":"content_block_start","index":0,"content_block":{"type":"thinking","thinking":""}})",
        R"({"type":"content_block_delta","index":0,"delta":{"type":"thinking_delta","thinking":"Let me "}})",
        R"({"type":"content_block_delta","index":0,"delta":{"type":"thinking_delta","thinking":"see."}})",
        R"({"type":"content_block_delta","index":0,"delta":{"type":"signature_delta","signature":"first"}})",
        R"({"type":"content_block_delta","index":0,"delta":{"type":"signature_delta","signature":"sig=="}})",
        R"({"type":"content_block_delta","index":5,"delta":{"type":"text_delta","text":"lost"}})",
        R"({"type":"content_block_start","index":3,"content_block":{"type":"tool_use","id":"t1","name":"add_task","input":{}}})",
        R"({"type":"content_block_stop","index":3})",
        R"({"type":"content_block_stop","index":0})",
        R"({"type":"message_delta","delta":{"stop_reason":"tool_use"}})",
    });
    EXPECT_EQ(turn.blocks(), array(R"([{"type":"thinking","thinking":"Let me see.","signature":"sig=="},{},{},
        {"type":"tool_use","id":"t1","name":"add_task","input":{}}])"));
    ASSERT_EQ(turn.toolUses().size(), 1);
    EXPECT_EQ(turn.toolUses()[0].input, QJsonObject());
    EXPECT_EQ(turn.toolUses()[0].raw, "");
    EXPECT_EQ(turn.text(), "");
}

TEST(AnthropicStreamTurn, KeepsInvalidToolInputAsRawText) {
    AnthropicStreamTurn turn;
    feed(turn, {
        R"({"type":"content_block_start","index":0,"content_block":{"type":"tool_use","id":"t1","name":"a","input":{}}})",
        R"({"type":"content_block_delta","index":0,"delta":{"type":"input_json_delta","partial_json":"{\"note\": \"Sh"}})",
        R"({"type":"content_block_stop","index":0})",
        R"({"type":"content_block_start","index":1,"content_block":{"type":"tool_use","id":"t2","name":"b"}})",
        R"({"type":"content_block_delta","index":1,"delta":{"type":"input_json_delta","partial_json":"{\"n\":"}})",
        R"({"type":"content_block_delta","index":1,"delta":{"type":"input_json_delta","partial_json":"1}"}})",
        R"({"type":"content_block_stop","index":1})",
        R"({"type":"content_block_start","index":2,"content_block":{"type":"tool_use","name":"no id"}})",
    });
    const auto uses = turn.toolUses();
    ASSERT_EQ(uses.size(), 2);
    EXPECT_EQ(uses[0].input, std::nullopt);
    EXPECT_EQ(uses[0].raw, R"({"note": "Sh)");
    EXPECT_EQ(uses[1].input, QJsonDocument::fromJson(R"({"n":1})").object());
    EXPECT_EQ(uses[1].raw, R"({"n":1})");
    EXPECT_EQ(turn.blocks()[0].toObject().value("input"), QJsonObject());
}

TEST(AnthropicStreamTurn, IgnoresWhatIsNotAnEventAndFailsOnAnErrorEvent) {
    AnthropicStreamTurn turn;
    EXPECT_EQ(feed(turn, {"not json", "[1]", R"({"no":"type"})", R"({"type":3})", R"({"type":"ping"})",
                          R"({"type":"content_block_start","index":0,"content_block":"text"})"}),
              (QList<bool>{false, false, false, false, false, false}));
    EXPECT_TRUE(turn.blocks().isEmpty());
    try {
        turn.apply(R"({"type":"error","error":{"type":"overloaded_error","message":"Overloaded"}})");
        FAIL() << "no error";
    } catch (const AIProviderError& error) {
        EXPECT_EQ(error.message(), "Overloaded");
        EXPECT_EQ(error.status(), 0);
    }
    try {
        turn.apply(R"({"type":"error"})");
        FAIL() << "no error";
    } catch (const AIProviderError& error) {
        EXPECT_EQ(error.message(), "The provider returned an error (0).");
    }
}

TEST(OpenAIStreamTurn, AssemblesCallsFromPiecesInOrderOfFirstSight) {
    OpenAIStreamTurn turn;
    const auto changes = feed(turn, {
        R"({"choices":[{"index":0,"delta":{"role":"assistant","content":""}}]})",
        R"({"choices":[{"index":0,"delta":{"content":"Checking"}}]})",
        R"({"choices":[{"index":0,"delta":{"tool_calls":[{"index":1,"id":"call_b","type":"function","function":{"name":"read_note","arguments":""}}]}}]})",
        R"({"choices":[{"index":0,"delta":{"tool_calls":[{"index":0,"type":"function","function":{"name":"search","arguments":"{\"q"}}]}}]})",
        R"({"choices":[{"index":0,"delta":{"tool_calls":[{"index":1,"function":{"arguments":"{\"title\":"}}]}}]})",
        R"({"choices":[{"index":0,"delta":{"tool_calls":[{"index":0,"function":{"arguments":"\":\"x\"}"}},{"index":1,"function":{"arguments":"\"Plan\"}"}}]}}]})",
        R"({"choices":[{"index":0,"delta":{"tool_calls":[{"index":2,"function":{"arguments":"{}"}}]}}]})",
        R"({"choices":[{"index":0,"delta":{},"finish_reason":"tool_calls"}]})",
        "[DONE]",
        R"({"choices":[]})",
        R"({"object":"chat.completion.chunk"})",
    });
    EXPECT_EQ(changes, (QList<bool>{false, true, false, false, false, false, false, false, false, false, false}));
    EXPECT_EQ(turn.text(), "Checking");
    EXPECT_EQ(turn.finishReason(), "tool_calls");
    const auto calls = turn.calls();
    ASSERT_EQ(calls.size(), 2);  // the nameless third is left out
    EXPECT_EQ(calls[0].id, "call_b");
    EXPECT_EQ(calls[0].name, "read_note");
    EXPECT_EQ(calls[0].arguments, R"({"title":"Plan"})");
    EXPECT_EQ(calls[1].id, "call_0");
    EXPECT_EQ(calls[1].name, "search");
    EXPECT_EQ(calls[1].arguments, R"({"q":"x"})");
}

TEST(OpenAIStreamTurn, CallsWithoutIndexCountFromThoseKnown) {
    OpenAIStreamTurn turn;
    feed(turn, {
        R"({"choices":[{"delta":{"tool_calls":[{"function":{"name":"a","arguments":"{}"}}]}}]})",
        R"({"choices":[{"delta":{"tool_calls":[{"function":{"name":"b"}},{"function":{"name":"c"}}]}}]})",
    });
    const auto calls = turn.calls();
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(calls[0].id, "call_0");
    EXPECT_EQ(calls[1].id, "call_1");
    EXPECT_EQ(calls[2].id, "call_2");
    EXPECT_EQ(calls[2].name, "c");
}

TEST(OllamaStreamTurn, ReadsArgumentsAsObjectOrTextAndTheDoneReason) {
    OllamaStreamTurn turn;
    const auto changes = feed(turn, {
        R"({"model":"m","message":{"role":"assistant","content":"Hi"},"done":false})",
        R"({"message":{"role":"assistant","content":"","tool_calls":[
            {"function":{"name":"add_task","arguments":{"note":"Shop","count":2}}},
            {"id":"c7","function":{"name":"search","arguments":"{\"q\":\"x\"}"}},
            {"function":{"name":"","arguments":{}}},
            {"function":{"name":"bare"}}]},"done":false})",
        "not json",
        R"({"message":{"role":"assistant","content":""},"done":true})",
    });
    EXPECT_EQ(changes, (QList<bool>{true, false, false, false}));
    EXPECT_EQ(turn.text(), "Hi");
    EXPECT_EQ(turn.doneReason(), "stop");
    const auto& calls = turn.toolCalls();
    ASSERT_EQ(calls.size(), 3);
    EXPECT_EQ(calls[0].id, std::nullopt);
    EXPECT_EQ(calls[0].arguments, R"({"count":2,"note":"Shop"})");
    EXPECT_EQ(calls[1].id, "c7");
    EXPECT_EQ(calls[1].arguments, R"({"q":"x"})");
    EXPECT_EQ(calls[2].name, "bare");
    EXPECT_EQ(calls[2].arguments, "{}");

    OllamaStreamTurn cut;
    cut.apply(R"({"done":true,"done_reason":"length"})");
    EXPECT_EQ(cut.doneReason(), "length");
}

TEST(OllamaStreamTurn, AnErrorLineFailsWithItsText) {
    OllamaStreamTurn turn;
    try {
        turn.apply(R"({"error":"model \"llama9\" not found, try pulling it first"})");
        FAIL() << "no error";
    } catch (const AIProviderError& error) {
        EXPECT_EQ(error.status(), 500);
        EXPECT_EQ(error.message(), "model \"llama9\" not found, try pulling it first");
    }
}

}  // namespace
}  // namespace vuro
