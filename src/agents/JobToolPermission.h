#pragma once

#include "agents/MCPToolRef.h"

#include <QList>

namespace vuro {

// MCP tools a job may run without asking. The grant holds only while `instruction` equals the
// job's instruction word for word: editing the instruction voids it silently.
struct JobToolPermission {
    QList<MCPToolRef> tools;
    QString instruction;

    bool isValid(const QString& jobInstruction) const { return instruction == jobInstruction; }

    QJsonObject toJson() const;
    static JobToolPermission fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const JobToolPermission&) const = default;
};

size_t qHash(const JobToolPermission& permission, size_t seed = 0);

}  // namespace vuro
