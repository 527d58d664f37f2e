#include "notes/NoteOrigin.h"

#include "base/Json.h"

namespace vuro {

QString NoteOrigin::originID() const {
    if (const auto* drop = std::get_if<FromDrop>(&value)) return drop->dropID;
    if (const auto* agent = std::get_if<FromAgent>(&value)) return agent->runID;
    return {};
}

QJsonObject NoteOrigin::toJson() const {
    if (const auto* drop = std::get_if<FromDrop>(&value)) {
        return {{QStringLiteral("drop"), QJsonObject{{QStringLiteral("channelID"), drop->channelID},
                                                      {QStringLiteral("dropID"), drop->dropID},
                                                      {QStringLiteral("senderName"), drop->senderName}}}};
    }
    if (const auto* agent = std::get_if<FromAgent>(&value)) {
        return {{QStringLiteral("agent"), QJsonObject{{QStringLiteral("agentID"), agent->agentID},
                                                       {QStringLiteral("runID"), agent->runID},
                                                       {QStringLiteral("agentName"), agent->agentName}}}};
    }
    return {{QStringLiteral("local"), QJsonObject{}}};
}

NoteOrigin NoteOrigin::fromJson(const QJsonObject& object) {
    const auto [name, payloadValue] = Json::singleKey(object);
    if (!payloadValue.isObject()) {
        throw DecodingError(QStringLiteral("Expected to decode Dictionary for key \"%1\".").arg(name));
    }
    const QJsonObject payload = payloadValue.toObject();
    if (name == QLatin1String("local")) return local();
    if (name == QLatin1String("drop")) {
        return drop(Json::requireString(payload, QStringLiteral("channelID")),
                    Json::requireString(payload, QStringLiteral("dropID")),
                    Json::requireString(payload, QStringLiteral("senderName")));
    }
    if (name == QLatin1String("agent")) {
        return agent(Json::requireString(payload, QStringLiteral("agentID")),
                     Json::requireString(payload, QStringLiteral("runID")),
                     Json::requireString(payload, QStringLiteral("agentName")));
    }
    throw DecodingError(QStringLiteral("Cannot initialize NoteOrigin from invalid key \"%1\".").arg(name));
}

}  // namespace vuro
