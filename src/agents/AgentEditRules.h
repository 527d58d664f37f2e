#pragma once

#include "agents/Agent.h"

#include <QList>
#include <QString>
#include <optional>

namespace vuro {

// What the agent editor may change and what it must refuse. The built-in notes agent keeps its
// identity: its persona and directions are built in, it always reads and changes notes, and it
// stays off the web; the rest of it (name, face, colour, vibe, memory, model) is the user's.
namespace AgentEditRules {

enum class Field { soul, duty, access, web };

constexpr int maxNameLength = 40;

bool isBuiltIn(const Agent& agent);
// Whether the editor may change this field of this agent.
bool isEditable(const Agent& agent, Field field);

// The sentence saying why the draft can't be saved: a blank or overlong name, a name another
// agent already has, a face that isn't one emoji, a model name with spaces. None when it can.
std::optional<QString> problem(const Agent& draft, const QList<Agent>& agents);

// The draft as it may be saved: blanks trimmed from the name, the emoji and the model, and for
// the built-in agent its fixed fields taken back from the stored record.
Agent prepared(const Agent& draft, const std::optional<Agent>& stored);

}  // namespace AgentEditRules
}  // namespace vuro
