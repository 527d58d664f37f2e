#include "agents/AIProviderKind.h"
#include "agents/AgentToolCall.h"
#include "agents/AgentToolDefinition.h"
#include "agents/CLIToolKind.h"
#include "agents/NoteAccess.h"
#include "support/Printers.h"

#include <QSet>
#include <gtest/gtest.h>

namespace vuro {
namespace {

AgentToolDefinition listTasks() {
    return {QStringLiteral("list_tasks"),
            QStringLiteral("List tasks."),
            {{QStringLiteral("when"), QStringLiteral("Which tasks"),
              AgentToolDefinition::Parameter::Kind::choice({QStringLiteral("open"), QStringLiteral("today")}), true}},
            false,
            std::nullopt};
}

TEST(AgentToolDefinitionTest, EveryFieldTakesPartInEqualityAndHashing) {
    const AgentToolDefinition base = listTasks();
    const std::vector<std::pair<const char*, std::function<void(AgentToolDefinition&)>>> changes = {
        {"name", [](AgentToolDefinition& s) { s.name = QStringLiteral("list_notes"); }},
        {"description", [](AgentToolDefinition& s) { s.description += QLatin1Char('!'); }},
        {"writes", [](AgentToolDefinition& s) { s.writes = true; }},
        {"inputSchema", [](AgentToolDefinition& s) { s.inputSchema = QStringLiteral("{}"); }},
        {"no parameters", [](AgentToolDefinition& s) { s.parameters.clear(); }},
        {"parameter required", [](AgentToolDefinition& s) { s.parameters[0].required = false; }},
        {"parameter kind", [](AgentToolDefinition& s) { s.parameters[0].kind = AgentToolDefinition::Parameter::Kind::string(); }},
        {"choice options", [](AgentToolDefinition& s) { s.parameters[0].kind.options.removeLast(); }},
        {"choice order", [](AgentToolDefinition& s) { s.parameters[0].kind.options.swapItemsAt(0, 1); }},
    };
    QSet<size_t> hashes{qHash(base)};
    for (const auto& [what, change] : changes) {
        AgentToolDefinition changed = base;
        change(changed);
        EXPECT_NE(changed, base) << what;
        hashes.insert(qHash(changed));
    }
    EXPECT_EQ(hashes.size(), qsizetype(changes.size() + 1)) << "a field is left out of the hash";
    EXPECT_EQ(listTasks(), base);
    EXPECT_EQ(qHash(listTasks()), qHash(base));
}

TEST(AgentToolDefinitionTest, SpecsAndCallsWorkAsSetMembers) {
    AgentToolDefinition writing = listTasks();
    writing.writes = true;
    const QSet<AgentToolDefinition> specs{listTasks(), writing, listTasks()};
    EXPECT_EQ(specs.size(), 2);

    const AgentToolCall call{QStringLiteral("c1"), QStringLiteral("read_note"), {{QStringLiteral("note"), QStringLiteral("Milk")}}};
    AgentToolCall other = call;
    other.arguments[QStringLiteral("note")] = QStringLiteral("Bread");
    const QSet<AgentToolCall> calls{call, other, call};
    EXPECT_EQ(calls.size(), 2);
    EXPECT_EQ(call.argument(QStringLiteral("note")), QStringLiteral("Milk"));
    EXPECT_EQ(call.argument(QStringLiteral("missing")), QString());
    EXPECT_TRUE(AgentToolCall{}.arguments.isEmpty());
}

TEST(AgentToolDefinitionTest, RawTextsOfTheKindsAreTheCaseNames) {
    EXPECT_EQ(allCases<NoteAccess>(), (QList{NoteAccess::none, NoteAccess::read, NoteAccess::readWrite}));
    QStringList providers;
    for (AIProviderKind kind : allCases<AIProviderKind>()) providers << rawText(kind);
    EXPECT_EQ(providers.join(u' '), QStringLiteral("apple claude openAI gemini ollama lmStudio"));
    QStringList tools;
    for (CLIToolKind kind : allCases<CLIToolKind>()) {
        tools << rawText(kind);
        EXPECT_EQ(fromRawText<CLIToolKind>(rawText(kind)), kind);
    }
    EXPECT_EQ(tools.join(u' '), QStringLiteral("claudeCode codex gemini openCode cursor"));
    EXPECT_EQ(fromRawText<NoteAccess>(QStringLiteral("readwrite")), std::nullopt) << "case counts";
    EXPECT_EQ(fromRawText<AIProviderKind>(QStringLiteral("")), std::nullopt);
}

TEST(AgentToolDefinitionTest, UnknownRawTextFailsDecoding) {
    EXPECT_EQ(Json::toRaw<NoteAccess>(QStringLiteral("readWrite")), NoteAccess::readWrite);
    try {
        Json::toRaw<AIProviderKind>(QStringLiteral("mistral"));
        FAIL() << "decoded an unknown provider";
    } catch (const DecodingError& e) {
        EXPECT_EQ(e.message(), QStringLiteral("Cannot initialize AIProviderKind from invalid String value mistral"));
    }
    EXPECT_THROW(Json::toRaw<NoteAccess>(QJsonValue(1)), DecodingError);
}

}  // namespace
}  // namespace vuro
