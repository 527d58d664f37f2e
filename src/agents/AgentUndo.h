#pragma once

#include "agents/AgentJob.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <optional>
#include <variant>

namespace vuro {

// What it takes to put back one change an agent made. The note cases carry the state the tool
// left behind as well, so that an undo can refuse when the user has edited the note since.
struct AgentUndo {
    struct RestoreBody {
        QString noteID;
        QString before;
        QString after;
        bool operator==(const RestoreBody&) const = default;
    };
    struct DeleteNote {
        QString noteID;
        QString after;  // the body as the tool left it
        bool operator==(const DeleteNote&) const = default;
    };
    struct RestoreMemory {
        QString agentID;
        QString before;
        bool operator==(const RestoreMemory&) const = default;
    };
    struct UnarchiveNote {
        QString noteID;
        bool operator==(const UnarchiveNote&) const = default;
    };
    struct RestoreTags {
        QString noteID;
        QStringList before;
        QStringList after;
        bool operator==(const RestoreTags&) const = default;
    };
    struct RestoreFolder {
        QString noteID;
        std::optional<QString> before;  // folder identifiers; none is no folder
        std::optional<QString> after;
        bool operator==(const RestoreFolder&) const = default;
    };
    struct DeleteJob {
        QString jobID;
        bool operator==(const DeleteJob&) const = default;
    };
    // The job as it was before it was removed.
    struct RestoreJob {
        AgentJob job;
        bool operator==(const RestoreJob&) const = default;
    };
    struct RevertJob {
        AgentJob before;
        AgentJob after;
        bool operator==(const RevertJob&) const = default;
    };

    std::variant<RestoreBody, DeleteNote, RestoreMemory, UnarchiveNote, RestoreTags, RestoreFolder, DeleteJob,
                 RestoreJob, RevertJob>
        value;

    QJsonObject toJson() const;
    static AgentUndo fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const AgentUndo&) const = default;
};

size_t qHash(const AgentUndo& undo, size_t seed = 0);

}  // namespace vuro
