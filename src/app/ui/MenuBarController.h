#pragma once

#include <QList>
#include <QObject>
#include <QString>

class QMenu;
class QSystemTrayIcon;

namespace vuro {

// The tray icon and its menu: New Note, Tell Vuro…, Show Shelf, Notes…, Agents ▸, Settings…, Quit; a
// click on the icon fans the Shelf out. The Agents submenu lists every agent, with a dot for unread
// replies. On a desktop without a tray the program keeps running without it; a second start
// then brings it forward. Main thread only.
class MenuBarController : public QObject {
    Q_OBJECT
public:
    // One agent in the Agents submenu.
    struct AgentEntry {
        QString id;
        QString face;  // emoji or initial
        QString name;
        bool unread = false;
    };

    explicit MenuBarController(QObject* parent = nullptr);
    ~MenuBarController() override;

    // Shows the icon; false when this desktop has no tray.
    bool start();
    // Opens the menu at the icon.
    void show();

    QMenu* menu() const { return _menu; }
    QMenu* agentsMenu() const { return _agents; }
    void setAgents(const QList<AgentEntry>& agents);
    bool hasTrayIcon() const { return _tray != nullptr; }

Q_SIGNALS:
    void newNoteRequested();
    void shelfRequested();
    void notesRequested();
    void tellVuroRequested();
    void settingsRequested();
    void agentChatRequested(const QString& agentID);
    void quitRequested();

private:
    QMenu* _menu;
    QMenu* _agents;
    QSystemTrayIcon* _tray = nullptr;
};

}  // namespace vuro
