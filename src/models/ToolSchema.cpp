#include "models/ToolSchema.h"

#include "base/Text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

namespace vuro {

QJsonObject toolInputSchema(const AgentToolDefinition& spec) {
    if (spec.inputSchema) {
        const QJsonDocument document = QJsonDocument::fromJson(spec.inputSchema->toUtf8());
        if (document.isObject()) {
            QJsonObject schema = document.object();
            schema.remove(QLatin1String("$schema"));
            if (!schema.contains(QLatin1String("type"))) schema.insert(QLatin1String("type"), QLatin1String("object"));
            if (!schema.contains(QLatin1String("properties"))) schema.insert(QLatin1String("properties"), QJsonObject());
            return schema;
        }
    }
    QJsonObject properties;
    QJsonArray required;
    for (const AgentToolDefinition::Parameter& parameter : spec.parameters) {
        QJsonObject property{{QLatin1String("type"), QLatin1String("string")},
                             {QLatin1String("description"), parameter.description}};
        if (parameter.kind.isChoice())
            property.insert(QLatin1String("enum"), QJsonArray::fromStringList(parameter.kind.options));
        properties.insert(parameter.name, property);
        if (parameter.required) required.append(parameter.name);
    }
    return {{QLatin1String("type"), QLatin1String("object")},
            {QLatin1String("properties"), properties},
            {QLatin1String("required"), required},
            {QLatin1String("additionalProperties"), false}};
}

std::optional<QJsonObject> toolArguments(const QString& json) {
    const QString text = Text::trimmed(json);
    if (text.isEmpty()) return QJsonObject();
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) return std::nullopt;
    return document.object();
}

std::optional<QString> stringArgument(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::String: return value.toString();
    case QJsonValue::Bool: return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double: return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QJsonValue::Array: return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    case QJsonValue::Object: return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    case QJsonValue::Null:
    case QJsonValue::Undefined: return std::nullopt;
    }
    return std::nullopt;
}

QMap<QString, QString> textArguments(const QJsonObject& arguments) {
    QMap<QString, QString> result;
    for (auto it = arguments.begin(); it != arguments.end(); ++it)
        if (const auto text = stringArgument(it.value())) result.insert(it.key(), *text);
    return result;
}

}  // namespace vuro
