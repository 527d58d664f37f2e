#include "models/OpenAIStreamTurn.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace vuro {

bool OpenAIStreamTurn::apply(QByteArrayView data) {
    if (data == "[DONE]") return false;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(data.data(), data.size()));
    const QJsonArray choices = document.object().value(QLatin1String("choices")).toArray();
    if (choices.isEmpty()) return false;
    const QJsonObject choice = choices.first().toObject();
    const QJsonValue finish = choice.value(QLatin1String("finish_reason"));
    if (finish.isString()) _finishReason = finish.toString();
    const QJsonValue deltaValue = choice.value(QLatin1String("delta"));
    if (!deltaValue.isObject()) return false;
    const QJsonObject delta = deltaValue.toObject();

    const QJsonArray pieces = delta.value(QLatin1String("tool_calls")).toArray();
    const qint64 known = _calls.size();
    for (qint64 i = 0; i < pieces.size(); ++i) {
        const QJsonObject piece = pieces[i].toObject();
        const QJsonValue indexValue = piece.value(QLatin1String("index"));
        const double number = indexValue.toDouble();
        const qint64 index = indexValue.isDouble() && std::isfinite(number) && std::abs(number) < 9e15
                                 ? static_cast<qint64>(number)
                                 : known + i;
        auto call = _calls.find(index);
        if (call == _calls.end()) {
            call = _calls.insert(index, ToolCall());
            _order.append(index);
        }
        const QString id = piece.value(QLatin1String("id")).toString();
        if (!id.isEmpty()) call->id = id;
        const QJsonObject function = piece.value(QLatin1String("function")).toObject();
        const QString name = function.value(QLatin1String("name")).toString();
        if (!name.isEmpty()) call->name = name;
        const QJsonValue arguments = function.value(QLatin1String("arguments"));
        if (arguments.isString()) call->arguments += arguments.toString();
    }

    const QString content = delta.value(QLatin1String("content")).toString();
    if (content.isEmpty()) return false;
    _text += content;
    return true;
}

QList<OpenAIStreamTurn::ToolCall> OpenAIStreamTurn::calls() const {
    QList<ToolCall> result;
    for (const qint64 index : _order) {
        ToolCall call = _calls.value(index);
        if (call.name.isEmpty()) continue;
        if (call.id.isEmpty()) call.id = QStringLiteral("call_%1").arg(index);
        result.append(call);
    }
    return result;
}

}  // namespace vuro
