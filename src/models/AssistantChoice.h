#pragma once

#include "agents/AIProviderKind.h"
#include "agents/CLIToolKind.h"

#include <QString>
#include <optional>
#include <variant>

namespace vuro {

// The back-end the user picked for the one-shot assistant: an API provider or a command-line
// tool. Stored under "aiProvider" as the kind's raw text, or "cli." and the tool's raw text.
class AssistantChoice {
public:
    static AssistantChoice api(AIProviderKind kind) { return AssistantChoice(kind); }
    static AssistantChoice cli(CLIToolKind tool) { return AssistantChoice(tool); }

    static std::optional<AssistantChoice> fromRawText(const QString& text);
    QString rawText() const;

    std::optional<AIProviderKind> apiKind() const;
    std::optional<CLIToolKind> cliTool() const;

    bool operator==(const AssistantChoice&) const = default;

private:
    explicit AssistantChoice(std::variant<AIProviderKind, CLIToolKind> value) : _value(value) {}
    std::variant<AIProviderKind, CLIToolKind> _value;
};

}  // namespace vuro
