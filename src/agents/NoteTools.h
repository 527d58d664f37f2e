#pragma once

#include "agents/AgentToolDefinition.h"

#include <QList>
#include <optional>

namespace vuro {

// The full list of the note tools, whatever an agent's access: names, descriptions for the
// model in English or Turkish, parameters and whether each writes. This list is the one place
// a note tool's `writes` is read from; which of them a run offers is the note toolbox's choice.
class NoteTools {
public:
    // Every note tool, in the order they are offered.
    static QList<AgentToolDefinition> all(bool turkish);
    // The note tool of that name, or none.
    static std::optional<AgentToolDefinition> spec(const QString& name, bool turkish);
};

}  // namespace vuro
