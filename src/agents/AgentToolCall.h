#pragma once

#include <QMap>
#include <QString>

namespace vuro {

// A model's request to run one tool. A key missing from arguments reads as empty text.
struct AgentToolCall {
    QString id;  // the model's or back-end's identifier of the call
    QString name;
    QMap<QString, QString> arguments;

    // The argument under key, or empty text when the model left it out.
    QString argument(const QString& key) const { return arguments.value(key); }

    bool operator==(const AgentToolCall&) const = default;
};

size_t qHash(const AgentToolCall& call, size_t seed = 0);

}  // namespace vuro
