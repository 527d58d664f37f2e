#include "agents/AgentUnreadMessages.h"

#include "agents/AgentConversationPresence.h"
#include "base/Defaults.h"

namespace vuro {
namespace {
const QString key = QStringLiteral("unreadAgentIDs");
}

AgentUnreadMessages::AgentUnreadMessages(Defaults* store, QObject* parent) : QObject(parent), _store(store) {
    if (_store)
        for (const QString& id : _store->stringList(key)) _agentIDs.insert(id);
}

void AgentUnreadMessages::mark(const QString& agentID) {
    if ((isOnScreen && isOnScreen(agentID)) || _agentIDs.contains(agentID)) return;
    _agentIDs.insert(agentID);
    save();
}

void AgentUnreadMessages::clear(const QString& agentID) {
    if (_agentIDs.remove(agentID)) save();
}

void AgentUnreadMessages::keepOnly(const QSet<QString>& existing) {
    const QSet<QString> kept = _agentIDs & existing;
    if (kept == _agentIDs) return;
    _agentIDs = kept;
    save();
}

void AgentUnreadMessages::observe(const AgentConversationPresence& presence) {
    const AgentConversationPresence* source = &presence;
    isOnScreen = [source](const QString& agentID) { return source->isOnScreen(agentID); };
    connect(source, &AgentConversationPresence::presenceChanged, this, [this, source] {
        const QSet<QString> marked = _agentIDs;
        for (const QString& agentID : marked)
            if (source->isOnScreen(agentID)) clear(agentID);
    });
}

void AgentUnreadMessages::save() {
    if (_store) {
        QStringList ids(_agentIDs.begin(), _agentIDs.end());
        ids.sort();
        _store->setValue(key, ids);
    }
    Q_EMIT agentIDsChanged();
}

}  // namespace vuro
