#include "agents/AgentAttachment.h"

#include "agents/RecordJson.h"

namespace vuro {

QJsonObject AgentAttachment::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("kind"), Json::fromRaw(kind)},
                       {QStringLiteral("mediaType"), mediaType},
                       {QStringLiteral("byteCount"), byteCount}};
    if (duration) object.insert(QStringLiteral("duration"), *duration);
    return object;
}

AgentAttachment AgentAttachment::fromJson(const QJsonObject& object) {
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("name")),
            Json::requireRaw<Kind>(object, QStringLiteral("kind")),
            Json::requireString(object, QStringLiteral("mediaType")),
            Json::requireInteger(object, QStringLiteral("byteCount")),
            Json::optionalDouble(object, QStringLiteral("duration"))};
}

size_t qHash(const AgentAttachment& attachment, size_t seed) { return qHash(attachment.toJson(), seed); }

}  // namespace vuro
