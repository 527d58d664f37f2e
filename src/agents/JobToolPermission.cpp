#include "agents/JobToolPermission.h"

#include "agents/RecordJson.h"

namespace vuro {

QJsonObject JobToolPermission::toJson() const {
    return {{QStringLiteral("tools"), Json::fromRecords(tools)}, {QStringLiteral("instruction"), instruction}};
}

JobToolPermission JobToolPermission::fromJson(const QJsonObject& object) {
    return {Json::requireRecords<MCPToolRef>(object, QStringLiteral("tools")),
            Json::requireString(object, QStringLiteral("instruction"))};
}

size_t qHash(const JobToolPermission& permission, size_t seed) { return qHash(permission.toJson(), seed); }

}  // namespace vuro
