#include "agents/AgentSkill.h"

#include "base/Json.h"

namespace vuro {

QJsonObject AgentSkill::toJson() const {
    QJsonObject fileObject;
    for (auto it = files.cbegin(); it != files.cend(); ++it) fileObject.insert(it.key(), it.value());
    return {{QStringLiteral("id"), id},
            {QStringLiteral("name"), name},
            {QStringLiteral("summary"), summary},
            {QStringLiteral("instructions"), instructions},
            {QStringLiteral("files"), fileObject},
            {QStringLiteral("enabled"), enabled}};
}

AgentSkill AgentSkill::fromJson(const QJsonObject& object) {
    const QJsonObject fileObject = Json::requireObject(object, QStringLiteral("files"));
    QMap<QString, QString> files;
    for (auto it = fileObject.begin(); it != fileObject.end(); ++it) {
        if (!it->isString())
            throw DecodingError(QStringLiteral("Expected to decode String for key \"%1\".").arg(it.key()));
        files.insert(it.key(), it->toString());
    }
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("name")),
            Json::requireString(object, QStringLiteral("summary")),
            Json::requireString(object, QStringLiteral("instructions")),
            files,
            Json::requireBool(object, QStringLiteral("enabled"))};
}

size_t qHash(const AgentSkill& skill, size_t seed) { return qHash(skill.toJson(), seed); }

}  // namespace vuro
