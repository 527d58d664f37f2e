#pragma once

#include <QJsonObject>
#include <QString>
#include <variant>

namespace vuro {

// Where a note came from. The middle field (dropID, runID) is what a note is looked up by.
struct NoteOrigin {
    struct Local {
        bool operator==(const Local&) const = default;
    };
    struct FromDrop {
        QString channelID, dropID, senderName;
        bool operator==(const FromDrop&) const = default;
    };
    struct FromAgent {
        QString agentID, runID, agentName;
        bool operator==(const FromAgent&) const = default;
    };

    std::variant<Local, FromDrop, FromAgent> value = Local{};

    static NoteOrigin local() { return {}; }
    static NoteOrigin drop(QString channelID, QString dropID, QString senderName) {
        return {FromDrop{std::move(channelID), std::move(dropID), std::move(senderName)}};
    }
    static NoteOrigin agent(QString agentID, QString runID, QString agentName) {
        return {FromAgent{std::move(agentID), std::move(runID), std::move(agentName)}};
    }

    bool isLocal() const { return std::holds_alternative<Local>(value); }
    // dropID or runID; empty for a local note.
    QString originID() const;

    // {"local":{}}, {"drop":{…}}, {"agent":{…}}; decoding throws DecodingError.
    QJsonObject toJson() const;
    static NoteOrigin fromJson(const QJsonObject& object);

    bool operator==(const NoteOrigin&) const = default;
};

}  // namespace vuro
