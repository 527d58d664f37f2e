#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

namespace vuro {

// A skill an agent can use: instructions with the texts of the files that came with them.
struct AgentSkill {
    QString id;
    QString name;
    QString summary;
    QString instructions;
    QMap<QString, QString> files;  // relative path to the file's text
    bool enabled = true;

    QJsonObject toJson() const;
    static AgentSkill fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const AgentSkill&) const = default;
};

size_t qHash(const AgentSkill& skill, size_t seed = 0);

}  // namespace vuro
