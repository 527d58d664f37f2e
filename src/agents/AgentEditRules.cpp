#include "agents/AgentEditRules.h"

#include "base/Text.h"

#include <QCoreApplication>

namespace vuro::AgentEditRules {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("AgentEditRules", text); }

// One emoji: a single user-perceived character that starts with a pictographic symbol (flags and
// modifier sequences are one character too). Letters, digits and punctuation are refused.
bool isOneEmoji(const QString& text) {
    if (Text::characterCount(text) != 1) return false;
    const char32_t first = text.toUcs4().value(0);
    return QChar::category(first) == QChar::Symbol_Other;
}

}  // namespace

bool isBuiltIn(const Agent& agent) { return agent.id == Agent::notesAgentID; }

bool isEditable(const Agent& agent, Field) { return !isBuiltIn(agent); }

std::optional<QString> problem(const Agent& draft, const QList<Agent>& agents) {
    const QString name = Text::trimmed(draft.name);
    if (name.isEmpty()) return tr("Give the agent a name.");
    if (Text::characterCount(name) > maxNameLength)
        return tr("Keep the name to %1 characters or fewer.").arg(maxNameLength);
    const QString folded = Text::fold(name);
    for (const Agent& other : agents)
        if (other.id != draft.id && Text::fold(Text::trimmed(other.name)) == folded)
            return tr("Another agent is already called %1.").arg(Text::trimmed(other.name));
    const QString emoji = Text::trimmed(draft.emoji);
    if (!emoji.isEmpty() && !isOneEmoji(emoji)) return tr("Use a single emoji for the face.");
    if (Text::trimmed(draft.model).contains(QLatin1Char(' ')))
        return tr("A model name has no spaces; copy it as the provider lists it.");
    return std::nullopt;
}

Agent prepared(const Agent& draft, const std::optional<Agent>& stored) {
    Agent agent = draft;
    agent.name = Text::trimmed(draft.name);
    agent.emoji = Text::trimmed(draft.emoji);
    agent.model = Text::trimmed(draft.model);
    if (isBuiltIn(draft)) {
        const Agent fixed = stored.value_or(Agent::notesAgent());
        agent.soul = fixed.soul;
        agent.duty = fixed.duty;
        agent.access = fixed.access;
        agent.web = fixed.web;
        agent.createdAt = fixed.createdAt;
    }
    return agent;
}

}  // namespace vuro::AgentEditRules
