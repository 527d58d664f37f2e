#pragma once

#include "agents/AIProviderKind.h"
#include "models/ChatModel.h"
#include "models/JsonRequest.h"

#include <QJsonArray>
#include <QUrl>

class QNetworkAccessManager;

namespace vuro {

// The chat back-end on the chat-completions protocol: OpenAI, Gemini through Google's compatible
// endpoint, and LM Studio. Tool calls are assembled from streamed pieces; at most six responses
// with tools, then tooManyToolRounds. Calls cut off by the length limit are never run.
// Failures: AIProviderError (key, model, HTTP), ChatModelError.
class OpenAICompatibleChatModel : public ChatModel {
public:
    OpenAICompatibleChatModel(AIProviderKind kind, QString model, std::optional<QString> apiKey, QUrl baseURL,
                              QNetworkAccessManager* session);

    AIRoute route() const override;
    std::optional<QString> availabilityProblem() const override;
    QList<AgentAttachment::Kind> nativeAttachments() const override;
    QCoro::AsyncGenerator<AgentEvent> streamReply(QString system, QList<ChatTurn> turns, QList<AgentToolDefinition> tools,
                                                  RunTool runTool) const override;

    // The system message (when there is a system text) and one message per turn.
    static QJsonArray messages(const QString& system, const QList<ChatTurn>& turns);
    // Tools in the "function" form, shared with Ollama.
    static QJsonArray toolList(const QList<AgentToolDefinition>& tools);

private:
    JsonRequest request(const QJsonArray& messages, const QJsonArray& tools) const;
    static QCoro::AsyncGenerator<AgentEvent> run(OpenAICompatibleChatModel model, QString system, QList<ChatTurn> turns,
                                                 QList<AgentToolDefinition> tools, RunTool runTool);

    AIProviderKind _kind;
    QString _model;
    std::optional<QString> _apiKey;
    QUrl _baseURL;
    QNetworkAccessManager* _session;
};

}  // namespace vuro
