#pragma once

#include "models/ChatModel.h"
#include "models/JsonRequest.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>

class QNetworkAccessManager;

namespace vuro {

// The chat back-end on Anthropic's Messages API, streamed. It runs client tools between
// responses (at most six responses with tools, then tooManyToolRounds), lets the server run its
// own web search and fetch when the agent may use the web, and continues a paused turn up to four
// times. Content blocks go back to the server exactly as they came, thinking and signatures
// included. Failures: AIProviderError (key, model, HTTP, stream errors, refusal), ChatModelError.
class AnthropicChatModel : public ChatModel {
public:
    AnthropicChatModel(QString model, std::optional<QString> apiKey, QUrl baseURL, QNetworkAccessManager* session,
                       bool webTools);

    AIRoute route() const override { return AIRoute::cloud(QStringLiteral("Anthropic")); }
    std::optional<QString> availabilityProblem() const override;
    QList<AgentAttachment::Kind> nativeAttachments() const override {
        return {AgentAttachment::Kind::image, AgentAttachment::Kind::pdf};
    }
    QCoro::AsyncGenerator<AgentEvent> streamReply(QString system, QList<ChatTurn> turns, QList<AgentToolDefinition> tools,
                                                  RunTool runTool) const override;

    // Rules by model identifier, shared with the one-shot provider.
    static bool takesEffort(const QString& model);       // output_config.effort
    static bool inFallbackSet(const QString& model);     // fallbacks and the beta header
    static bool takesNewerWebTools(const QString& model);
    // The headers of a request; throws missingKey, then missingModel.
    static HttpHeaders headers(const std::optional<QString>& apiKey, const QString& model);

    static QJsonObject message(const ChatTurn& turn);

private:
    JsonRequest request(const QString& system, const QJsonArray& messages, const QJsonArray& tools) const;
    QJsonArray toolList(const QList<AgentToolDefinition>& tools) const;
    static QCoro::AsyncGenerator<AgentEvent> run(AnthropicChatModel model, QString system, QList<ChatTurn> turns,
                                                 QList<AgentToolDefinition> tools, RunTool runTool);

    QString _model;
    std::optional<QString> _apiKey;
    QUrl _baseURL;
    QNetworkAccessManager* _session;
    bool _webTools;
};

}  // namespace vuro
