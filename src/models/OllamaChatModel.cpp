#include "models/OllamaChatModel.h"

#include "models/AIProviderError.h"
#include "models/AttachmentText.h"
#include "models/ChatModelError.h"
#include "models/LineStream.h"
#include "models/OllamaStreamTurn.h"
#include "models/OpenAICompatibleChatModel.h"
#include "models/ToolSchema.h"

#include <QJsonObject>

namespace vuro {
namespace {
constexpr int maxToolRounds = 5;  // the sixth response's tools still run, then the run fails
constexpr int contextLength = 16384;
}  // namespace

OllamaChatModel::OllamaChatModel(QString model, QUrl baseURL, QNetworkAccessManager* session)
    : _model(std::move(model)), _baseURL(std::move(baseURL)), _session(session) {}

AIRoute OllamaChatModel::route() const {
    const QString host = _baseURL.host();
    return AIRoute::localServer(host.isEmpty() ? QStringLiteral("localhost") : host);
}

std::optional<QString> OllamaChatModel::availabilityProblem() const {
    if (_model.isEmpty()) return AIProviderError::missingModel().message();
    return std::nullopt;
}

QUrl OllamaChatModel::chatURL(const QUrl& baseURL) {
    if (!baseURL.isValid() || baseURL.scheme().isEmpty()) return QUrl(baseURL.toString() + QStringLiteral("api/chat"));
    QUrl url = baseURL;
    QString path = url.path();
    if (!path.endsWith(QLatin1Char('/'))) path += QLatin1Char('/');
    if (path.endsWith(QLatin1String("/v1/"))) path.chop(3);
    url.setPath(path + QStringLiteral("api/chat"));
    return url;
}

QJsonArray OllamaChatModel::messages(const QString& system, const QList<ChatTurn>& turns) {
    QJsonArray list;
    if (!system.isEmpty()) list.append(QJsonObject{{QLatin1String("role"), QLatin1String("system")}, {QLatin1String("content"), system}});
    for (const ChatTurn& turn : turns) {
        QJsonObject message{{QLatin1String("role"), turn.roleText()},
                            {QLatin1String("content"), attachmentText(false, turn.text, turn.attachments)}};
        QJsonArray images;
        for (const ChatAttachment& attachment : turn.attachments)
            if (const auto* image = std::get_if<ChatAttachment::Image>(&attachment.content))
                images.append(QString::fromLatin1(image->data.toBase64()));
        if (!images.isEmpty()) message.insert(QLatin1String("images"), images);
        list.append(message);
    }
    return list;
}

QCoro::AsyncGenerator<AgentEvent> OllamaChatModel::streamReply(QString system, QList<ChatTurn> turns,
                                                               QList<AgentToolDefinition> tools, RunTool runTool) const {
    return run(*this, std::move(system), std::move(turns), std::move(tools), std::move(runTool));
}

QCoro::AsyncGenerator<AgentEvent> OllamaChatModel::run(OllamaChatModel model, QString system, QList<ChatTurn> turns,
                                                       QList<AgentToolDefinition> tools, RunTool runTool) {
    if (model._model.isEmpty()) throw AIProviderError::missingModel();
    QJsonArray messages = OllamaChatModel::messages(system, turns);
    const QJsonArray toolList = OpenAICompatibleChatModel::toolList(tools);
    const QUrl url = chatURL(model._baseURL);
    int rounds = 0;
    QString prefix;

    for (;;) {
        QJsonObject body{{QLatin1String("model"), model._model},
                         {QLatin1String("messages"), messages},
                         {QLatin1String("stream"), true},
                         {QLatin1String("options"), QJsonObject{{QLatin1String("num_ctx"), contextLength}}}};
        if (!toolList.isEmpty()) body.insert(QLatin1String("tools"), toolList);
        const JsonRequest request = jsonRequest(url, body);
        OllamaStreamTurn turn;
        {
            auto lines = lineStream(model._session, request, LineExtract::newlineDelimited);
            for (auto it = co_await lines.begin(); it != lines.end(); co_await ++it) {
                if (turn.apply(*it)) {
                    AgentEvent event = AgentEvent::text(prefix + turn.text());
                    co_yield event;
                }
            }
        }
        const QString total = prefix + turn.text();
        const QList<OllamaStreamTurn::ToolCall> calls = turn.toolCalls();
        if (calls.isEmpty() || turn.doneReason() == QLatin1String("length")) co_return;

        QJsonArray toolCalls;
        for (const OllamaStreamTurn::ToolCall& call : calls) {
            QJsonObject entry{{QLatin1String("type"), QLatin1String("function")},
                              {QLatin1String("function"), QJsonObject{{QLatin1String("name"), call.name},
                                                                      {QLatin1String("arguments"), toolArguments(call.arguments).value_or(QJsonObject())}}}};
            if (call.id) entry.insert(QLatin1String("id"), *call.id);
            toolCalls.append(entry);
        }
        messages.append(QJsonObject{{QLatin1String("role"), QLatin1String("assistant")},
                                    {QLatin1String("content"), turn.text()},
                                    {QLatin1String("tool_calls"), toolCalls}});

        for (qsizetype i = 0; i < calls.size(); ++i) {
            const OllamaStreamTurn::ToolCall call = calls[i];
            QJsonObject result{{QLatin1String("role"), QLatin1String("tool")}, {QLatin1String("tool_name"), call.name}};
            if (call.id) result.insert(QLatin1String("tool_call_id"), *call.id);
            const auto arguments = toolArguments(call.arguments);
            if (!arguments) {
                result.insert(QLatin1String("content"), QStringLiteral("Invalid JSON arguments, try again: ") + call.arguments);
                messages.append(result);
                continue;
            }
            AgentEvent started = AgentEvent::toolStarted(call.name);
            co_yield started;
            QCoro::Task<AgentToolOutcome> running = runTool(AgentToolCall{call.id.value_or(QString()), call.name, textArguments(*arguments)});
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
