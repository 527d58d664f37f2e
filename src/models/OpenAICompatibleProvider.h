#pragma once

#include "agents/AIProviderKind.h"
#include "models/AIProvider.h"
#include "models/StructuredOutput.h"

#include <QUrl>
#include <optional>

class QNetworkAccessManager;

namespace vuro {

// The one-shot assistant on the chat-completions protocol: OpenAI and Gemini get the reply's JSON
// shape forced by a schema; Ollama and LM Studio, which can't be relied on for that, get the
// shape's instruction in the system text instead. A content filter's stop counts as a refusal.
class OpenAICompatibleProvider : public AIProvider {
public:
    OpenAICompatibleProvider(AIProviderKind kind, QString model, std::optional<QString> apiKey, QUrl baseURL,
                             QNetworkAccessManager* session);

    QString name() const override;
    AIRoute route() const override;
    AIAvailability availability() const override;
    QCoro::AsyncGenerator<QString> streamText(QString system, QString prompt) const override;
    QCoro::Task<QStringList> extractTasks(QString system, QString prompt) const override;
    QCoro::Task<GeneratedCommand> generateCommand(QString system, QString prompt) const override;

private:
    bool forcesSchema() const { return _kind != AIProviderKind::ollama && _kind != AIProviderKind::lmStudio; }
    static QCoro::AsyncGenerator<QString> request(OpenAICompatibleProvider provider, QString system, QString prompt,
                                                  std::optional<StructuredOutput> shape);

    AIProviderKind _kind;
    QString _model;
    std::optional<QString> _apiKey;
    QUrl _baseURL;
    QNetworkAccessManager* _session;
};

}  // namespace vuro
