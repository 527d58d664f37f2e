#include "models/RoutingProvider.h"

#include "base/Defaults.h"
#include "models/AIKeyStore.h"
#include "models/AIProviderSettings.h"
#include "models/AnthropicProvider.h"
#include "models/AssistantChoice.h"
#include "models/OpenAICompatibleProvider.h"

namespace vuro {

RoutingProvider::RoutingProvider(AIProvider& onDevice, Selected selected) : _onDevice(onDevice), _selected(std::move(selected)) {}

const AIProvider* RoutingProvider::target() const {
    _current = _selected ? _selected() : nullptr;
    return _current ? _current.get() : &_onDevice;
}

QCoro::AsyncGenerator<QString> RoutingProvider::streamText(QString system, QString prompt) const {
    return target()->streamText(std::move(system), std::move(prompt));
}

QCoro::Task<QStringList> RoutingProvider::extractTasks(QString system, QString prompt) const {
    return target()->extractTasks(std::move(system), std::move(prompt));
}

QCoro::Task<GeneratedCommand> RoutingProvider::generateCommand(QString system, QString prompt) const {
    return target()->generateCommand(std::move(system), std::move(prompt));
}

std::unique_ptr<AIProvider> selectedAPIProvider(const Defaults& defaults, AIKeyStore& keys, QNetworkAccessManager& session) {
    const auto choice = AssistantChoice::fromRawText(defaults.stringValue(AIProviderSettings::providerKey()));
    if (!choice || !choice->apiKind() || *choice->apiKind() == AIProviderKind::apple) return nullptr;
    const AIProviderKind kind = *choice->apiKind();
    const QString model = AIProviderSettings::model(defaults, kind);
    const QUrl base = AIProviderSettings::baseURL(defaults, kind).value_or(QUrl());
    const std::optional<QString> key = AIProviderSettings::takesKey(kind) ? keys.key(kind) : std::nullopt;
    if (kind == AIProviderKind::claude) return std::make_unique<AnthropicProvider>(model, key, base, &session);
    return std::make_unique<OpenAICompatibleProvider>(kind, model, key, base, &session);
}

}  // namespace vuro
