#include "agents/MCPToolRef.h"

#include "base/Json.h"

namespace vuro {

QJsonObject MCPToolRef::toJson() const {
    return {{QStringLiteral("serverID"), serverID}, {QStringLiteral("tool"), tool}};
}

MCPToolRef MCPToolRef::fromJson(const QJsonObject& object) {
    return {Json::requireString(object, QStringLiteral("serverID")), Json::requireString(object, QStringLiteral("tool"))};
}

std::strong_ordering MCPToolRef::operator<=>(const MCPToolRef& other) const {
    if (const int c = serverID.compare(other.serverID); c != 0) return c <=> 0;
    return tool.compare(other.tool) <=> 0;
}

size_t qHash(const MCPToolRef& ref, size_t seed) { return qHashMulti(seed, ref.serverID, ref.tool); }

}  // namespace vuro
