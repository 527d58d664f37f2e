#pragma once

#include "app/AppEnvironment.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <map>
#include <memory>

namespace vuro {

class AgentChatWindow;
class AwayDigestWindow;
class AwayMonitor;
class AgentEditorWindow;
class CommandBar;
class CommandBarModel;
class DeckManager;
class GlobalShortcut;
class MenuBarController;
class NotesWindow;
class QtDeckHost;
class SettingsWindow;

// Starts and stops the running application around one AppEnvironment, which it builds when it
// is created. The controllers it starts stay empty until launch has finished and are never
// cleared. Quitting goes through requestQuit(), which writes every unsaved note first and asks
// the user when some could not be written. Main thread only; in a test host launching does
// nothing and a reopen opens no window.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    explicit AppDelegate(std::unique_ptr<AppEnvironment> environment, QObject* parent = nullptr);
    ~AppDelegate() override;

    AppEnvironment& environment() const { return *_environment; }
    MenuBarController* menuBar() const { return _menuBar.get(); }
    DeckManager* deckManager() const { return _deckManager.get(); }
    AwayDigestWindow* awayDigest() const { return _awayDigest.get(); }

    void applicationDidFinishLaunching();
    // A second start asked this copy to come forward.
    void handleReopen();
    // Flushes the store; true when the process may end now, after asking the user if notes
    // stayed unsaved.
    bool applicationShouldTerminate();
    // The quit path of the menu, the relaunch and the termination signals.
    void requestQuit();
    // The same without a question: for a session that ends, where nobody can answer.
    void terminateNow();

    // Opens the agent editor on that agent, or on a new one for an empty id; an agent already
    // open comes forward instead of opening twice.
    AgentEditorWindow* showAgentEditor(const QString& agentID);
    // Settings on its Assistant page.
    SettingsWindow* showSettings();
    // The Tell Vuro bar, from the tray or the global shortcut.
    CommandBar* showTellVuro();

    // Asks whether to quit with unsaved notes; the modal dialog unless a test replaces it.
    std::function<bool(const QString& lastError)> confirmQuit;

    // The chat with one agent, one window per agent, kept while the agent exists.
    void showAgentChat(const QString& agentID);
    AgentChatWindow* agentChat(const QString& agentID) const;

Q_SIGNALS:
    // The Notes window on its All Notes section.
    void notesWindowRequested();
    // Last call before the event loop ends: global shortcuts let go here.
    void applicationWillTerminate();

private:
    void showNotesWindow();
    void updateAgents();

    std::unique_ptr<AppEnvironment> _environment;
    std::unique_ptr<MenuBarController> _menuBar;
    std::unique_ptr<QtDeckHost> _deckHost;
    std::unique_ptr<DeckManager> _deckManager;
    std::unique_ptr<NotesWindow> _notesWindow;
    std::unique_ptr<AwayMonitor> _awayMonitor;
    std::unique_ptr<AwayDigestWindow> _awayDigest;

    std::unique_ptr<SettingsWindow> _settingsWindow;
    std::unique_ptr<CommandBarModel> _commandModel;
    std::unique_ptr<CommandBar> _commandBar;
    std::unique_ptr<GlobalShortcut> _tellVuroShortcut;
    QHash<QString, QPointer<AgentEditorWindow>> _agentEditors;
    std::map<QString, std::unique_ptr<AgentChatWindow>> _chatWindows;
};

}  // namespace vuro
