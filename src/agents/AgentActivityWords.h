#pragma once

#include <QString>
#include <optional>

namespace vuro {

// What an agent is doing, in words for the user, from the activity key of its run: a tool's
// name as the model called it, or one of the run's own steps ("mcp.connecting", "mcp.approval",
// "recording.summarizing"). A key it doesn't know, and no key at all, read as plain work.
class AgentActivityWords {
public:
    static QString of(const std::optional<QString>& key);
};

}  // namespace vuro
