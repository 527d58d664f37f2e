#include "models/AnthropicChatModel.h"

#include "models/AIProviderError.h"
#include "models/AnthropicStreamTurn.h"
#include "models/AttachmentText.h"
#include "models/ChatModelError.h"
#include "models/LineStream.h"
#include "models/ToolSchema.h"

namespace vuro {
namespace {

constexpr int maxToolRounds = 5;  // the sixth response's tools still run, then the run fails
constexpr int maxPauses = 4;

bool startsWithAny(const QString& model, std::initializer_list<const char*> prefixes) {
    for (const char* prefix : prefixes)
        if (model.startsWith(QLatin1String(prefix))) return true;
    return false;
}

QJsonObject base64Source(const QString& mediaType, const QByteArray& data) {
    return {{QLatin1String("type"), QLatin1String("base64")},
            {QLatin1String("media_type"), mediaType},
            {QLatin1String("data"), QString::fromLatin1(data.toBase64())}};
}

}  // namespace

AnthropicChatModel::AnthropicChatModel(QString model, std::optional<QString> apiKey, QUrl baseURL,
                                       QNetworkAccessManager* session, bool webTools)
    : _model(std::move(model)), _apiKey(std::move(apiKey)), _baseURL(std::move(baseURL)), _session(session),
      _webTools(webTools) {}

std::optional<QString> AnthropicChatModel::availabilityProblem() const {
    if (!_apiKey || _apiKey->isEmpty()) return AIProviderError::missingKey(QStringLiteral("Anthropic")).message();
    if (_model.isEmpty()) return AIProviderError::missingModel().message();
    return std::nullopt;
}

bool AnthropicChatModel::takesEffort(const QString& model) {
    return startsWithAny(model, {"claude-opus-5", "claude-sonnet-5", "claude-haiku-5", "claude-fable-5", "claude-opus-4-8",
                                 "claude-opus-4-7", "claude-opus-4-6", "claude-sonnet-4-6"});
}

bool AnthropicChatModel::inFallbackSet(const QString& model) {
    static const QStringList set{"claude-opus-5-5", "claude-opus-5", "claude-fable-5-1", "claude-sonnet-5-5"};
    return set.contains(model);
}

bool AnthropicChatModel::takesNewerWebTools(const QString& model) {
    return startsWithAny(model, {"claude-opus-5", "claude-opus-4-8", "claude-opus-4-7", "claude-opus-4-6",
                                 "claude-sonnet-5", "claude-sonnet-4-6"});
}

HttpHeaders AnthropicChatModel::headers(const std::optional<QString>& apiKey, const QString& model) {
    if (!apiKey || apiKey->isEmpty()) throw AIProviderError::missingKey(QStringLiteral("Anthropic"));
    if (model.isEmpty()) throw AIProviderError::missingModel();
    HttpHeaders headers{{"x-api-key", apiKey->toUtf8()}, {"anthropic-version", "2026-10-21"}};
    if (inFallbackSet(model)) headers.append(std::pair<QByteArray, QByteArray>("anthropic-beta", "server-side-fallback-2026-07-01"));
    return headers;
}

QJsonObject AnthropicChatModel::message(const ChatTurn& turn) {
    const QString text = attachmentText(false, turn.text, turn.attachments);
    QJsonObject message{{QLatin1String("role"), turn.roleText()}};
    if (!turn.hasNativeAttachment()) {
        message.insert(QLatin1String("content"), text);
        return message;
    }
    QJsonArray content;
    for (const ChatAttachment& attachment : turn.attachments) {
        if (const auto* image = std::get_if<ChatAttachment::Image>(&attachment.content)) {
            content.append(QJsonObject{{QLatin1String("type"), QLatin1String("image")},
                                       {QLatin1String("source"), base64Source(image->mediaType, image->data)}});
        } else if (const auto* pdf = std::get_if<ChatAttachment::Pdf>(&attachment.content)) {
            content.append(QJsonObject{{QLatin1String("type"), QLatin1String("document")},
                                       {QLatin1String("title"), attachment.info.name},
                                       {QLatin1String("source"), base64Source(QStringLiteral("application/pdf"), pdf->data)}});
        }
    }
    if (!text.isEmpty()) content.append(QJsonObject{{QLatin1String("type"), QLatin1String("text")}, {QLatin1String("text"), text}});
    message.insert(QLatin1String("content"), content);
    return message;
}

QJsonArray AnthropicChatModel::toolList(const QList<AgentToolDefinition>& tools) const {
    QJsonArray list;
    for (const AgentToolDefinition& spec : tools)
        list.append(QJsonObject{{QLatin1String("name"), spec.name},
                                {QLatin1String("description"), spec.description},
                                {QLatin1String("input_schema"), toolInputSchema(spec)},
                                {QLatin1String("eager_input_streaming"), true}});
    if (_webTools) {
        const bool newer = takesNewerWebTools(_model);
        list.append(QJsonObject{{QLatin1String("type"), newer ? QLatin1String("web_search_20260209") : QLatin1String("web_search_20250305")},
                                {QLatin1String("name"), QLatin1String("web_search")},
                                {QLatin1String("max_uses"), 5}});
        list.append(QJsonObject{{QLatin1String("type"), newer ? QLatin1String("web_fetch_20260209") : QLatin1String("web_fetch_20250910")},
                                {QLatin1String("name"), QLatin1String("web_fetch")},
                                {QLatin1String("max_uses"), 5}});
    }
    return list;
}

JsonRequest AnthropicChatModel::request(const QString& system, const QJsonArray& messages, const QJsonArray& tools) const {
    const HttpHeaders headerList = headers(_apiKey, _model);
    QJsonObject body{{QLatin1String("model"), _model},
                     {QLatin1String("max_tokens"), 64000},
                     {QLatin1String("stream"), true},
                     {QLatin1String("messages"), messages}};
    if (!system.isEmpty()) body.insert(QLatin1String("system"), system);
    if (!tools.isEmpty()) body.insert(QLatin1String("tools"), tools);
    if (takesEffort(_model)) body.insert(QLatin1String("output_config"), QJsonObject{{QLatin1String("effort"), QLatin1String("medium")}});
    if (inFallbackSet(_model)) body.insert(QLatin1String("fallbacks"), QLatin1String("default"));
    return jsonRequest(_baseURL.resolved(QUrl(QStringLiteral("messages"))), body, headerList);
}

QCoro::AsyncGenerator<AgentEvent> AnthropicChatModel::streamReply(QString system, QList<ChatTurn> turns,
                                                                  QList<AgentToolDefinition> tools, RunTool runTool) const {
    return run(*this, std::move(system), std::move(turns), std::move(tools), std::move(runTool));
}

QCoro::AsyncGenerator<AgentEvent> AnthropicChatModel::run(AnthropicChatModel model, QString system, QList<ChatTurn> turns,
                                                          QList<AgentToolDefinition> tools, RunTool runTool) {
    QJsonArray messages;
    for (const ChatTurn& turn : turns) messages.append(message(turn));
    const QJsonArray toolList = model.toolList(tools);
    int rounds = 0;
    int pauses = 0;
    QString prefix;

    for (;;) {
        const JsonRequest request = model.request(system, messages, toolList);
        AnthropicStreamTurn turn;
        {
            auto lines = lineStream(model._session, request, LineExtract::serverSentEvents);
            for (auto it = co_await lines.begin(); it != lines.end(); co_await ++it) {
                if (turn.apply(*it) && !turn.text().isEmpty()) {
                    AgentEvent event = AgentEvent::text(prefix + turn.text());
                    co_yield event;
                }
                if (auto server = turn.takeServerToolStart()) {
                    AgentEvent event = AgentEvent::toolStarted(*server);
                    co_yield event;
                }
            }
        }
        const QString total = prefix + turn.text();
        const QString stopReason = turn.stopReason().value_or(QString());
        const QJsonObject assistant{{QLatin1String("role"), QLatin1String("assistant")}, {QLatin1String("content"), turn.blocks()}};

        if (stopReason == QLatin1String("refusal")) throw AIProviderError::refusal();
        if (stopReason == QLatin1String("pause_turn") && pauses < maxPauses) {
            // The server stopped a long turn of its own tools; sending its blocks back resumes it.
            messages.append(assistant);
            ++pauses;
        } else {
            const QList<AnthropicStreamTurn::ToolUse> uses = turn.toolUses();
            if (stopReason != QLatin1String("tool_use") || uses.isEmpty()) co_return;
            messages.append(assistant);
            QJsonArray results;
            for (qsizetype i = 0; i < uses.size(); ++i) {
                const AnthropicStreamTurn::ToolUse use = uses[i];
                QJsonObject result{{QLatin1String("type"), QLatin1String("tool_result")}, {QLatin1String("tool_use_id"), use.id}};
                if (!use.input) {
                    result.insert(QLatin1String("is_error"), true);
                    result.insert(QLatin1String("content"), QStringLiteral("Invalid JSON input, try again: ") + use.raw);
                    results.append(result);
                    continue;
                }
                AgentEvent started = AgentEvent::toolStarted(use.name);
                co_yield started;
                QCoro::Task<AgentToolOutcome> running = runTool(AgentToolCall{use.id, use.name, textArguments(*use.input)});
                const AgentToolOutcome outcome = co_await std::move(running);
                const QList<AgentEvent> actions = actionEvents(outcome);
                for (qsizetype j = 0; j < actions.size(); ++j) {
                    AgentEvent event = actions[j];
                    co_yield event;
                }
                result.insert(QLatin1String("content"), outcome.output);
                results.append(result);
            }
            messages.append(QJsonObject{{QLatin1String("role"), QLatin1String("user")}, {QLatin1String("content"), results}});
            if (++rounds > maxToolRounds) throw ChatModelError::tooManyToolRounds();
        }
        prefix = total.isEmpty() ? QString() : total + QLatin1String("\n\n");
    }
}

}  // namespace vuro
