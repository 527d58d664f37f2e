#include "agents/AgentAction.h"

#include "agents/RecordJson.h"

namespace vuro {

QJsonObject AgentAction::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("tool"), tool},
                       {QStringLiteral("summary"), summary},
                       {QStringLiteral("undone"), undone}};
    Json::putOptional(object, QStringLiteral("noteID"), noteID);
    if (undo) object.insert(QStringLiteral("undo"), undo->toJson());
    return object;
}

AgentAction AgentAction::fromJson(const QJsonObject& object) {
    std::optional<AgentUndo> undo;
    if (const auto u = Json::optionalObject(object, QStringLiteral("undo"))) undo = AgentUndo::fromJson(*u);
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("tool")),
            Json::requireString(object, QStringLiteral("summary")),
            Json::optionalString(object, QStringLiteral("noteID")),
            undo,
            Json::requireBool(object, QStringLiteral("undone"))};
}

size_t qHash(const AgentAction& action, size_t seed) { return qHash(action.toJson(), seed); }

}  // namespace vuro
