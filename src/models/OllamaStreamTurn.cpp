#include "models/OllamaStreamTurn.h"

#include "models/AIProviderError.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vuro {

bool OllamaStreamTurn::apply(QByteArrayView line) {
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(line.data(), line.size()));
    if (!document.isObject()) return false;
    const QJsonObject object = document.object();
    const QJsonValue error = object.value(QLatin1String("error"));
    if (error.isString()) throw AIProviderError::http(500, error.toString());
    if (object.value(QLatin1String("done")).toBool()) {
        const QJsonValue reason = object.value(QLatin1String("done_reason"));
        _doneReason = reason.isString() ? reason.toString() : QStringLiteral("stop");
    }
    const QJsonObject message = object.value(QLatin1String("message")).toObject();
    for (const QJsonValue& entry : message.value(QLatin1String("tool_calls")).toArray()) {
        const QJsonObject function = entry.toObject().value(QLatin1String("function")).toObject();
        const QString name = function.value(QLatin1String("name")).toString();
        if (name.isEmpty()) continue;
        ToolCall call{std::nullopt, name, QStringLiteral("{}")};
        const QJsonValue arguments = function.value(QLatin1String("arguments"));
        if (arguments.isString()) {
            call.arguments = arguments.toString();
        } else if (!arguments.isUndefined()) {
            // Written inside an array so that any JSON value, not only objects, gets its text.
            const QByteArray wrapped = QJsonDocument(QJsonArray{arguments}).toJson(QJsonDocument::Compact);
            call.arguments = QString::fromUtf8(wrapped.mid(1, wrapped.size() - 2));
        }
        const QString id = entry.toObject().value(QLatin1String("id")).toString();
        if (!id.isEmpty()) call.id = id;
        _toolCalls.append(call);
    }
    const QString content = message.value(QLatin1String("content")).toString();
    if (content.isEmpty()) return false;
    _text += content;
    return true;
}

}  // namespace vuro
