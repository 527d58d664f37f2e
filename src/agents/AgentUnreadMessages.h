#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <functional>

namespace vuro {

class AgentConversationPresence;
class Defaults;

// Which agents have replies the user hasn't seen. A reply to an agent whose conversation is on
// screen leaves no mark. The set is kept in the preferences under "unreadAgentIDs". Main thread.
class AgentUnreadMessages : public QObject {
    Q_OBJECT
public:
    explicit AgentUnreadMessages(Defaults* store, QObject* parent = nullptr);

    // Whether a window now shows the agent's conversation; none counts as not shown.
    std::function<bool(const QString& agentID)> isOnScreen;

    const QSet<QString>& agentIDs() const { return _agentIDs; }
    void mark(const QString& agentID);
    void clear(const QString& agentID);
    // Forgets agents that no longer exist.
    void keepOnly(const QSet<QString>& existing);
    // Takes isOnScreen from the windows registered with presence, and clears the mark of an
    // agent as soon as one of its windows comes on screen. presence must outlive this object.
    void observe(const AgentConversationPresence& presence);

Q_SIGNALS:
    void agentIDsChanged();

private:
    void save();

    QSet<QString> _agentIDs;
    Defaults* _store;
};

}  // namespace vuro
