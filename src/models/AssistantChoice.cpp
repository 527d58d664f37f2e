#include "models/AssistantChoice.h"

namespace vuro {
namespace {
const QLatin1String cliPrefix("cli.");
}

std::optional<AssistantChoice> AssistantChoice::fromRawText(const QString& text) {
    if (text.startsWith(cliPrefix)) {
        if (const auto tool = vuro::fromRawText<CLIToolKind>(text.mid(cliPrefix.size()))) return cli(*tool);
        return std::nullopt;
    }
    if (const auto kind = vuro::fromRawText<AIProviderKind>(text)) return api(*kind);
    return std::nullopt;
}

QString AssistantChoice::rawText() const {
    if (const auto* tool = std::get_if<CLIToolKind>(&_value)) return cliPrefix + vuro::rawText(*tool);
    return vuro::rawText(std::get<AIProviderKind>(_value));
}

std::optional<AIProviderKind> AssistantChoice::apiKind() const {
    if (const auto* kind = std::get_if<AIProviderKind>(&_value)) return *kind;
    return std::nullopt;
}

std::optional<CLIToolKind> AssistantChoice::cliTool() const {
    if (const auto* tool = std::get_if<CLIToolKind>(&_value)) return *tool;
    return std::nullopt;
}

}  // namespace vuro
