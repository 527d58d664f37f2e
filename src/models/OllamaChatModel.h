#pragma once

#include "models/ChatModel.h"
#include "models/JsonRequest.h"

#include <QJsonArray>
#include <QUrl>

class QNetworkAccessManager;

namespace vuro {

// The chat back-end on Ollama's native chat endpoint (its compatible endpoint has a short
// context), streamed as one JSON object per line. Same tool loop and limit as the compatible
// back-end. Failures: AIProviderError (model, HTTP, an error line), ChatModelError.
class OllamaChatModel : public ChatModel {
public:
    OllamaChatModel(QString model, QUrl baseURL, QNetworkAccessManager* session);

    AIRoute route() const override;
    std::optional<QString> availabilityProblem() const override;
    QList<AgentAttachment::Kind> nativeAttachments() const override { return {AgentAttachment::Kind::image}; }
    QCoro::AsyncGenerator<AgentEvent> streamReply(QString system, QList<ChatTurn> turns, QList<AgentToolDefinition> tools,
                                                  RunTool runTool) const override;

    // The chat endpoint under a base: a base ending in "/v1/" loses that part, then "api/chat".
    static QUrl chatURL(const QUrl& baseURL);

private:
    static QJsonArray messages(const QString& system, const QList<ChatTurn>& turns);
    static QCoro::AsyncGenerator<AgentEvent> run(OllamaChatModel model, QString system, QList<ChatTurn> turns,
                                                 QList<AgentToolDefinition> tools, RunTool runTool);

    QString _model;
    QUrl _baseURL;
    QNetworkAccessManager* _session;
};

}  // namespace vuro
