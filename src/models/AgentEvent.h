#pragma once

#include "agents/AgentAction.h"

#include <QString>
#include <variant>

namespace vuro {

// What a chat back-end reports while it answers.
struct AgentEvent {
    // The whole reply as it stands now, from the run's first round to the latest character;
    // the consumer replaces what it shows.
    struct Text {
        QString text;
        bool operator==(const Text&) const = default;
    };
    // A tool has begun: a client tool by the name the model called, or a server-side tool.
    struct ToolStarted {
        QString name;
        bool operator==(const ToolStarted&) const = default;
    };

    std::variant<Text, ToolStarted, AgentAction> value;

    static AgentEvent text(QString text) { return {Text{std::move(text)}}; }
    static AgentEvent toolStarted(QString name) { return {ToolStarted{std::move(name)}}; }
    // An undoable change a tool has just made.
    static AgentEvent action(AgentAction action) { return {std::move(action)}; }

    bool operator==(const AgentEvent&) const = default;
};

}  // namespace vuro
