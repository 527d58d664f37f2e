#include "models/ChatModelFactory.h"

#include "base/Text.h"
#include "models/AIKeyStore.h"
#include "models/AIProviderSettings.h"
#include "models/AnthropicChatModel.h"
#include "models/ChatModelError.h"
#include "models/OllamaChatModel.h"
#include "models/OnDeviceProvider.h"
#include "models/OpenAICompatibleChatModel.h"

#include <QCoreApplication>

namespace vuro {

ChatModelFactory::ChatModelFactory(AIKeyStore& keys, Defaults& defaults, QNetworkAccessManager& session)
    : _keys(keys), _defaults(defaults), _session(session) {}

std::unique_ptr<ChatModel> ChatModelFactory::modelFor(const Agent& agent) const {
    const QString model = Text::trimmed(agent.model);
    if (agent.cliTool) {
        if (!_commandLine) throw ChatModelError::unavailable(QCoreApplication::translate("ChatModelFactory", "Command-line tools aren't available here."));
        const QString toolModel = model.isEmpty() ? AIProviderSettings::cliModel(_defaults, *agent.cliTool) : model;
        return _commandLine(*agent.cliTool, toolModel, agent.web && agent.cliTool == CLIToolKind::claudeCode);
    }
    const AIProviderKind kind = agent.provider;
    const QString chosen = model.isEmpty() ? AIProviderSettings::model(_defaults, kind) : model;
    const QUrl base = AIProviderSettings::baseURL(_defaults, kind).value_or(QUrl(QStringLiteral("http://localhost/v1/")));
    const std::optional<QString> key = AIProviderSettings::takesKey(kind) ? _keys.key(kind) : std::nullopt;
    switch (kind) {
    case AIProviderKind::apple:
        if (!_onDevice) throw ChatModelError::unavailable(OnDeviceProvider::unavailableWords());
        return _onDevice();
    case AIProviderKind::claude:
        return std::make_unique<AnthropicChatModel>(chosen, key, base, &_session, agent.web);
    case AIProviderKind::ollama:
        return std::make_unique<OllamaChatModel>(chosen, base, &_session);
    case AIProviderKind::openAI:
    case AIProviderKind::gemini:
    case AIProviderKind::lmStudio:
        return std::make_unique<OpenAICompatibleChatModel>(kind, chosen, key, base, &_session);
    }
    return nullptr;
}

bool hasServerWebTools(const Agent& agent) {
    if (agent.cliTool) return *agent.cliTool == CLIToolKind::claudeCode;
    return agent.provider == AIProviderKind::claude;
}

}  // namespace vuro
