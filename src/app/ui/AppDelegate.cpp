#include "app/ui/AppDelegate.h"

#include "agents/ui/AgentEditorWindow.h"
#include "app/ui/GlobalShortcut.h"
#include "app/ui/MenuBarController.h"
#include "app/ui/UnsavedNotesDialog.h"
#include "base/Log.h"
#include "base/Defaults.h"
#include "base/TestHost.h"
#include "commands/CommandBarModel.h"
#include "commands/ui/CommandBar.h"
#include "library/ui/NotesWindow.h"
#include "models/AttachmentText.h"
#include "settings/ui/SettingsWindow.h"
#include "shelf/DeckManager.h"
#include "shelf/ui/QtDeckHost.h"

#include <QCoreApplication>

namespace vuro {

AppDelegate::AppDelegate(QObject* parent) : AppDelegate(AppEnvironment::build(), parent) {}

AppDelegate::AppDelegate(std::unique_ptr<AppEnvironment> environment, QObject* parent)
    : QObject(parent), confirmQuit([](const QString& lastError) { return UnsavedNotesDialog::confirmQuit(lastError); }),
      _environment(std::move(environment)) {}

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
    _menuBar->start();

    _deckHost = std::make_unique<QtDeckHost>(_environment->notes());
    _deckManager = std::make_unique<DeckManager>(*_deckHost, _environment->notes(), Defaults::standard());
    connect(_deckHost.get(), &QtDeckHost::screensChanged, _deckManager.get(), &DeckManager::refreshScreens);
    _deckManager->refreshScreens();
    connect(_menuBar.get(), &MenuBarController::newNoteRequested, _deckManager.get(), &DeckManager::createAndExpand);
    connect(_menuBar.get(), &MenuBarController::shelfRequested, _deckManager.get(), &DeckManager::announce);

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
