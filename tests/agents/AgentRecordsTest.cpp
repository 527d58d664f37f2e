#include "agents/Agent.h"
#include "agents/AgentMessage.h"
#include "agents/AgentToolOutcome.h"
#include "support/AgentSamples.h"
#include "support/Printers.h"

#include <QJsonDocument>
#include <QSet>
#include <gtest/gtest.h>

namespace vuro {

namespace {

using namespace test;

QJsonObject parse(const QByteArray& text) { return QJsonDocument::fromJson(text).object(); }

// Written to text and read back, as the store does.
template <typename T>
T throughText(const T& record) {
    return T::fromJson(parse(QJsonDocument(record.toJson()).toJson(QJsonDocument::Compact)));
}

TEST(AgentRecordsTest, EveryRecordSurvivesJsonTextFullAndBare) {
    EXPECT_EQ(throughText(fullJob()), fullJob());
    EXPECT_EQ(throughText(bareJob()), bareJob());
    EXPECT_EQ(throughText(fullMessage()), fullMessage());
    AgentMessage bare;
    bare.id = QStringLiteral("M2");
    bare.createdAt = at("2026-03-02T09:30:00.000Z");
    EXPECT_EQ(throughText(bare), bare);
    EXPECT_EQ(throughText(fullAgent()), fullAgent());
    const Agent builtIn = Agent::notesAgent();
    EXPECT_EQ(throughText(builtIn), builtIn) << "the distant past must survive as a date";
    Agent plain;
    EXPECT_EQ(throughText(plain), plain);
}

TEST(AgentRecordsTest, OptionalFieldsAreLeftOutWhenEmpty) {
    const QJsonObject job = bareJob().toJson();
    for (const char* key : {"noteID", "lastRun", "lastStatus", "lastError", "toolPermission"})
        EXPECT_FALSE(job.contains(QLatin1String(key))) << key;
    EXPECT_EQ(job.size(), 8);
    AgentMessage message;
    const QStringList messageKeys{"actions", "agentID", "approvals", "attachments", "createdAt", "id", "role", "text"};
    EXPECT_EQ(message.toJson().keys(), messageKeys);
    EXPECT_EQ(Agent().toJson().size(), 16) << "avatarImage, face and cliTool are left out";
    EXPECT_EQ(fullAgent().toJson().size(), 19);
    const QJsonObject folder = AgentUndo{AgentUndo::RestoreFolder{QStringLiteral("N"), std::nullopt, std::nullopt}}.toJson();
    EXPECT_EQ(folder, parse(R"json({"restoreFolder":{"noteID":"N"}})json"));
    EXPECT_FALSE(recording().toJson().isEmpty());
    AgentAttachment noDuration = recording();
    noDuration.duration.reset();
    EXPECT_FALSE(noDuration.toJson().contains(QStringLiteral("duration")));
}

TEST(AgentRecordsTest, EveryVariantCaseRoundTripsAndIsOneKeyObject) {
    QSet<QString> undoCases;
    QSet<size_t> undoHashes;
    for (const AgentUndo& undo : everyUndo()) {
        const QJsonObject json = undo.toJson();
        ASSERT_EQ(json.size(), 1);
        undoCases.insert(json.begin().key());
        undoHashes.insert(qHash(undo));
        EXPECT_EQ(throughText(undo), undo) << QJsonDocument(json).toJson().toStdString();
        EXPECT_EQ(qHash(throughText(undo)), qHash(undo));
    }
    EXPECT_EQ(undoCases.size(), 9);
    EXPECT_EQ(undoHashes.size(), everyUndo().size());

    const QList<AgentJob::Trigger> triggers = {
        {AgentJob::Trigger::Once{at("2026-05-01T09:30:00.000Z")}},
        {AgentJob::Trigger::Now{}},
        {AgentJob::Trigger::Repeating{{Recurrence::Daily{7, 5}}}},
        {AgentJob::Trigger::Repeating{{Recurrence::Weekdays{23, 59}}}},
        {AgentJob::Trigger::Repeating{{Recurrence::Weekly{7, 0, 0}}}},
        {AgentJob::Trigger::Repeating{{Recurrence::EveryHours{0}}}},
    };
    for (const AgentJob::Trigger& trigger : triggers) EXPECT_EQ(throughText(trigger), trigger);
}

TEST(AgentRecordsTest, TheWrittenFormsReadAsTheyStand) {
    using Trigger = AgentJob::Trigger;
    EXPECT_EQ(Trigger::fromJson(parse(R"({"once":{"_0":"2026-05-01T09:30:00.000Z"}})")),
              Trigger{Trigger::Once{at("2026-05-01T09:30:00Z")}});
    EXPECT_EQ(Trigger::fromJson(parse(R"({"now":{}})")), Trigger{Trigger::Now{}});
    EXPECT_EQ(Trigger::fromJson(parse(R"({"repeating":{"_0":{"weekly":{"weekday":2,"hour":9,"minute":0}}}})")),
              (Trigger{Trigger::Repeating{{Recurrence::Weekly{2, 9, 0}}}}));
    EXPECT_EQ(Recurrence::fromJson(parse(R"({"everyHours":{"_0":4}})")), Recurrence{Recurrence::EveryHours{4}});
    EXPECT_EQ(Recurrence{Recurrence::EveryHours{4}}.toJson(), parse(R"({"everyHours":{"_0":4}})"));
    EXPECT_EQ((Recurrence{Recurrence::Daily{9, 15}}.toJson()), parse(R"({"daily":{"hour":9,"minute":15}})"));
    EXPECT_EQ(AgentUndo{AgentUndo::DeleteJob{QStringLiteral("J")}}.toJson(), parse(R"({"deleteJob":{"jobID":"J"}})"));

    const QJsonObject restore = AgentUndo{AgentUndo::RestoreJob{bareJob()}}.toJson();
    EXPECT_EQ(restore.value(QStringLiteral("restoreJob")).toObject().value(QStringLiteral("_0")).toObject(),
              bareJob().toJson());
    const QJsonObject revert = AgentUndo{AgentUndo::RevertJob{bareJob(), fullJob()}}.toJson();
    EXPECT_EQ(revert.value(QStringLiteral("revertJob")).toObject().keys(), (QStringList{"after", "before"}));
}

struct Failure {
    const char* what;
    std::function<void()> decode;
    const char* message;
};

TEST(AgentRecordsTest, DecodingFailuresSayWhatWasWrong) {
    const char* oneKey = "Invalid number of keys found, expected one.";
    QJsonObject jobWithRole = bareJob().toJson();
    jobWithRole[QStringLiteral("lastStatus")] = QStringLiteral("skipped");
    QJsonObject agentWithAccess = fullAgent().toJson();
    agentWithAccess[QStringLiteral("access")] = QStringLiteral("write");
    QJsonObject agentWithProvider = fullAgent().toJson();
    agentWithProvider[QStringLiteral("provider")] = QStringLiteral("Claude");
    QJsonObject agentWithColor = fullAgent().toJson();
    agentWithColor[QStringLiteral("color")] = 8;
    QJsonObject agentWithImage = fullAgent().toJson();
    agentWithImage[QStringLiteral("avatarImage")] = QStringLiteral("**not base64**");
    QJsonObject messageWithRole = fullMessage().toJson();
    messageWithRole[QStringLiteral("role")] = QStringLiteral("system");
    QJsonObject messageWithoutActions = fullMessage().toJson();
    messageWithoutActions.remove(QStringLiteral("actions"));
    QJsonObject jobWithoutTrigger = bareJob().toJson();
    jobWithoutTrigger.remove(QStringLiteral("trigger"));
    QJsonObject jobWithTwoKeyTrigger = bareJob().toJson();
    jobWithTwoKeyTrigger[QStringLiteral("trigger")] = parse(R"({"now":{},"once":{"_0":"2026-05-01T09:30:00Z"}})");

    const std::vector<Failure> failures = {
        {"trigger with two keys", [&] { AgentJob::fromJson(jobWithTwoKeyTrigger); }, oneKey},
        {"trigger without keys", [] { AgentJob::Trigger::fromJson({}); }, oneKey},
        {"unknown trigger", [] { AgentJob::Trigger::fromJson(parse(R"({"later":{}})")); }, oneKey},
        {"recurrence with two keys",
         [] { Recurrence::fromJson(parse(R"({"daily":{"hour":1,"minute":2},"weekdays":{"hour":1,"minute":2}})")); },
         oneKey},
        {"undo with two keys",
         [] { AgentUndo::fromJson(parse(R"({"deleteJob":{"jobID":"J"},"unarchiveNote":{"noteID":"N"}})")); }, oneKey},
        {"unknown undo", [] { AgentUndo::fromJson(parse(R"({"deleteEverything":{}})")); }, oneKey},
        {"once without date", [] { AgentJob::Trigger::fromJson(parse(R"({"once":{}})")); },
         "No value associated with key \"_0\"."},
        {"weekly without weekday", [] { Recurrence::fromJson(parse(R"({"weekly":{"hour":9,"minute":0}})")); },
         "No value associated with key \"weekday\"."},
        {"fractional hour", [] { Recurrence::fromJson(parse(R"({"daily":{"hour":9.5,"minute":0}})")); },
         "Expected to decode Int for key \"hour\"."},
        {"job without trigger", [&] { AgentJob::fromJson(jobWithoutTrigger); },
         "No value associated with key \"trigger\"."},
        {"unknown status", [&] { AgentJob::fromJson(jobWithRole); },
         "Cannot initialize Status from invalid String value skipped"},
        {"unknown access", [&] { Agent::fromJson(agentWithAccess); },
         "Cannot initialize NoteAccess from invalid String value write"},
        {"provider in the wrong case", [&] { Agent::fromJson(agentWithProvider); },
         "Cannot initialize AIProviderKind from invalid String value Claude"},
        {"colour out of range", [&] { Agent::fromJson(agentWithColor); },
         "Cannot initialize NoteColor from invalid Int value 8"},
        {"avatar not base64", [&] { Agent::fromJson(agentWithImage); }, "Encountered Data is not valid Base64."},
        {"unknown role", [&] { AgentMessage::fromJson(messageWithRole); },
         "Cannot initialize Role from invalid String value system"},
        {"message without actions", [&] { AgentMessage::fromJson(messageWithoutActions); },
         "No value associated with key \"actions\"."},
        {"unknown attachment kind",
         [] {
             AgentAttachment::fromJson(parse(
                 R"({"id":"A","name":"x.zip","kind":"archive","mediaType":"application/zip","byteCount":1})"));
         },
         "Cannot initialize Kind from invalid String value archive"},
        {"unknown approval outcome",
         [] {
             MCPApprovalRecord::fromJson(parse(
                 R"({"id":"R","serverName":"s","toolTitle":"t","outcome":"maybe","decidedAt":"2026-01-01T00:00:00Z"})"));
         },
         "Cannot initialize Outcome from invalid String value maybe"},
        {"tags not strings", [] { AgentUndo::fromJson(parse(R"({"restoreTags":{"noteID":"N","before":[1],"after":[]}})")); },
         "Expected to decode String but found another type."},
        {"skill file not text",
         [] {
             AgentSkill::fromJson(parse(
                 R"({"id":"S","name":"n","summary":"s","instructions":"i","files":{"a.md":3},"enabled":true})"));
         },
         "Expected to decode String for key \"a.md\"."},
    };
    for (const Failure& failure : failures) {
        try {
            failure.decode();
            ADD_FAILURE() << failure.what << ": decoded";
        } catch (const DecodingError& e) {
            EXPECT_EQ(e.message(), QString::fromUtf8(failure.message)) << failure.what;
        }
    }
}

TEST(AgentRecordsTest, KeysAddedLaterMayBeMissingButRequiredOnesMayNot) {
    QJsonObject approval = fullMessage().approvals.first().toJson();
    approval.remove(QStringLiteral("serverID"));
    approval.remove(QStringLiteral("toolName"));
    const MCPApprovalRecord read = MCPApprovalRecord::fromJson(approval);
    EXPECT_EQ(read.serverID, std::nullopt);
    EXPECT_EQ(read.toolTitle, QStringLiteral("Send mail"));

    QJsonObject job = fullJob().toJson();
    job[QStringLiteral("toolPermission")] = QJsonValue::Null;
    EXPECT_EQ(AgentJob::fromJson(job).toolPermission, std::nullopt) << "null reads as absent";
}

TEST(AgentRecordsTest, AFaceIsKeptAsWrittenWhateverItsShape) {
    for (const QJsonValue& face : {QJsonValue(QStringLiteral("smile")), QJsonValue(3.25),
                                   QJsonValue(QJsonArray{1, QJsonObject{{QStringLiteral("z"), false}}}),
                                   fullAgent().face->value}) {
        Agent agent = fullAgent();
        agent.face = AgentFace{face};
        EXPECT_EQ(throughText(agent).face, agent.face);
    }
}

TEST(AgentRecordsTest, OutcomesCompareAndHashByEveryPart) {
    const AgentAction action = fullMessage().actions.first();
    const AgentToolOutcome refusal{QStringLiteral("Not allowed: you can't change the user's notes."), std::nullopt, {}};
    const AgentToolOutcome changed{QStringLiteral("Added."), action, {}};
    AgentToolOutcome more = changed;
    more.moreActions = {fullMessage().actions.at(1)};
    AgentToolOutcome undone = changed;
    undone.action->undone = true;
    const QSet<AgentToolOutcome> outcomes{refusal, changed, more, undone, changed, refusal};
    EXPECT_EQ(outcomes.size(), 4);
    EXPECT_TRUE(outcomes.contains(AgentToolOutcome{QStringLiteral("Added."), action, {}}));
}

TEST(AgentRecordsTest, FreshRecordsHaveTheirStartingValues) {
    const AgentJob a;
    const AgentJob b;
    EXPECT_NE(a.id, b.id);
    EXPECT_EQ(a.id, a.id.toUpper());
    EXPECT_EQ(QUuid::fromString(a.id).isNull(), false);
    EXPECT_TRUE(a.enabled);
    EXPECT_EQ(a.trigger, AgentJob::Trigger{AgentJob::Trigger::Now{}});
    const Agent agent;
    EXPECT_EQ(agent.color, NoteColor::sky);
    EXPECT_EQ(agent.access, NoteAccess::read);
    EXPECT_EQ(agent.provider, AIProviderKind::apple);
    EXPECT_LT(Agent::notesAgent().createdAt, agent.createdAt);
    const Agent builtIn = Agent::notesAgent();
    EXPECT_EQ(builtIn.id, QStringLiteral("vuro.notes"));
    EXPECT_EQ(builtIn.name, QStringLiteral("Vuro"));
    EXPECT_EQ(builtIn.color, NoteColor::lemon);
    EXPECT_EQ(builtIn.access, NoteAccess::readWrite);
    EXPECT_EQ(builtIn.vibe, QStringLiteral("brief and clear"));
    EXPECT_EQ(builtIn.createdAt.date().year(), 1);
}

TEST(AgentRecordsTest, NamesAndRoutes) {
    Agent agent;
    for (const auto& [name, shown] : std::vector<std::pair<QString, QString>>{
             {QStringLiteral("  Ada \n"), QStringLiteral("Ada")},
             {QStringLiteral(" \n\t"), QStringLiteral("Agent")},
             {QString(), QStringLiteral("Agent")}}) {
        agent.name = name;
        EXPECT_EQ(agent.displayName(), shown) << name.toStdString();
    }
    const std::vector<std::tuple<AIProviderKind, std::optional<CLIToolKind>, const char*, const char*>> routes = {
        {AIProviderKind::apple, std::nullopt, "apple", "On-device model"},
        {AIProviderKind::claude, std::nullopt, "claude", "Anthropic"},
        {AIProviderKind::openAI, std::nullopt, "openAI", "OpenAI"},
        {AIProviderKind::gemini, std::nullopt, "gemini", "Google"},
        {AIProviderKind::ollama, std::nullopt, "ollama", "Ollama"},
        {AIProviderKind::lmStudio, std::nullopt, "lmStudio", "LM Studio"},
        {AIProviderKind::ollama, CLIToolKind::claudeCode, "cli.claudeCode", "Anthropic"},
        {AIProviderKind::apple, CLIToolKind::codex, "cli.codex", "OpenAI"},
        {AIProviderKind::claude, CLIToolKind::gemini, "cli.gemini", "Google"},
        {AIProviderKind::apple, CLIToolKind::openCode, "cli.openCode", "OpenCode"},
        {AIProviderKind::apple, CLIToolKind::cursor, "cli.cursor", "Cursor"},
    };
    for (const auto& [provider, tool, id, label] : routes) {
        agent.provider = provider;
        agent.cliTool = tool;
        EXPECT_EQ(agent.routeID(), QLatin1String(id));
        EXPECT_EQ(agent.routeLabel(), QLatin1String(label)) << id;
    }
}

TEST(AgentRecordsTest, RememberAddsALineOnlyForANewFact) {
    struct Case {
        const char* memory;
        const char* fact;
        bool changed;
        const char* after;
    };
    const Case cases[] = {
        {"", "likes tea", true, "- likes tea"},
        {"\n\n", "  likes tea \n", true, "- likes tea"},
        {"- likes tea", "  likes tea\n", false, "- likes tea"},
        {"- likes tea", "Likes tea", true, "- likes tea\n- Likes tea"},
        {"  - likes tea  \n\n- walks", "likes tea", false, "  - likes tea  \n\n- walks"},
        {"\n- walks\n\n", "has a cat\nnamed Tom", true, "- walks\n- has a cat named Tom"},
        {"- walks", " \n ", false, "- walks"},
        {"- walks", "", false, "- walks"},
    };
    for (const Case& c : cases) {
        Agent agent;
        agent.memory = QString::fromUtf8(c.memory);
        EXPECT_EQ(agent.remember(QString::fromUtf8(c.fact)), c.changed) << c.memory << " + " << c.fact;
        EXPECT_EQ(agent.memory, QString::fromUtf8(c.after)) << c.memory << " + " << c.fact;
    }
}

}  // namespace
}  // namespace vuro
