#include "agents/AgentCenter.h"

#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentAttachmentText.h"
#include "agents/AgentPersistence.h"
#include "agents/AgentPrompt.h"
#include "agents/NoteToolbox.h"
#include "agents/ReplyCleaner.h"
#include "base/Clock.h"
#include "base/Ids.h"
#include "base/Log.h"
#include "base/Text.h"
#include "notes/NoteStore.h"

#include <QTimer>
#include <coroutine>
#include <qcoro/qcoroasyncgenerator.h>

namespace vuro {
namespace {

const QString editedAfter = QStringLiteral("The note was edited after this, so it was left as it is.");

// The toolboxes of one run, in the order a call tries them: the job toolbox for its own names,
// then the abilities, then the notes.
struct RunTools {
    std::unique_ptr<AgentJobToolbox> jobs;
    std::unique_ptr<AgentAbilities> abilities;
    std::shared_ptr<NoteToolbox> notes;
};

// The tool runner handed to a model. A free coroutine: its arguments live in its own frame.
QCoro::Task<AgentToolOutcome> runTool(std::shared_ptr<RunTools> tools, AgentToolCall call) {
    const QString name = call.name;
    if (tools->jobs && AgentJobToolbox::isJobTool(name)) co_return co_await tools->jobs->run(std::move(call));
    if (tools->abilities)
        if (auto outcome = co_await tools->abilities->run(call)) co_return *outcome;
    if (auto outcome = co_await tools->notes->run(std::move(call))) co_return *outcome;
    co_return AgentToolOutcome{QStringLiteral("Unknown tool: ") + name, std::nullopt, {}};
}

}  // namespace

// What the center knows of a reply under way: enough to end it at once when it is cancelled.
struct AgentCenter::Reply {
    CancelToken token;
    Result partial;
    std::shared_ptr<ApprovalLog> log;
};

// One open question: the decision once it is known, and the task waiting for it.
struct AgentCenter::ApprovalWaiter {
    std::optional<MCPApprovalDecision> decision;
    std::coroutine_handle<> waiting;
    QTimer* timeout = nullptr;
    CancelToken token;
    int cancelCallback = 0;

    void resume(MCPApprovalDecision answer) {
        decision = answer;
        if (const auto handle = std::exchange(waiting, {})) handle.resume();
    }

