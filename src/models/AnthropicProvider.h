#pragma once

#include "models/AIProvider.h"
#include "models/StructuredOutput.h"

#include <QUrl>
#include <optional>

class QNetworkAccessManager;

namespace vuro {

// The one-shot assistant on Anthropic's Messages API: a single user message, streamed, at low
// effort, with the reply's JSON shape forced by a schema for structured requests.
class AnthropicProvider : public AIProvider {
public:
    AnthropicProvider(QString model, std::optional<QString> apiKey, QUrl baseURL, QNetworkAccessManager* session);

    QString name() const override { return QStringLiteral("Anthropic"); }
    AIRoute route() const override { return AIRoute::cloud(name()); }
    AIAvailability availability() const override;
    QCoro::AsyncGenerator<QString> streamText(QString system, QString prompt) const override;
    QCoro::Task<QStringList> extractTasks(QString system, QString prompt) const override;
    QCoro::Task<GeneratedCommand> generateCommand(QString system, QString prompt) const override;

private:
    static QCoro::AsyncGenerator<QString> request(AnthropicProvider provider, QString system, QString prompt,
                                                  std::optional<StructuredOutput> shape);

    QString _model;
    std::optional<QString> _apiKey;
    QUrl _baseURL;
    QNetworkAccessManager* _session;
};

}  // namespace vuro
