#include "models/AnthropicProvider.h"

#include "models/AIProviderError.h"
#include "models/AnthropicChatModel.h"
#include "models/AnthropicStreamTurn.h"
#include "models/LineStream.h"

#include <QJsonArray>

namespace vuro {

AnthropicProvider::AnthropicProvider(QString model, std::optional<QString> apiKey, QUrl baseURL, QNetworkAccessManager* session)
    : _model(std::move(model)), _apiKey(std::move(apiKey)), _baseURL(std::move(baseURL)), _session(session) {}

AIAvailability AnthropicProvider::availability() const {
    if (!_apiKey || _apiKey->isEmpty()) return AIAvailability::unavailable(AIProviderError::missingKey(name()).message());
    if (_model.isEmpty()) return AIAvailability::unavailable(AIProviderError::missingModel().message());
    return AIAvailability::available();
}

QCoro::AsyncGenerator<QString> AnthropicProvider::streamText(QString system, QString prompt) const {
    return request(*this, std::move(system), std::move(prompt), std::nullopt);
}

QCoro::Task<QStringList> AnthropicProvider::extractTasks(QString system, QString prompt) const {
    return StructuredOutput::tasksFrom(request(*this, std::move(system), std::move(prompt), StructuredOutput::tasks()));
}

QCoro::Task<GeneratedCommand> AnthropicProvider::generateCommand(QString system, QString prompt) const {
    return StructuredOutput::commandFrom(request(*this, std::move(system), std::move(prompt), StructuredOutput::command()));
}

QCoro::AsyncGenerator<QString> AnthropicProvider::request(AnthropicProvider provider, QString system, QString prompt,
                                                          std::optional<StructuredOutput> shape) {
    const HttpHeaders headers = AnthropicChatModel::headers(provider._apiKey, provider._model);
    QJsonObject body{{QLatin1String("model"), provider._model},
                     {QLatin1String("max_tokens"), 16000},
                     {QLatin1String("stream"), true},
                     {QLatin1String("messages"), QJsonArray{QJsonObject{{QLatin1String("role"), QLatin1String("user")},
                                                                        {QLatin1String("content"), prompt}}}}};
    if (!system.isEmpty()) body.insert(QLatin1String("system"), system);
    QJsonObject outputConfig;
    if (AnthropicChatModel::takesEffort(provider._model)) outputConfig.insert(QLatin1String("effort"), QLatin1String("low"));
    if (shape)
        outputConfig.insert(QLatin1String("format"), QJsonObject{{QLatin1String("type"), QLatin1String("json_schema")},
                                                                 {QLatin1String("schema"), shape->schema}});
    if (!outputConfig.isEmpty()) body.insert(QLatin1String("output_config"), outputConfig);
    if (AnthropicChatModel::inFallbackSet(provider._model)) body.insert(QLatin1String("fallbacks"), QLatin1String("default"));
    const JsonRequest post = jsonRequest(provider._baseURL.resolved(QUrl(QStringLiteral("messages"))), body, headers);

    AnthropicStreamTurn turn;
    qsizetype sent = 0;
    auto lines = lineStream(provider._session, post, LineExtract::serverSentEvents);
    for (auto it = co_await lines.begin(); it != lines.end(); co_await ++it) {
        if (!turn.apply(*it)) continue;
        QString piece = turn.text().mid(sent);
        sent = turn.text().size();
        co_yield piece;
    }
    if (turn.stopReason() == QLatin1String("refusal")) throw AIProviderError::refusal();
}

}  // namespace vuro