    // Holds no ownership: the waiting frame keeps the waiter alive.
    struct Awaiter {
        ApprovalWaiter* waiter;
        bool await_ready() const { return waiter->decision.has_value(); }
        void await_suspend(std::coroutine_handle<> handle) const { waiter->waiting = handle; }
        MCPApprovalDecision await_resume() const { return *waiter->decision; }
    };
};

AgentCenter::AgentCenter(std::shared_ptr<AgentPersistence> persistence, NoteStore* notes,
                         std::shared_ptr<AgentAttachmentFiles> attachmentFiles, ModelFor modelFor, Defaults* preferences,
                         bool turkish, QObject* parent)
    : QObject(parent), _persistence(std::move(persistence)), _notes(notes), _attachmentFiles(std::move(attachmentFiles)),
      _modelFor(std::move(modelFor)), _unread(preferences), _turkish(turkish) {
    try {
        _agents = _persistence->loadAgents();
        _jobs = _persistence->loadJobs();
    } catch (const Error& error) {
        _agents.clear();
        _jobs.clear();
        _lastError = error.message();
    }
    const bool hasBuiltIn = std::any_of(_agents.begin(), _agents.end(),
                                        [](const Agent& agent) { return agent.id == Agent::notesAgentID; });
    if (!hasBuiltIn) {
        _agents.prepend(Agent::notesAgent());
        store([this] { _persistence->saveAgent(_agents.first()); });
    }
    QSet<QString> existing;
    for (const Agent& agent : _agents) existing.insert(agent.id);
    _unread.keepOnly(existing);
    // Files no message and no job refers to are left from interrupted sends and clean-ups.
    QSet<QString> referenced = attachmentIDsOfJobs();
    bool complete = true;
    for (const Agent& agent : _agents) {
        try {
            for (const AgentMessage& message : _persistence->loadMessages(agent.id))
                for (const AgentAttachment& attachment : message.attachments) referenced.insert(attachment.id);
        } catch (const Error&) {
            complete = false;  // a conversation that can't be read may still hold its files
        }
    }
    if (complete) {
        QStringList orphans;
        for (const QString& id : _attachmentFiles->allIDs())
            if (!referenced.contains(id)) orphans.append(id);
        _attachmentFiles->remove(orphans);
    }
}

AgentCenter::~AgentCenter() {
    for (const auto& reply : std::as_const(_replies)) reply->token.cancel();
    // Nobody will answer now: the tasks still waiting go on with a refusal and end.
    const auto waiters = std::exchange(_approvalWaiters, {});
    _pendingApprovals.clear();
    for (const auto& waiter : waiters) {
        waiter->token.removeOnCancel(waiter->cancelCallback);
        waiter->resume(MCPApprovalDecision::deny);
    }
}

template <typename F>
void AgentCenter::store(F&& write) {
    try {
        write();
        setLastError(std::nullopt);
    } catch (const Error& error) {
        log(QStringLiteral("agent store: ") + error.message());
        setLastError(error.message());
    }
}

void AgentCenter::setLastError(std::optional<QString> error) {
    if (_lastError == error) return;
    _lastError = std::move(error);
    Q_EMIT lastErrorChanged();
}

std::optional<Agent> AgentCenter::agent(const QString& id) const {
    for (const Agent& each : _agents)
        if (each.id == id) return each;
    return std::nullopt;
}

const QList<AgentMessage>& AgentCenter::conversation(const QString& agentID) {
    auto found = _conversations.find(agentID);
    if (found == _conversations.end()) {
        QList<AgentMessage> loaded;
        try {
            loaded = _persistence->loadMessages(agentID);
        } catch (const Error& error) {
            setLastError(error.message());
        }
        found = _conversations.insert(agentID, loaded);
    }
    return *found;
}

std::optional<QString> AgentCenter::activity(const QString& agentID) const {
    for (const MCPApprovalRequest& request : _pendingApprovals)
        if (request.agentID == agentID && !request.jobTitle) return QStringLiteral("mcp.approval");
    const auto found = _toolActivity.constFind(agentID);
    if (found == _toolActivity.constEnd()) return std::nullopt;
    return *found;
}

void AgentCenter::setActivity(const QString& agentID, std::optional<QString> key) {
    if (key) _toolActivity.insert(agentID, *key);
    else _toolActivity.remove(agentID);
    Q_EMIT activityChanged();
}

QSet<QString> AgentCenter::attachmentIDsOfJobs() const {
    QSet<QString> ids;
    for (const AgentJob& job : _jobs)
        for (const AgentAttachment& attachment : job.attachments) ids.insert(attachment.id);
    return ids;
}

void AgentCenter::append(const AgentMessage& message, bool saveIt) {
    conversation(message.agentID);
    QList<AgentMessage>& messages = _conversations[message.agentID];
    messages.append(message);
    if (messages.size() > keptMessages) {
        const QList<AgentMessage> dropped = messages.mid(0, messages.size() - keptMessages);
        messages.remove(0, dropped.size());
        QSet<QString> kept = attachmentIDsOfJobs();
        for (const AgentMessage& each : messages)
            for (const AgentAttachment& attachment : each.attachments) kept.insert(attachment.id);
        QStringList ids, files;
        for (const AgentMessage& each : dropped) {
            ids.append(each.id);
            for (const AgentAttachment& attachment : each.attachments)
                if (!kept.contains(attachment.id)) files.append(attachment.id);
        }
        store([&] { _persistence->deleteMessages(ids); });
        _attachmentFiles->remove(files);
    }
    if (saveIt) store([&] { _persistence->saveMessage(message); });
    Q_EMIT conversationChanged(message.agentID);
}

void AgentCenter::publish(const AgentMessage& updated) {
    if (AgentMessage* existing = message(updated.agentID, updated.id)) {
        *existing = updated;
        Q_EMIT conversationChanged(updated.agentID);
    }
}

AgentMessage* AgentCenter::message(const QString& agentID, const QString& messageID) {
    auto found = _conversations.find(agentID);
    if (found == _conversations.end()) return nullptr;
    for (AgentMessage& each : *found)
        if (each.id == messageID) return &each;
    return nullptr;
}

bool AgentCenter::send(const QString& text, const QList<AgentAttachmentDraft>& attachments, const QString& agentID) {
    const QString trimmed = Text::trimmed(text);
    if (trimmed.isEmpty() && attachments.isEmpty()) return false;
    const auto found = agent(agentID);
    if (!found || _replying.contains(agentID)) return false;
    QList<AgentAttachment> stored;
    try {
        stored = _attachmentFiles->store(attachments);
    } catch (const Error& error) {
        setLastError(error.message());
        return false;
    }
    const QDateTime now = Clock::now();
    AgentMessage user;
    user.id = newId();
    user.agentID = agentID;
    user.role = AgentMessage::Role::user;
    user.text = trimmed;
    user.createdAt = now;
    user.attachments = stored;
    append(user, true);

    AgentMessage replyMessage;
    replyMessage.id = newId();
    replyMessage.agentID = agentID;
    replyMessage.role = AgentMessage::Role::agent;
    replyMessage.createdAt = now.addMSecs(1);  // always after the user's message
    append(replyMessage, false);

    _replying.insert(agentID);
    Q_EMIT replyingChanged();

    QList<AgentMessage> history = _conversations.value(agentID);
    history.removeLast();
    const QList<ChatTurn> turns = AgentPrompt::turns(history, AgentRouteBudget::of(*found).history);
    Run run;
    run.messageID = replyMessage.id;
    auto state = std::make_shared<Reply>();
    state->log = run.log;
    _replies.insert(agentID, state);
    reply(agentID, std::move(run), turns, state->token);
    return true;
}

void AgentCenter::cancelReply(const QString& agentID) {
    const auto state = _replies.value(agentID);
    if (!state) return;
    // A question the reply waits on is answered with a refusal, and logged, before the reply ends.
    state->token.cancel();
    // The reply ends now with what it had; the model's stream stops when its task next wakes.
    const auto messageID = [&]() -> QString {
        const auto& messages = _conversations.value(agentID);
        return messages.isEmpty() ? QString() : messages.last().id;
    }();
    Result partial = state->partial;
    partial.approvals = state->log->records;
    finish(agentID, messageID, partial);
}

QCoro::Task<> AgentCenter::reply(QString agentID, Run run, QList<ChatTurn> turns, CancelToken token) {
    QPointer<AgentCenter> self(this);
    const QString messageID = run.messageID.value_or(QString());
    const auto log = run.log;
    Result result;
    try {
        const auto found = agent(agentID);
        if (found) result = co_await runOnce(*found, std::move(turns), std::move(run), token);
    } catch (...) {
        result.failure = QStringLiteral("The reply failed.");
        result.approvals = log->records;
    }
    if (!self || token.isCancelled()) co_return;
    finish(agentID, messageID, result);
}

QCoro::Task<MCPApprovalDecision> AgentCenter::requestApproval(MCPApprovalRequest request,
                                                              std::optional<std::chrono::milliseconds> timeout,
                                                              CancelToken token) {
    if (token.isCancelled() || _approvalWaiters.contains(request.id)) co_return MCPApprovalDecision::deny;
    const QString id = request.id;
    auto waiter = std::make_shared<ApprovalWaiter>();
    waiter->token = token;
    _approvalWaiters.insert(id, waiter);
    _pendingApprovals.append(std::move(request));
    if (timeout) {
        waiter->timeout = new QTimer(this);
        waiter->timeout->setSingleShot(true);
        connect(waiter->timeout, &QTimer::timeout, this, [this, id] { answer(id, MCPApprovalDecision::noAnswer); });
        waiter->timeout->start(*timeout);
    }
    QPointer<AgentCenter> self(this);
    waiter->cancelCallback = token.onCancel([self, id] {
        if (self)
            QMetaObject::invokeMethod(self.data(), [self, id] {
                if (self) self->answer(id, MCPApprovalDecision::deny);
            });
    });
    Q_EMIT pendingApprovalsChanged();
    Q_EMIT activityChanged();
    // Everything is settled by answer() before this wakes; the center may be gone by then. The
    // awaiter is a named local: g++ 12 mishandles temporaries inside a co_await expression.
    ApprovalWaiter::Awaiter decided{waiter.get()};
    const MCPApprovalDecision decision = co_await decided;
    co_return decision;
}

void AgentCenter::answer(const QString& requestID, MCPApprovalDecision decision) {
    const auto waiter = _approvalWaiters.take(requestID);
    if (!waiter) return;
    _pendingApprovals.removeIf([&requestID](const MCPApprovalRequest& each) { return each.id == requestID; });
    if (waiter->timeout) {
        waiter->timeout->stop();
        waiter->timeout->deleteLater();  // this may be its own signal
        waiter->timeout = nullptr;
    }
    waiter->token.removeOnCancel(waiter->cancelCallback);
    Q_EMIT pendingApprovalsChanged();
    Q_EMIT activityChanged();
    waiter->resume(decision);
}

QCoro::Task<MCPApprovalDecision> AgentCenter::askUser(QPointer<AgentCenter> center, std::shared_ptr<ApprovalLog> log,
                                                      MCPApprovalRequest request,
                                                      std::optional<std::chrono::milliseconds> timeout, CancelToken token) {
    MCPApprovalDecision decision = MCPApprovalDecision::deny;
    if (center) decision = co_await center->requestApproval(request, timeout, token);
    log->records.append(MCPApprovalRecord::of(request, decision, Clock::now()));
    co_return decision;
}

AgentAbilities::Setup AgentCenter::abilitiesSetup(const Agent& agent, const AgentRouteBudget& budget, const Run& run,
                                                  const CancelToken& token) {
    AgentAbilities::Setup setup;
    setup.agent = agent;
    setup.budget = budget;
    setup.turkish = _turkish;
    setup.preApproved = run.preApproved;
    const auto log = run.log;
    if (run.interactive) {
        QPointer<AgentCenter> self(this);
        // A chat waits as long as the user takes; a job that can ask waits a while, then goes on.
        const std::optional<std::chrono::milliseconds> timeout =
            run.jobID ? std::optional(jobApprovalTimeout) : std::nullopt;
        setup.approve = [self, log, timeout, token](MCPApprovalRequest request) {
            return askUser(self, log, std::move(request), timeout, token);
        };
    }
    setup.onPreApproved = [log](const MCPApprovalRequest& request) {
        MCPApprovalRecord record = MCPApprovalRecord::of(request, MCPApprovalDecision::allowOnce, Clock::now());
        record.outcome = MCPApprovalRecord::Outcome::allowedByJob;
        log->records.append(record);
    };
    return setup;
}

QCoro::Task<QList<ChatTurn>> AgentCenter::readyAttachments(QList<ChatTurn> turns, QList<AgentAttachment::Kind> native,
                                                           int budget) {
    for (ChatTurn& turn : turns) {
        int used = 0;
        for (ChatAttachment& attachment : turn.attachments) {
            if (!std::holds_alternative<ChatAttachment::Pending>(attachment.content)) continue;
            const AgentAttachment& info = attachment.info;
            if (info.kind == AgentAttachment::Kind::audio) {
                attachment.content = ChatAttachment::Omitted{};
                continue;
            }
            const auto data = _attachmentFiles->read(info.id);
            if (!data) {
                attachment.content = ChatAttachment::Text{AgentAttachmentText::emptyText(_turkish)};
                continue;
            }
            if (native.contains(info.kind) && info.kind == AgentAttachment::Kind::image) {
                attachment.content = ChatAttachment::Image{*data, info.mediaType};
                continue;
            }
            if (native.contains(info.kind) && info.kind == AgentAttachment::Kind::pdf) {
                attachment.content = ChatAttachment::Pdf{*data};
                continue;
            }
            const QString text = AgentAttachmentText::extract(info, *data, _turkish);
            const int room = std::max(0, budget - used);
            const QString fitted = AgentAttachmentText::fitted(text, room, _turkish);
            used += static_cast<int>(std::min<qsizetype>(Text::characterCount(text), room));
            attachment.content = ChatAttachment::Text{fitted};
        }
    }
    co_return turns;
}

QCoro::Task<AgentCenter::Result> AgentCenter::runOnce(Agent agent, QList<ChatTurn> turns, Run run, CancelToken token) {
    QPointer<AgentCenter> self(this);
    const QString agentID = agent.id;
    const auto log = run.log;
    Result result;
    std::unique_ptr<ChatModel> model;
    try {
        model = _modelFor(agent);
    } catch (const Error& error) {
        result.failure = error.message();
        co_return result;
    }
    if (const auto problem = model->availabilityProblem()) {
        result.failure = *problem;
        co_return result;
    }
    const AgentRouteBudget budget = AgentRouteBudget::of(agent);
    const bool onDevice = budget.route == AgentRouteBudget::Route::onDevice;
    turns = co_await readyAttachments(std::move(turns), model->nativeAttachments(), budget.attachments);
    if (!self || token.isCancelled()) co_return result;

    auto tools = std::make_shared<RunTools>();
    tools->notes = std::make_shared<NoteToolbox>(*_notes, agent.access, budget.outputLimit,
                                                 [] { return Clock::now(); }, agent.memory, _turkish);
    tools->notes->onMemoryChange = [self, agentID](const QString& memory) {
        if (!self) return;
        if (auto found = self->agent(agentID)) {
            found->memory = memory;
            self->save(*found);
        }
    };
    if (abilitiesFor) {
        if (!agent.mcpServers.isEmpty()) setActivity(agentID, QStringLiteral("mcp.connecting"));
        std::optional<QString> failure;
        try {
            tools->abilities = co_await abilitiesFor(abilitiesSetup(agent, budget, run, token));
        } catch (const Error& error) {
            failure = error.message();
        }
        if (!self || token.isCancelled()) co_return result;
        setActivity(agentID, std::nullopt);
        if (failure) {
            result.failure = failure;
            co_return result;
        }
    }
    QString system = AgentPrompt::systemText(agent, budget, Clock::now(), _turkish);
    if (tools->abilities)
        if (const auto prompt = tools->abilities->prompt(); prompt && !prompt->isEmpty())
            system += QStringLiteral("\n\n") + *prompt;

    const QString request = turns.isEmpty() ? QString() : Text::trimmed(turns.last().text);
    if (jobToolboxFor && !turns.isEmpty())
        tools->jobs = jobToolboxFor({agent, request, onDevice, _turkish, run.jobID});

    QList<AgentToolDefinition> specs = NoteToolbox::tools(agent.access, onDevice, request, _turkish);
    if (tools->abilities) specs += tools->abilities->tools();
    if (tools->jobs) {
        const QList<AgentToolDefinition> jobTools = tools->jobs->tools();
        if (!jobTools.isEmpty()) {
            specs += jobTools;
            system += QStringLiteral("\n\n") + tools->jobs->prompt();
        }
    }
    RunTool toolRunner = [tools](AgentToolCall call) { return runTool(tools, std::move(call)); };

    const auto state = run.messageID ? _replies.value(agentID) : nullptr;
    try {
        auto stream = model->streamReply(system, turns, specs, toolRunner);
        auto it = co_await stream.begin();
        while (self && !token.isCancelled() && it != stream.end()) {
            const AgentEvent event = *it;
            if (const auto* text = std::get_if<AgentEvent::Text>(&event.value)) {
                result.text = ReplyCleaner::clean(text->text);
            } else if (const auto* started = std::get_if<AgentEvent::ToolStarted>(&event.value)) {
                setActivity(agentID, started->name);
            } else {
                AgentAction action = std::get<AgentAction>(event.value);
                if (action.undo)
                    if (auto* memory = std::get_if<AgentUndo::RestoreMemory>(&action.undo->value)) memory->agentID = agentID;
                result.actions.append(action);
            }
            result.approvals = log->records;
            if (state) state->partial = result;
            if (run.messageID)
                if (AgentMessage* shown = message(agentID, *run.messageID)) {
                    AgentMessage updated = *shown;
                    updated.text = result.text;
                    updated.actions = result.actions;
                    updated.approvals = result.approvals;
                    publish(updated);
                }
            co_await ++it;
        }
    } catch (const Error& error) {
        if (!token.isCancelled()) result.failure = error.message();
    } catch (const std::exception& error) {
        if (!token.isCancelled()) result.failure = QString::fromUtf8(error.what());
    }
    if (self) setActivity(agentID, std::nullopt);
    if (tools->abilities) result.unattended = tools->abilities->unattended();
    result.approvals = log->records;
    co_return result;
}

void AgentCenter::finish(const QString& agentID, const QString& messageID, const Result& result) {
    bool removed = false;
    if (AgentMessage* shown = message(agentID, messageID)) {
        AgentMessage updated = *shown;
        updated.text = result.text;
        updated.actions = result.actions;
        updated.failure = result.failure;
        updated.approvals = result.approvals;
        if (updated.text.isEmpty() && updated.actions.isEmpty() && !updated.failure && updated.approvals.isEmpty()) {
            // A reply cancelled before its first word leaves no trace; one that asked the user
            // something keeps the record of it.
            auto& messages = _conversations[agentID];
            messages.removeIf([&messageID](const AgentMessage& each) { return each.id == messageID; });
            removed = true;
            Q_EMIT conversationChanged(agentID);
        } else {
            publish(updated);
            store([&] { _persistence->saveMessage(updated); });
        }
    }
    _replies.remove(agentID);
    setActivity(agentID, std::nullopt);
    if (_replying.remove(agentID)) Q_EMIT replyingChanged();
    if (!removed) _unread.mark(agentID);
}

void AgentCenter::clearConversation(const QString& agentID) {
    const QList<AgentMessage> messages = conversation(agentID);
    _conversations[agentID].clear();
    store([&] { _persistence->clearMessages(agentID); });
    _unread.clear(agentID);
    const QSet<QString> jobFiles = attachmentIDsOfJobs();
    QStringList files;
    for (const AgentMessage& message : messages)
        for (const AgentAttachment& attachment : message.attachments)
            if (!jobFiles.contains(attachment.id)) files.append(attachment.id);
    _attachmentFiles->remove(files);
    Q_EMIT conversationChanged(agentID);
}

void AgentCenter::save(const Agent& updated) {
    bool found = false;
    for (Agent& each : _agents)
        if (each.id == updated.id) {
            each = updated;
            found = true;
        }
    if (!found) _agents.append(updated);
    store([&] { _persistence->saveAgent(updated); });
    Q_EMIT agentsChanged();
}

bool AgentCenter::remove(const QString& agentID) {
    if (agentID == Agent::notesAgentID) return false;
    cancelReply(agentID);
    if (!_agents.removeIf([&agentID](const Agent& each) { return each.id == agentID; })) return false;
    clearConversation(agentID);
    _jobs.removeIf([&agentID](const AgentJob& job) { return job.agentID == agentID; });
    store([&] { _persistence->deleteAgent(agentID); });
    _conversations.remove(agentID);
    Q_EMIT agentsChanged();
    return true;
}

std::optional<QString> AgentCenter::undo(const QString& actionID, const QString& messageID) {
    for (auto it = _conversations.begin(); it != _conversations.end(); ++it) {
        for (AgentMessage& each : *it) {
            if (each.id != messageID) continue;
            for (AgentAction& action : each.actions) {
                if (action.id != actionID || action.undone || !action.undo) continue;
                const auto& value = action.undo->value;
                if (std::holds_alternative<AgentUndo::DeleteJob>(value) || std::holds_alternative<AgentUndo::RestoreJob>(value) ||
                    std::holds_alternative<AgentUndo::RevertJob>(value))
                    return std::nullopt;  // jobs are put back where they are kept
                if (const auto* memory = std::get_if<AgentUndo::RestoreMemory>(&value)) {
                    if (auto found = agent(memory->agentID.isEmpty() ? each.agentID : memory->agentID)) {
                        found->memory = memory->before;
                        save(*found);
                    }
                } else if (!_notes || NoteToolbox::undo(*action.undo, *_notes) == NoteToolbox::UndoResult::noteChanged) {
                    return editedAfter;
                }
                action.undone = true;
                const AgentMessage updated = each;
                store([&] { _persistence->saveMessage(updated); });
                Q_EMIT conversationChanged(updated.agentID);
                return std::nullopt;
            }
            return std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace vuro
