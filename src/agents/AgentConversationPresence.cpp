#include "agents/AgentConversationPresence.h"

#include <QEvent>
#include <QWindow>

namespace vuro {

AgentConversationPresence::AgentConversationPresence(QObject* parent) : QObject(parent) {}

int AgentConversationPresence::add(const QString& agentID, QWindow* window) {
    const int token = _nextToken++;
    if (window && !watchedElsewhere(window, token)) watch(window);
    _entries.insert(token, {agentID, window});
    refresh();
    return token;
}

void AgentConversationPresence::remove(int token) {
    const auto found = _entries.constFind(token);
    if (found == _entries.constEnd()) return;
    QWindow* window = found->window;
    _entries.erase(found);
    if (window && !watchedElsewhere(window, token)) {
        window->removeEventFilter(this);
        disconnect(window, nullptr, this, nullptr);
    }
    refresh();
}

bool AgentConversationPresence::isOnScreen(const QString& agentID) const { return _onScreen.contains(agentID); }

bool AgentConversationPresence::shows(const QWindow* window) {
    return window && window->isVisible() && !(window->windowStates() & Qt::WindowMinimized) && window->isExposed();
}

QSet<QString> AgentConversationPresence::onScreen() const {
    QSet<QString> agents;
    for (const Entry& entry : _entries)
        if (shows(entry.window)) agents.insert(entry.agentID);
    return agents;
}

void AgentConversationPresence::refresh() {
    QSet<QString> now = onScreen();
    if (now == _onScreen) return;
    _onScreen = std::move(now);
    Q_EMIT presenceChanged();
}

void AgentConversationPresence::watch(QWindow* window) {
    // Exposure has no signal of its own: it arrives as an event, so the window's events are
    // looked at too. The signals cover changes that come without an expose event.
    window->installEventFilter(this);
    connect(window, &QWindow::visibleChanged, this, &AgentConversationPresence::refresh);
    connect(window, &QWindow::windowStateChanged, this, &AgentConversationPresence::refresh);
    connect(window, &QObject::destroyed, this, &AgentConversationPresence::refresh, Qt::QueuedConnection);
}

bool AgentConversationPresence::watchedElsewhere(const QWindow* window, int exceptToken) const {
    for (auto it = _entries.constBegin(); it != _entries.constEnd(); ++it)
        if (it.key() != exceptToken && it->window == window) return true;
    return false;
}

bool AgentConversationPresence::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Expose:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::WindowStateChange:
        // The window's own state changes after its handler has run; look once the event is done.
        QMetaObject::invokeMethod(this, &AgentConversationPresence::refresh, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace vuro
