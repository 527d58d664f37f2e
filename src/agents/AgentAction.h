#pragma once

#include "agents/AgentUndo.h"

#include <QJsonObject>
#include <QString>
#include <optional>

namespace vuro {

// One change an agent made, shown to the user as a line with an undo chip.
struct AgentAction {
    QString id;
    QString tool;     // the tool's name
    QString summary;  // one line for the user
    std::optional<QString> noteID;
    std::optional<AgentUndo> undo;  // none: the change can't be undone
    bool undone = false;

    QJsonObject toJson() const;
    static AgentAction fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const AgentAction&) const = default;
};

size_t qHash(const AgentAction& action, size_t seed = 0);

}  // namespace vuro
