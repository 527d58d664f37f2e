#include "models/OpenAICompatibleProvider.h"

#include "models/AIProviderError.h"
#include "models/AIProviderSettings.h"
#include "models/LineStream.h"
#include "models/OpenAIStreamTurn.h"

#include <QJsonArray>

namespace vuro {

OpenAICompatibleProvider::OpenAICompatibleProvider(AIProviderKind kind, QString model, std::optional<QString> apiKey,
                                                   QUrl baseURL, QNetworkAccessManager* session)
    : _kind(kind), _model(std::move(model)), _apiKey(std::move(apiKey)), _baseURL(std::move(baseURL)), _session(session) {}

QString OpenAICompatibleProvider::name() const { return AIProviderSettings::displayName(_kind); }

AIRoute OpenAICompatibleProvider::route() const {
    if (AIProviderSettings::takesKey(_kind)) return AIRoute::cloud(name());
    const QString host = _baseURL.host();
    return AIRoute::localServer(host.isEmpty() ? QStringLiteral("localhost") : host);
}

AIAvailability OpenAICompatibleProvider::availability() const {
    if (AIProviderSettings::takesKey(_kind) && (!_apiKey || _apiKey->isEmpty()))
        return AIAvailability::unavailable(AIProviderError::missingKey(name()).message());
    if (_model.isEmpty()) return AIAvailability::unavailable(AIProviderError::missingModel().message());
    return AIAvailability::available();
}

QCoro::AsyncGenerator<QString> OpenAICompatibleProvider::streamText(QString system, QString prompt) const {
    return request(*this, std::move(system), std::move(prompt), std::nullopt);
}

QCoro::Task<QStringList> OpenAICompatibleProvider::extractTasks(QString system, QString prompt) const {
    return StructuredOutput::tasksFrom(request(*this, std::move(system), std::move(prompt), StructuredOutput::tasks()));
}

QCoro::Task<GeneratedCommand> OpenAICompatibleProvider::generateCommand(QString system, QString prompt) const {
    return StructuredOutput::commandFrom(request(*this, std::move(system), std::move(prompt), StructuredOutput::command()));
}

QCoro::AsyncGenerator<QString> OpenAICompatibleProvider::request(OpenAICompatibleProvider provider, QString system, QString prompt,
                                                                 std::optional<StructuredOutput> shape) {
    if (AIProviderSettings::takesKey(provider._kind) && (!provider._apiKey || provider._apiKey->isEmpty()))
        throw AIProviderError::missingKey(provider.name());
    if (provider._model.isEmpty()) throw AIProviderError::missingModel();
    if (shape && !provider.forcesSchema()) system = system.isEmpty() ? shape->instruction : system + QLatin1String("\n\n") + shape->instruction;
    QJsonArray messages;
    if (!system.isEmpty()) messages.append(QJsonObject{{QLatin1String("role"), QLatin1String("system")}, {QLatin1String("content"), system}});
    messages.append(QJsonObject{{QLatin1String("role"), QLatin1String("user")}, {QLatin1String("content"), prompt}});
    QJsonObject body{{QLatin1String("model"), provider._model}, {QLatin1String("messages"), messages}, {QLatin1String("stream"), true}};
    if (shape && provider.forcesSchema())
        body.insert(QLatin1String("response_format"),
                    QJsonObject{{QLatin1String("type"), QLatin1String("json_schema")},
                                {QLatin1String("json_schema"), QJsonObject{{QLatin1String("name"), shape->name},
                                                                           {QLatin1String("schema"), shape->schema},
                                                                           {QLatin1String("strict"), true}}}});
    HttpHeaders headers;
    if (provider._apiKey && !provider._apiKey->isEmpty())
        headers.append(std::pair<QByteArray, QByteArray>("Authorization", "Bearer " + provider._apiKey->toUtf8()));
    const JsonRequest post = jsonRequest(provider._baseURL.resolved(QUrl(QStringLiteral("chat/completions"))), body, headers);

    OpenAIStreamTurn turn;
    qsizetype sent = 0;
    auto lines = lineStream(provider._session, post, LineExtract::serverSentEvents);
    for (auto it = co_await lines.begin(); it != lines.end(); co_await ++it) {
        if (!turn.apply(*it)) continue;
        QString piece = turn.text().mid(sent);
        sent = turn.text().size();
        co_yield piece;
    }
    if (turn.finishReason() == QLatin1String("content_filter")) throw AIProviderError::refusal();
}

}  // namespace vuro
