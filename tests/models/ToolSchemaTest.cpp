#include "models/ToolSchema.h"
#include "support/Printers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

namespace vuro {
namespace {

QJsonObject parse(const char* json) { return QJsonDocument::fromJson(json).object(); }

TEST(ToolInputSchema, BuildsAnObjectSchemaFromTextParameters) {
    AgentToolDefinition spec{"add_task", "Adds a task.",
                       {{"note", "The note's title", AgentToolDefinition::Parameter::Kind::string(), true},
                        {"when", "When", AgentToolDefinition::Parameter::Kind::choice({"today", "later"}), false}},
                       true, std::nullopt};
    EXPECT_EQ(toolInputSchema(spec), parse(R"({"type":"object","additionalProperties":false,"required":["note"],
        "properties":{"note":{"type":"string","description":"The note's title"},
                      "when":{"type":"string","description":"When","enum":["today","later"]}}})"));
}

TEST(ToolInputSchema, ANoParameterToolStillHasAnObjectSchema) {
    EXPECT_EQ(toolInputSchema(AgentToolDefinition{"list", "", {}, false, std::nullopt}),
              parse(R"({"type":"object","properties":{},"required":[],"additionalProperties":false})"));
}

struct SchemaCase {
    const char* name;
    const char* serverSchema;
    const char* expected;
};

class ServerSchemaTest : public testing::TestWithParam<SchemaCase> {};

TEST_P(ServerSchemaTest, TakesAServersSchemaWithOnlyTheNeededRepairs) {
    AgentToolDefinition spec{"mcp_tool", "", {{"ignored", "", {}, true}}, false, QString::fromUtf8(GetParam().serverSchema)};
    EXPECT_EQ(toolInputSchema(spec), parse(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Schemas, ServerSchemaTest,
    testing::Values(
        SchemaCase{"dropsSchemaKeyAndAddsType", R"({"$schema":"http://json-schema.org/draft-07/schema#","properties":{"q":{"type":"number"}}})",
                   R"({"type":"object","properties":{"q":{"type":"number"}}})"},
        SchemaCase{"addsProperties", R"({"type":"object","required":[]})", R"({"type":"object","required":[],"properties":{}})"},
        SchemaCase{"keepsWhatTheServerWrote", R"({"type":"object","properties":{},"additionalProperties":true,"x-extra":[1]})",
                   R"({"type":"object","properties":{},"additionalProperties":true,"x-extra":[1]})"},
        SchemaCase{"notAnObjectFallsBackToParameters", R"([1,2])",
                   R"({"type":"object","properties":{"ignored":{"type":"string","description":""}},"required":["ignored"],"additionalProperties":false})"},
        SchemaCase{"brokenFallsBackToParameters", R"({"type":)",
                   R"({"type":"object","properties":{"ignored":{"type":"string","description":""}},"required":["ignored"],"additionalProperties":false})"}),
    [](const auto& param) { return std::string(param.param.name); });

struct ArgumentsCase {
    const char* name;
    const char* json;
    bool valid;
    QMap<QString, QString> expected;
};

class ToolArgumentsTest : public testing::TestWithParam<ArgumentsCase> {};

TEST_P(ToolArgumentsTest, TurnsArgumentTextIntoTextArguments) {
    const auto parsed = toolArguments(QString::fromUtf8(GetParam().json));
    ASSERT_EQ(parsed.has_value(), GetParam().valid);
    if (parsed) {
        EXPECT_EQ(textArguments(*parsed), GetParam().expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, ToolArgumentsTest,
    testing::Values(
        ArgumentsCase{"blanksAreAnEmptyObject", " \n\t ", true, {}},
        ArgumentsCase{"empty", "", true, {}},
        ArgumentsCase{"everyKind",
                      R"({"s":"text","t":true,"f":false,"i":3,"d":2.5,"big":1e21,"neg":-0.1,"n":null,"a":[1,"x"],"o":{"k":{"z":1}}})",
                      true,
                      {{"s", "text"}, {"t", "true"}, {"f", "false"}, {"i", "3"}, {"d", "2.5"}, {"big", "1e+21"},
                       {"neg", "-0.1"}, {"a", R"([1,"x"])"}, {"o", R"({"k":{"z":1}})"}}},
        ArgumentsCase{"surroundingBlanks", "  {\"q\":\"milk\"}\n", true, {{"q", "milk"}}},
        ArgumentsCase{"array", "[1]", false, {}},
        ArgumentsCase{"string", "\"x\"", false, {}},
        ArgumentsCase{"truncated", "{\"q\":\"mi", false, {}},
        ArgumentsCase{"trailingGarbage", "{} {}", false, {}}),
    [](const auto& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace vuro
