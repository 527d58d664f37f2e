#include "agents/AgentUndo.h"

#include "agents/Overloaded.h"
#include "agents/RecordJson.h"

namespace vuro {
namespace {

const QString kNoteID = QStringLiteral("noteID");
const QString kBefore = QStringLiteral("before");
const QString kAfter = QStringLiteral("after");

QJsonObject tagged(const char* name, const QJsonObject& payload) { return {{QLatin1String(name), payload}}; }

}  // namespace

QJsonObject AgentUndo::toJson() const {
    return std::visit(
        Overloaded{
            [](const RestoreBody& u) {
                return tagged("restoreBody", {{kNoteID, u.noteID}, {kBefore, u.before}, {kAfter, u.after}});
            },
            [](const DeleteNote& u) { return tagged("deleteNote", {{kNoteID, u.noteID}, {kAfter, u.after}}); },
            [](const RestoreMemory& u) {
                return tagged("restoreMemory", {{QStringLiteral("agentID"), u.agentID}, {kBefore, u.before}});
            },
            [](const UnarchiveNote& u) { return tagged("unarchiveNote", {{kNoteID, u.noteID}}); },
            [](const RestoreTags& u) {
                return tagged("restoreTags", {{kNoteID, u.noteID},
                                              {kBefore, Json::fromStrings(u.before)},
                                              {kAfter, Json::fromStrings(u.after)}});
            },
            [](const RestoreFolder& u) {
                QJsonObject payload{{kNoteID, u.noteID}};
                Json::putOptional(payload, kBefore, u.before);
                Json::putOptional(payload, kAfter, u.after);
                return tagged("restoreFolder", payload);
            },
            [](const DeleteJob& u) { return tagged("deleteJob", {{QStringLiteral("jobID"), u.jobID}}); },
            [](const RestoreJob& u) { return tagged("restoreJob", {{QStringLiteral("_0"), u.job.toJson()}}); },
            [](const RevertJob& u) {
                return tagged("revertJob", {{kBefore, u.before.toJson()}, {kAfter, u.after.toJson()}});
            },
        },
        value);
}

AgentUndo AgentUndo::fromJson(const QJsonObject& object) {
    const auto [name, value] = Json::singleKey(object);
    const QJsonObject p = Json::casePayload(value);
    if (name == QLatin1String("restoreBody"))
        return {RestoreBody{Json::requireString(p, kNoteID), Json::requireString(p, kBefore),
                            Json::requireString(p, kAfter)}};
    if (name == QLatin1String("deleteNote"))
        return {DeleteNote{Json::requireString(p, kNoteID), Json::requireString(p, kAfter)}};
    if (name == QLatin1String("restoreMemory"))
        return {RestoreMemory{Json::requireString(p, QStringLiteral("agentID")), Json::requireString(p, kBefore)}};
    if (name == QLatin1String("unarchiveNote")) return {UnarchiveNote{Json::requireString(p, kNoteID)}};
    if (name == QLatin1String("restoreTags"))
        return {RestoreTags{Json::requireString(p, kNoteID), Json::toStrings(Json::requireArray(p, kBefore)),
                            Json::toStrings(Json::requireArray(p, kAfter))}};
    if (name == QLatin1String("restoreFolder"))
        return {RestoreFolder{Json::requireString(p, kNoteID), Json::optionalString(p, kBefore),
                              Json::optionalString(p, kAfter)}};
    if (name == QLatin1String("deleteJob")) return {DeleteJob{Json::requireString(p, QStringLiteral("jobID"))}};
    if (name == QLatin1String("restoreJob"))
        return {RestoreJob{AgentJob::fromJson(Json::requireObject(p, QStringLiteral("_0")))}};
    if (name == QLatin1String("revertJob"))
        return {RevertJob{AgentJob::fromJson(Json::requireObject(p, kBefore)),
                          AgentJob::fromJson(Json::requireObject(p, kAfter))}};
    Json::unknownCase();
}

size_t qHash(const AgentUndo& undo, size_t seed) { return qHash(undo.toJson(), seed); }

}  // namespace vuro
