#include "app/ui/AppDelegate.h"

#include "agents/AgentCenter.h"
#include "agents/ui/AgentAvatar.h"
#include "agents/ui/AgentChatWindow.h"
#include "agents/ui/AgentEditorWindow.h"
#include "app/ui/GlobalShortcut.h"
#include "app/ui/MenuBarController.h"
#include "app/ui/UnsavedNotesDialog.h"
#include "base/Log.h"
#include "base/Defaults.h"
#include "base/TestHost.h"
#include "commands/CommandBarModel.h"
#include "commands/ui/CommandBar.h"
#include "inbox/AwayMonitor.h"
#include "inbox/DropInbox.h"
#include "inbox/ui/AwayDigestWindow.h"
#include "library/ui/NotesWindow.h"
#include "models/AttachmentText.h"
#include "settings/ui/SettingsWindow.h"
#include "shelf/DeckManager.h"
#include "shelf/ui/QtDeckHost.h"

#include <QCoreApplication>
#include <QPointer>

namespace vuro {

AppDelegate::AppDelegate(QObject* parent) : AppDelegate(AppEnvironment::build(), parent) {}

AppDelegate::AppDelegate(std::unique_ptr<AppEnvironment> environment, QObject* parent)
    : QObject(parent), confirmQuit([](const QString& lastError) { return UnsavedNotesDialog::confirmQuit(lastError); }),
      _environment(std::move(environment)) {
    AgentCenter& agents = _environment->agents();
    connect(&agents, &AgentCenter::agentsChanged, this, &AppDelegate::updateAgents);
    connect(&agents.unread(), &AgentUnreadMessages::agentIDsChanged, this, &AppDelegate::updateAgents);
}

AppDelegate::~AppDelegate() {
    // Editors close themselves; those still open go before the environment they edit.
    for (const QPointer<AgentEditorWindow>& editor : std::as_const(_agentEditors)) delete editor.data();
}

void AppDelegate::applicationDidFinishLaunching() {
    if (isRunningTests()) return;
    if (const int swept = _environment->notes().sweepEmptyNotes(); swept > 0)
        log(QStringLiteral("removed %1 blank notes left by the last session").arg(swept));

    _menuBar = std::make_unique<MenuBarController>();
    connect(_menuBar.get(), &MenuBarController::notesRequested, this, &AppDelegate::notesWindowRequested);
    connect(_menuBar.get(), &MenuBarController::quitRequested, this, &AppDelegate::requestQuit);
    connect(_menuBar.get(), &MenuBarController::tellVuroRequested, this, &AppDelegate::showTellVuro);
    connect(_menuBar.get(), &MenuBarController::settingsRequested, this, &AppDelegate::showSettings);
    connect(this, &AppDelegate::notesWindowRequested, this, &AppDelegate::showNotesWindow);
    connect(_menuBar.get(), &MenuBarController::agentChatRequested, this, &AppDelegate::showAgentChat);
    connect(_menuBar.get(), &MenuBarController::agentEditorRequested, this, &AppDelegate::showAgentEditor);
    updateAgents();
    _menuBar->start();

    _deckHost = std::make_unique<QtDeckHost>(_environment->notes());
    _deckManager = std::make_unique<DeckManager>(*_deckHost, _environment->notes(), Defaults::standard());
    connect(_deckHost.get(), &QtDeckHost::screensChanged, _deckManager.get(), &DeckManager::refreshScreens);
    _deckManager->refreshScreens();
    connect(_menuBar.get(), &MenuBarController::newNoteRequested, _deckManager.get(), &DeckManager::createAndExpand);
    connect(_menuBar.get(), &MenuBarController::shelfRequested, _deckManager.get(), &DeckManager::announce);

    // What agents deliver lands on the Shelf, which fans out to show it; what arrives while the
    // screen is locked or the session idle is summed up in the digest when the user is back.
    DropInbox& inbox = _environment->inbox();
    inbox.onReceive = [decks = QPointer<DeckManager>(_deckManager.get())](const DropInbox::ReceivedDrop&) {
        if (decks) decks->announce();
    };
    _awayMonitor.reset(AwayMonitor::forThisSession());
    _awayDigest = std::make_unique<AwayDigestWindow>(inbox, &_environment->awaySummarizer());
    _awayDigest->follow(*_awayMonitor);
    connect(_awayDigest.get(), &AwayDigestWindow::openNote, _deckManager.get(), &DeckManager::expand);

    // Where the session can't grab keys (Wayland, or the key is taken) the tray entry remains.
    _tellVuroShortcut = std::make_unique<GlobalShortcut>();
    connect(_tellVuroShortcut.get(), &GlobalShortcut::activated, this, &AppDelegate::showTellVuro);
    connect(this, &AppDelegate::applicationWillTerminate, _tellVuroShortcut.get(), &GlobalShortcut::stop);
    _tellVuroShortcut->start();
    log(QStringLiteral("launched (pid %1)").arg(QCoreApplication::applicationPid()));
}

void AppDelegate::handleReopen() {
    log(QStringLiteral("reopen requested by a second start"));
    if (isRunningTests()) return;
    if (_menuBar) _menuBar->show();
    Q_EMIT notesWindowRequested();
}

void AppDelegate::showNotesWindow() {
    if (!_notesWindow) _notesWindow = std::make_unique<NotesWindow>(_environment->notes());
    _notesWindow->show();
    _notesWindow->raise();
    _notesWindow->activateWindow();
}

AgentEditorWindow* AppDelegate::showAgentEditor(const QString& agentID) {
    QPointer<AgentEditorWindow>& window = _agentEditors[agentID];
    if (!window) {
        window = new AgentEditorWindow(_environment->agents(), agentID);
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

SettingsWindow* AppDelegate::showSettings() {
    if (!_settingsWindow)
        _settingsWindow = std::make_unique<SettingsWindow>(_environment->providerSettings(), _environment->keys(),
                                                           _environment->assistant());
    _settingsWindow->showPage(SettingsWindow::assistantTitle());
    return _settingsWindow.get();
}

CommandBar* AppDelegate::showTellVuro() {
    if (!_commandBar) {
        _commandModel = std::make_unique<CommandBarModel>(_environment->notes(), _environment->assistant(), agentTextIsTurkish());
        _commandBar = std::make_unique<CommandBar>(*_commandModel);
    }
    _commandBar->present();
    return _commandBar.get();
}

void AppDelegate::showAgentChat(const QString& agentID) {
    AgentCenter& agents = _environment->agents();
    if (!agents.agent(agentID)) return;
    auto& window = _chatWindows[agentID];
    if (!window) {
        window = std::make_unique<AgentChatWindow>(agents, agentID, &_environment->presence());
        connect(window.get(), &AgentChatWindow::editRequested, this, &AppDelegate::showAgentEditor);
    }
    window->show();
    window->raise();
    window->activateWindow();
}

AgentChatWindow* AppDelegate::agentChat(const QString& agentID) const {
    const auto found = _chatWindows.find(agentID);
    return found == _chatWindows.end() ? nullptr : found->second.get();
}

void AppDelegate::updateAgents() {
    AgentCenter& agents = _environment->agents();
    // The window of a deleted agent has closed itself; it goes once the current event is done.
    for (auto it = _chatWindows.begin(); it != _chatWindows.end();) {
        if (agents.agent(it->first)) {
            ++it;
            continue;
        }
        it->second.release()->deleteLater();
        it = _chatWindows.erase(it);
    }
    if (!_menuBar) return;
    QList<MenuBarController::AgentEntry> entries;
    for (const Agent& agent : agents.agents())
        entries.append({agent.id, AgentAvatar::face(agent), agent.displayName(), agents.unread().agentIDs().contains(agent.id)});
    _menuBar->setAgents(entries);
}

bool AppDelegate::applicationShouldTerminate() {
    NoteStore& notes = _environment->notes();
    if (notes.flush()) return true;
    return confirmQuit(notes.lastError().value_or(QString()));
}

void AppDelegate::requestQuit() {
    if (!applicationShouldTerminate()) return;
    Q_EMIT applicationWillTerminate();
    QCoreApplication::quit();
}

void AppDelegate::terminateNow() {
    if (!_environment->notes().flush())
        log(QStringLiteral("quitting with unsaved notes — ") + _environment->notes().lastError().value_or(QString()));
    Q_EMIT applicationWillTerminate();
    QCoreApplication::quit();
}

}  // namespace vuro
