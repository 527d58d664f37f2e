#include "models/OpenAICompatibleChatModel.h"

#include "models/AIProviderError.h"
#include "models/AIProviderSettings.h"
#include "models/AttachmentText.h"
#include "models/ChatModelError.h"
#include "models/LineStream.h"
#include "models/OpenAIStreamTurn.h"
#include "models/ToolSchema.h"

#include <QJsonObject>

namespace vuro {
namespace {
constexpr int maxToolRounds = 5;  // the sixth response's tools still run, then the run fails

QString dataURL(const QString& mediaType, const QByteArray& data) {
    return QStringLiteral("data:%1;base64,%2").arg(mediaType, QString::fromLatin1(data.toBase64()));
}
}  // namespace

OpenAICompatibleChatModel::OpenAICompatibleChatModel(AIProviderKind kind, QString model, std::optional<QString> apiKey,
                                                     QUrl baseURL, QNetworkAccessManager* session)
    : _kind(kind), _model(std::move(model)), _apiKey(std::move(apiKey)), _baseURL(std::move(baseURL)), _session(session) {}

AIRoute OpenAICompatibleChatModel::route() const {
    if (AIProviderSettings::takesKey(_kind)) return AIRoute::cloud(AIProviderSettings::displayName(_kind));
    const QString host = _baseURL.host();
    return AIRoute::localServer(host.isEmpty() ? QStringLiteral("localhost") : host);
}

std::optional<QString> OpenAICompatibleChatModel::availabilityProblem() const {
    if (AIProviderSettings::takesKey(_kind) && (!_apiKey || _apiKey->isEmpty()))
        return AIProviderError::missingKey(AIProviderSettings::displayName(_kind)).message();
    if (_model.isEmpty()) return AIProviderError::missingModel().message();
    return std::nullopt;
}

QList<AgentAttachment::Kind> OpenAICompatibleChatModel::nativeAttachments() const {
    if (_kind == AIProviderKind::openAI) return {AgentAttachment::Kind::image, AgentAttachment::Kind::pdf};
    return {AgentAttachment::Kind::image};
}

QJsonArray OpenAICompatibleChatModel::messages(const QString& system, const QList<ChatTurn>& turns) {
    QJsonArray list;
    if (!system.isEmpty()) list.append(QJsonObject{{QLatin1String("role"), QLatin1String("system")}, {QLatin1String("content"), system}});
    for (const ChatTurn& turn : turns) {
        const QString text = attachmentText(false, turn.text, turn.attachments);
        if (!turn.hasNativeAttachment()) {
            list.append(QJsonObject{{QLatin1String("role"), turn.roleText()}, {QLatin1String("content"), text}});
            continue;
        }
        QJsonArray content;
        for (const ChatAttachment& attachment : turn.attachments) {
            if (const auto* image = std::get_if<ChatAttachment::Image>(&attachment.content)) {
                content.append(QJsonObject{{QLatin1String("type"), QLatin1String("image_url")},
                                           {QLatin1String("image_url"), QJsonObject{{QLatin1String("url"), dataURL(image->mediaType, image->data)}}}});
            } else if (const auto* pdf = std::get_if<ChatAttachment::Pdf>(&attachment.content)) {
                content.append(QJsonObject{
                    {QLatin1String("type"), QLatin1String("file")},
                    {QLatin1String("file"), QJsonObject{{QLatin1String("filename"), attachment.info.name},
                                                        {QLatin1String("file_data"), dataURL(QStringLiteral("application/pdf"), pdf->data)}}}});
            }
        }
        if (!text.isEmpty()) content.append(QJsonObject{{QLatin1String("type"), QLatin1String("text")}, {QLatin1String("text"), text}});
        list.append(QJsonObject{{QLatin1String("role"), turn.roleText()}, {QLatin1String("content"), content}});
    }
    return list;
}

QJsonArray OpenAICompatibleChatModel::toolList(const QList<AgentToolDefinition>& tools) {
    QJsonArray list;
    for (const AgentToolDefinition& spec : tools)
        list.append(QJsonObject{{QLatin1String("type"), QLatin1String("function")},
                                {QLatin1String("function"), QJsonObject{{QLatin1String("name"), spec.name},
                                                                        {QLatin1String("description"), spec.description},
                                                                        {QLatin1String("parameters"), toolInputSchema(spec)}}}});
    return list;
}

JsonRequest OpenAICompatibleChatModel::request(const QJsonArray& messages, const QJsonArray& tools) const {
    if (AIProviderSettings::takesKey(_kind) && (!_apiKey || _apiKey->isEmpty()))
        throw AIProviderError::missingKey(AIProviderSettings::displayName(_kind));
    if (_model.isEmpty()) throw AIProviderError::missingModel();
    HttpHeaders headers;
    if (_apiKey && !_apiKey->isEmpty()) headers.append(std::pair<QByteArray, QByteArray>("Authorization", "Bearer " + _apiKey->toUtf8()));
    QJsonObject body{{QLatin1String("model"), _model}, {QLatin1String("messages"), messages}, {QLatin1String("stream"), true}};
    if (!tools.isEmpty()) body.insert(QLatin1String("tools"), tools);
    return jsonRequest(_baseURL.resolved(QUrl(QStringLiteral("chat/completions"))), body, headers);
}

QCoro::AsyncGenerator<AgentEvent> OpenAICompatibleChatModel::streamReply(QString system, QList<ChatTurn> turns,
                                                                         QList<AgentToolDefinition> tools, RunTool runTool) const {
    return run(*this, std::move(system), std::move(turns), std::move(tools), std::move(runTool));
}

QCoro::AsyncGenerator<AgentEvent> OpenAICompatibleChatModel::run(OpenAICompatibleChatModel model, QString system,
                                                                 QList<ChatTurn> turns, QList<AgentToolDefinition> tools,
                                                                 RunTool runTool) {
    QJsonArray messages = OpenAICompatibleChatModel::messages(system, turns);
    const QJsonArray toolList = OpenAICompatibleChatModel::toolList(tools);
    int rounds = 0;
    QString prefix;

    for (;;) {
        const JsonRequest request = model.request(messages, toolList);
        OpenAIStreamTurn turn;
        {
            auto lines = lineStream(model._session, request, LineExtract::serverSentEvents);
            for (auto it = co_await lines.begin(); it != lines.end(); co_await ++it) {
                if (turn.apply(*it) && !turn.text().isEmpty()) {
                    AgentEvent event = AgentEvent::text(prefix + turn.text());
                    co_yield event;
                }
            }
        }
        const QString total = prefix + turn.text();
        const QList<OpenAIStreamTurn::ToolCall> calls = turn.calls();
        if (calls.isEmpty() || turn.finishReason() == QLatin1String("length")) co_return;

        QJsonArray toolCalls;
        for (const OpenAIStreamTurn::ToolCall& call : calls)
            toolCalls.append(QJsonObject{{QLatin1String("id"), call.id},
                                         {QLatin1String("type"), QLatin1String("function")},
                                         {QLatin1String("function"), QJsonObject{{QLatin1String("name"), call.name},
                                                                                 {QLatin1String("arguments"), call.arguments}}}});
        messages.append(QJsonObject{{QLatin1String("role"), QLatin1String("assistant")},
                                    {QLatin1String("content"), turn.text().isEmpty() ? QJsonValue() : QJsonValue(turn.text())},
                                    {QLatin1String("tool_calls"), toolCalls}});

        for (qsizetype i = 0; i < calls.size(); ++i) {
            const OpenAIStreamTurn::ToolCall call = calls[i];
            QJsonObject result{{QLatin1String("role"), QLatin1String("tool")}, {QLatin1String("tool_call_id"), call.id}};
            const auto arguments = toolArguments(call.arguments);
            if (!arguments) {
                result.insert(QLatin1String("content"), QStringLiteral("Invalid JSON arguments, try again: ") + call.arguments);
                messages.append(result);
                continue;
            }
            AgentEvent started = AgentEvent::toolStarted(call.name);
            co_yield started;
            QCoro::Task<AgentToolOutcome> running = runTool(AgentToolCall{call.id, call.name, textArguments(*arguments)});
            const AgentToolOutcome outcome = co_await std::move(running);
            const QList<AgentEvent> actions = actionEvents(outcome);
            for (qsizetype j = 0; j < actions.size(); ++j) {
                AgentEvent event = actions[j];
                co_yield event;
            }
            result.insert(QLatin1String("content"), outcome.output);
            messages.append(result);
        }
        if (rounds == maxToolRounds) throw ChatModelError::tooManyToolRounds();
        ++rounds;
        prefix = total.isEmpty() ? QString() : total + QLatin1String("\n\n");
    }
}

}  // namespace vuro
