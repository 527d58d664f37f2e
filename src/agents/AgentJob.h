#pragma once

#include "agents/AgentAttachment.h"
#include "agents/JobCalendar.h"
#include "agents/JobToolPermission.h"
#include "agents/RawEnum.h"
#include "agents/Recurrence.h"
#include "base/Clock.h"
#include "base/Ids.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>
#include <variant>

namespace vuro {

// Work an agent was told to do later, once or on a schedule. A default-made job is a fresh one:
// new id, enabled, to run now, created at this moment.
struct AgentJob {
    struct Trigger {
        struct Once {
            QDateTime date;
            bool operator==(const Once&) const = default;
        };
        struct Repeating {
            Recurrence recurrence;
            bool operator==(const Repeating&) const = default;
        };
        // A run asked for at this moment, with no schedule.
        struct Now {
            bool operator==(const Now&) const = default;
        };

        std::variant<Once, Repeating, Now> value = Now{};

        bool isRepeating() const { return std::holds_alternative<Repeating>(value); }

        QJsonObject toJson() const;
        static Trigger fromJson(const QJsonObject& object);  // throws DecodingError

        bool operator==(const Trigger&) const = default;
    };

    enum class Status { succeeded, failed, missed };

    QString id = newId();
    QString agentID;
    QString title;
    QString instruction;
    std::optional<QString> noteID;  // a note given to every run as context
    Trigger trigger;
    bool enabled = true;
    QDateTime createdAt = Clock::now();
    std::optional<QDateTime> lastRun;
    std::optional<Status> lastStatus;
    std::optional<QString> lastError;
    QList<AgentAttachment> attachments;  // files given to every run
    std::optional<JobToolPermission> toolPermission;

    // When the job next falls due, or none. A repeating job that slept through several
    // occurrences runs once, for the first occurrence in the last 24 hours; a one-time job is
    // retired once it ran or was marked missed, and is dropped when more than 24 hours late.
    std::optional<QDateTime> nextRun(const QDateTime& now, const JobCalendar& calendar) const;

    // The jobs whose next run is at or before now, the earliest first.
    static QList<AgentJob> dueJobs(const QList<AgentJob>& jobs, const QDateTime& now, const JobCalendar& calendar);

    QJsonObject toJson() const;
    static AgentJob fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const AgentJob&) const = default;
};

template <>
struct RawNames<AgentJob::Status> {
    static constexpr const char* type = "Status";
    static constexpr std::array cases{
        std::pair{AgentJob::Status::succeeded, "succeeded"},
        std::pair{AgentJob::Status::failed, "failed"},
        std::pair{AgentJob::Status::missed, "missed"},
    };
};

size_t qHash(const AgentJob::Trigger& trigger, size_t seed = 0);
size_t qHash(const AgentJob& job, size_t seed = 0);

}  // namespace vuro
