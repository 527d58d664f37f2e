#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

class QWindow;

namespace vuro {

// Which agents have their conversation in front of the user now. A window that shows a
// conversation registers itself while it shows it; an agent counts as on screen while one of its
// windows is visible, not minimised and exposed (a window wholly covered, or on another
// workspace, isn't exposed). The windows are watched, so presenceChanged follows what they do
// without their telling; a window that is destroyed simply stops counting. Main thread.
class AgentConversationPresence : public QObject {
    Q_OBJECT
public:
    explicit AgentConversationPresence(QObject* parent = nullptr);

    // Registers a window showing the agent's conversation; the token removes it again.
    int add(const QString& agentID, QWindow* window);
    // An unknown token does nothing.
    void remove(int token);
    bool isOnScreen(const QString& agentID) const;

Q_SIGNALS:
    // Emitted when the set of agents on screen changed.
    void presenceChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Entry {
        QString agentID;
        QPointer<QWindow> window;
    };

    static bool shows(const QWindow* window);
    QSet<QString> onScreen() const;
    void refresh();
    void watch(QWindow* window);
    bool watchedElsewhere(const QWindow* window, int exceptToken) const;

    QHash<int, Entry> _entries;
    QSet<QString> _onScreen;
    int _nextToken = 1;
};

}  // namespace vuro
