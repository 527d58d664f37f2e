#pragma once

#include "agents/Agent.h"
#include "agents/AgentAttachmentDraft.h"
#include "agents/AgentJob.h"
#include "agents/AgentMessage.h"
#include "agents/AgentRouteBudget.h"
#include "agents/AgentUnreadMessages.h"
#include "base/Async.h"
#include "models/ChatModel.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <functional>
#include <memory>
#include <optional>

namespace vuro {

class AgentAttachmentFiles;
class AgentPersistence;
class NoteStore;

// The agent runtime: the list of agents (the built-in one always among them), their jobs, every
// conversation (loaded on first use) and the replies under way, one per agent. A user's message
// becomes a reply through the agent's chat model, with the note tools at hand; each change a tool
// makes is kept on the reply and can be undone. A store failure never stops a conversation: the
// state in memory goes on and lastError says why until the next save succeeds. Main thread.
class AgentCenter : public QObject {
    Q_OBJECT
public:
    using ModelFor = std::function<std::unique_ptr<ChatModel>(const Agent&)>;

    AgentCenter(std::shared_ptr<AgentPersistence> persistence, NoteStore* notes,
                std::shared_ptr<AgentAttachmentFiles> attachmentFiles, ModelFor modelFor, Defaults* preferences,
                bool turkish, QObject* parent = nullptr);
    ~AgentCenter() override;

    const QList<Agent>& agents() const { return _agents; }
    const QList<AgentJob>& jobs() const { return _jobs; }
    const QSet<QString>& replying() const { return _replying; }
    const std::optional<QString>& lastError() const { return _lastError; }
    std::optional<Agent> agent(const QString& id) const;
    // The conversation, read from the store on first use.
    const QList<AgentMessage>& conversation(const QString& agentID);
    // The key of what the agent's reply is doing now: a tool's name, "mcp.connecting", …
    std::optional<QString> activity(const QString& agentID) const;
    AgentUnreadMessages& unread() { return _unread; }

    // False when nothing was sent: blank text without attachments, an unknown agent, a reply
    // already under way, or attachments that couldn't be saved (lastError says why).
    bool send(const QString& text, const QList<AgentAttachmentDraft>& attachments, const QString& agentID);
    void cancelReply(const QString& agentID);
    void clearConversation(const QString& agentID);
    void save(const Agent& agent);
    // Refused for the built-in agent.
    bool remove(const QString& agentID);
    // Puts back one action of a reply. Returns the sentence for the chip when the note was edited
    // since, none when it was undone (or there was nothing to undo).
    std::optional<QString> undo(const QString& actionID, const QString& messageID);

    // Where the sealed attachment files of messages are; a job keeps its own.
    AgentAttachmentFiles& attachmentFiles() { return *_attachmentFiles; }

    // Appends a message, keeping the last 200 and removing the files only dropped messages held.
    void append(const AgentMessage& message, bool saveIt);

    static constexpr int keptMessages = 200;

Q_SIGNALS:
    void agentsChanged();
    void conversationChanged(const QString& agentID);
    void replyingChanged();
    void activityChanged();
    void lastErrorChanged();

private:
    struct Result {
        QString text;
        QList<AgentAction> actions;
        std::optional<QString> failure;
    };
    struct Reply;

    QCoro::Task<> reply(QString agentID, QString messageID, QList<ChatTurn> turns, CancelToken token);
    QCoro::Task<Result> runOnce(Agent agent, QList<ChatTurn> turns, std::optional<QString> messageID, CancelToken token);
    QCoro::Task<QList<ChatTurn>> readyAttachments(QList<ChatTurn> turns, QList<AgentAttachment::Kind> native, int budget);
    void finish(const QString& agentID, const QString& messageID, const Result& result);
    void publish(const AgentMessage& message);
    AgentMessage* message(const QString& agentID, const QString& messageID);
    void setActivity(const QString& agentID, std::optional<QString> key);
    void setLastError(std::optional<QString> error);
    template <typename F>
    void store(F&& write);
    QSet<QString> attachmentIDsOfJobs() const;

    QList<Agent> _agents;
    QList<AgentJob> _jobs;
    QSet<QString> _replying;
    QHash<QString, QString> _toolActivity;
    std::optional<QString> _lastError;
    QHash<QString, QList<AgentMessage>> _conversations;
    QHash<QString, std::shared_ptr<Reply>> _replies;

    std::shared_ptr<AgentPersistence> _persistence;
    QPointer<NoteStore> _notes;
    std::shared_ptr<AgentAttachmentFiles> _attachmentFiles;
    ModelFor _modelFor;
    AgentUnreadMessages _unread;
    bool _turkish;
};

}  // namespace vuro
