#pragma once

#include "agents/AgentPersistence.h"
#include "storage/VuroDatabase.h"

#include <memory>

namespace vuro {

// Agents, jobs and messages in VuroDatabase. What holds the user's words goes into sealed JSON:
// an agent's profile (persona, duty, memory, face, skills…), a job's instruction with its files
// and grants, a message's text with its actions and approvals. Names, colours, routes, triggers,
// dates and statuses stay plain in their columns. Keys added to the sealed JSON after its first
// form are optional on reading, so older rows keep loading. A row that can't be opened or read
// fails its whole load (BodyCipher::CipherError, DecodingError). Each write is one durable
// transaction. Main thread only.
class DatabaseAgentPersistence : public AgentPersistence {
public:
    // The sealed part of an agent row.
    struct Profile {
        QString soul;
        QString duty;
        QString memory;
        QString symbol;
        std::optional<QByteArray> avatarImage;
        bool web = false;
        QList<AgentSkill> skills;
        QStringList mcpServers;
        std::optional<AgentFace> face;
        std::optional<CLIToolKind> cliTool;

        QJsonObject toJson() const;
        static Profile fromJson(const QJsonObject& object);  // throws DecodingError
    };

    // The sealed part of a job row. `vuro` marks the JSON form: a row from before it holds the
    // instruction as plain text.
    struct JobPayload {
        static constexpr int formatMarker = 1;
        QString instruction;
        QList<AgentAttachment> attachments;
        std::optional<JobToolPermission> toolPermission;

        QJsonObject toJson() const;
        static JobPayload fromJson(const QJsonObject& object);  // throws DecodingError
        // The payload of a sealed instruction's text, whichever form it was written in.
        static JobPayload fromText(const QString& text);
    };

    // The sealed part of a message row.
    struct Payload {
        QString text;
        QList<AgentAction> actions;
        std::optional<QString> failure;
        QList<AgentAttachment> attachments;
        std::optional<QString> jobTitle;
        QList<MCPApprovalRecord> approvals;
        std::optional<QString> resultNoteID;

        QJsonObject toJson() const;
        static Payload fromJson(const QJsonObject& object);  // throws DecodingError
    };

    explicit DatabaseAgentPersistence(std::shared_ptr<VuroDatabase> database);

    QList<Agent> loadAgents() override;
    void saveAgent(const Agent& agent) override;
    void deleteAgent(const QString& id) override;

    QList<AgentJob> loadJobs() override;
    void saveJob(const AgentJob& job) override;
    void deleteJob(const QString& id) override;

    QList<AgentMessage> loadMessages(const QString& agentID) override;
    void saveMessage(const AgentMessage& message) override;
    void deleteMessages(const QStringList& ids) override;
    void clearMessages(const QString& agentID) override;

private:
    QByteArray seal(const QJsonObject& object);
    QJsonObject openObject(const QByteArray& sealed);

    std::shared_ptr<VuroDatabase> _database;
};

}  // namespace vuro
