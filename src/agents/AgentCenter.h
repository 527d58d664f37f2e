#pragma once

#include "agents/Agent.h"
#include "agents/AgentAbilities.h"
#include "agents/AgentAttachmentDraft.h"
#include "agents/AgentJob.h"
#include "agents/AgentJobToolbox.h"
#include "agents/AgentMessage.h"
#include "agents/AgentRouteBudget.h"
#include "agents/AgentUnreadMessages.h"
#include "agents/MCPApprovalDecision.h"
#include "agents/MCPApprovalRecord.h"
#include "agents/MCPApprovalRequest.h"
#include "base/Async.h"
#include "models/ChatModel.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <chrono>
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
// makes is kept on the reply and can be undone. A tool that needs the user's OK asks through
// requestApproval and waits, while the question stands in pendingApprovals. A store failure never
// stops a conversation: the state in memory goes on and lastError says why until the next save
// succeeds. Main thread.
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
    // The key of what the agent's reply is doing now: "mcp.approval" while the agent waits for
    // the user's OK outside a job, else a tool's name, "mcp.connecting", …
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

    // The questions open to the user, oldest first.
    const QList<MCPApprovalRequest>& pendingApprovals() const { return _pendingApprovals; }
    // Puts the question in pendingApprovals and waits for answer(). With a time-out, no answer in
    // that time is noAnswer; cancelling the token is deny. A request whose id is already open
    // gets deny at once.
    QCoro::Task<MCPApprovalDecision> requestApproval(MCPApprovalRequest request,
                                                     std::optional<std::chrono::milliseconds> timeout, CancelToken token);
    // Answers an open question; an unknown id does nothing.
    void answer(const QString& requestID, MCPApprovalDecision decision);

    // How long a job waits for the user's OK before it goes on without it.
    std::chrono::milliseconds jobApprovalTimeout = std::chrono::seconds(600);
    // Make the abilities and the job toolbox of a run; unset, a run has neither.
    AgentAbilities::Make abilitiesFor;
    AgentJobToolbox::Make jobToolboxFor;

Q_SIGNALS:
    void agentsChanged();
    void conversationChanged(const QString& agentID);
    void replyingChanged();
    void activityChanged();
    void lastErrorChanged();
    void pendingApprovalsChanged();

private:
    struct Result {
        QString text;
        QList<AgentAction> actions;
        std::optional<QString> failure;
        QList<MCPApprovalRequest> unattended;  // calls skipped for want of the user's OK
        QList<MCPApprovalRecord> approvals;
    };
    // What the closures of one run append their approval records to.
    struct ApprovalLog {
        QList<MCPApprovalRecord> records;
    };
    // What one run is about, besides the agent and its turns.
    struct Run {
        std::optional<QString> messageID;  // the reply shown while it grows; a job has none
        bool interactive = true;           // someone can be asked for approval
        std::optional<QString> jobID;
        std::optional<QString> jobTitle;
        QSet<MCPToolRef> preApproved;
        std::shared_ptr<ApprovalLog> log = std::make_shared<ApprovalLog>();
    };
    struct Reply;
    struct ApprovalWaiter;

    QCoro::Task<> reply(QString agentID, Run run, QList<ChatTurn> turns, CancelToken token);
    QCoro::Task<Result> runOnce(Agent agent, QList<ChatTurn> turns, Run run, CancelToken token);
    // Asks the user on behalf of a run and keeps the answer in the run's log. Static: the center
    // may be gone when the answer comes.
    static QCoro::Task<MCPApprovalDecision> askUser(QPointer<AgentCenter> center, std::shared_ptr<ApprovalLog> log,
                                                    MCPApprovalRequest request,
                                                    std::optional<std::chrono::milliseconds> timeout, CancelToken token);
    AgentAbilities::Setup abilitiesSetup(const Agent& agent, const AgentRouteBudget& budget, const Run& run,
                                         const CancelToken& token);
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
    QList<MCPApprovalRequest> _pendingApprovals;
    QHash<QString, std::shared_ptr<ApprovalWaiter>> _approvalWaiters;

    std::shared_ptr<AgentPersistence> _persistence;
    QPointer<NoteStore> _notes;
    std::shared_ptr<AgentAttachmentFiles> _attachmentFiles;
    ModelFor _modelFor;
    AgentUnreadMessages _unread;
    bool _turkish;
};

}  // namespace vuro
