#include "agents/AgentEditRules.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

namespace vuro {
namespace {

Agent named(const QString& name, const QString& id = {}) {
    Agent agent;
    if (!id.isEmpty()) agent.id = id;
    agent.name = name;
    return agent;
}

TEST(AgentEditRules, RefusesDraftsThatCantBeSavedWithASentence) {
    const QList<Agent> agents{Agent::notesAgent(), named("Scout", "S1")};
    struct Case {
        const char* what;
        QString name;
        QString emoji;
        QString model;
        QString id;
        std::optional<QString> expected;
    };
    const Case cases[] = {
        {"a plain agent", "Ada", "🦊", "claude-opus-5-5", {}, std::nullopt},
        {"blank name", " \n ", "", "", {}, "Give the agent a name."},
        {"overlong name", QString(41, 'x'), "", "", {}, "Keep the name to 40 characters or fewer."},
        {"forty characters pass", QString(40, 'x'), "", "", {}, std::nullopt},
        {"a name taken, in another case", " SCOUT ", "", "", {}, "Another agent is already called Scout."},
        {"the built-in name, folded", "vuro", "", "", {}, "Another agent is already called Vuro."},
        {"an agent keeps its own name", "Scout", "", "", "S1", std::nullopt},
        {"letters are no face", "Ada", "AB", "", {}, "Use a single emoji for the face."},
        {"one letter is no face either", "Ada", "A", "", {}, "Use a single emoji for the face."},
        {"two emoji", "Ada", "🦊🐻", "", {}, "Use a single emoji for the face."},
        {"a flag is one emoji", "Ada", "🇹🇷", "", {}, std::nullopt},
        {"a skin-tone sequence is one emoji", "Ada", "👋🏽", "", {}, std::nullopt},
        {"a model with spaces", "Ada", "", "gpt 6", {}, "A model name has no spaces; copy it as the provider lists it."},
        {"a model with blanks around", "Ada", "", "  llama3.2 ", {}, std::nullopt},
    };
    for (const Case& c : cases) {
        Agent draft = named(c.name, c.id);
        draft.emoji = c.emoji;
        draft.model = c.model;
        EXPECT_EQ(AgentEditRules::problem(draft, agents), c.expected) << c.what;
    }
}

TEST(AgentEditRules, TheBuiltInAgentKeepsItsFixedFields) {
    Agent stored = Agent::notesAgent();
    stored.memory = "- likes tea";
    Agent draft = stored;
    draft.name = "  Vera ";
    draft.emoji = " 🐝 ";
    draft.memory = "- likes coffee";
    draft.model = " claude-opus-5-5 ";
    draft.soul = "You are a pirate.";
    draft.duty = "Search the web.";
    draft.access = NoteAccess::none;
    draft.web = true;
    draft.createdAt = QDateTime::currentDateTimeUtc();

    const Agent saved = AgentEditRules::prepared(draft, stored);
    EXPECT_EQ(saved.name, "Vera");
    EXPECT_EQ(saved.emoji, "🐝");
    EXPECT_EQ(saved.memory, "- likes coffee");
    EXPECT_EQ(saved.model, "claude-opus-5-5");
    EXPECT_EQ(saved.soul, stored.soul);
    EXPECT_EQ(saved.duty, stored.duty);
    EXPECT_EQ(saved.access, NoteAccess::readWrite);
    EXPECT_FALSE(saved.web);
    EXPECT_EQ(saved.createdAt, stored.createdAt);
    EXPECT_EQ(AgentEditRules::prepared(draft, std::nullopt).access, NoteAccess::readWrite) << "without a stored record";

    Agent other = draft;
    other.id = "A1";
    const Agent otherSaved = AgentEditRules::prepared(other, std::nullopt);
    EXPECT_EQ(otherSaved.soul, "You are a pirate.");
    EXPECT_EQ(otherSaved.access, NoteAccess::none);
    EXPECT_TRUE(otherSaved.web);
    for (const auto field : {AgentEditRules::Field::soul, AgentEditRules::Field::duty, AgentEditRules::Field::access,
                             AgentEditRules::Field::web}) {
        EXPECT_FALSE(AgentEditRules::isEditable(stored, field));
        EXPECT_TRUE(AgentEditRules::isEditable(other, field));
    }
}

}  // namespace
}  // namespace vuro
