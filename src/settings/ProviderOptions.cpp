#include "settings/ProviderOptions.h"

#include <QCoreApplication>

namespace vuro::ProviderOptions {

QString label(AIProviderKind kind) {
    switch (kind) {
    case AIProviderKind::apple: return QCoreApplication::translate("ProviderOptions", "On-device model");
    case AIProviderKind::claude: return QStringLiteral("Anthropic API");
    case AIProviderKind::openAI: return QStringLiteral("OpenAI API");
    case AIProviderKind::gemini: return QStringLiteral("Google Gemini API");
    case AIProviderKind::ollama: return QStringLiteral("Ollama");
    case AIProviderKind::lmStudio: return QStringLiteral("LM Studio");
    }
    return {};
}

QString label(CLIToolKind tool) {
    switch (tool) {
    case CLIToolKind::claudeCode: return QStringLiteral("Claude Code");
    case CLIToolKind::codex: return QStringLiteral("Codex CLI");
    case CLIToolKind::gemini: return QStringLiteral("Gemini CLI");
    case CLIToolKind::openCode: return QStringLiteral("OpenCode");
    case CLIToolKind::cursor: return QStringLiteral("Cursor CLI");
    }
    return {};
}

QString label(const AssistantChoice& choice) {
    if (const auto tool = choice.cliTool()) return label(*tool);
    return label(choice.apiKind().value_or(AIProviderKind::apple));
}

QList<Option> apiKinds() {
    QList<Option> options;
    for (const AIProviderKind kind : allCases<AIProviderKind>()) options.append({AssistantChoice::api(kind), label(kind)});
    return options;
}

QList<Option> all() {
    QList<Option> options = apiKinds();
    for (const CLIToolKind tool : allCases<CLIToolKind>()) options.append({AssistantChoice::cli(tool), label(tool)});
    return options;
}

}  // namespace vuro::ProviderOptions
