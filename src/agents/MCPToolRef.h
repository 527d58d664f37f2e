#pragma once

#include <QJsonObject>
#include <QString>
#include <compare>

namespace vuro {

// One tool of one MCP server, as grants and pre-approvals name it. Ordered by server, then tool.
struct MCPToolRef {
    QString serverID;
    QString tool;

    QJsonObject toJson() const;
    static MCPToolRef fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const MCPToolRef&) const = default;
    std::strong_ordering operator<=>(const MCPToolRef& other) const;
};

size_t qHash(const MCPToolRef& ref, size_t seed = 0);

}  // namespace vuro
