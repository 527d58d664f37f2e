#include "app/ui/AppDelegate.h"

#include "app/ui/MenuBarController.h"
#include "app/ui/UnsavedNotesDialog.h"
#include "base/Log.h"
#include "base/TestHost.h"

#include <QCoreApplication>

namespace vuro {

AppDelegate::AppDelegate(QObject* parent) : AppDelegate(AppEnvironment::build(), parent) {}

AppDelegate::AppDelegate(std::unique_ptr<AppEnvironment> environment, QObject* parent)
    : QObject(parent), confirmQuit([](const QString& lastError) { return UnsavedNotesDialog::confirmQuit(lastError); }),
      _environment(std::move(environment)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    if (isRunningTests()) return;
    if (const int swept = _environment->notes().sweepEmptyNotes(); swept > 0)
        log(QStringLiteral("removed %1 blank notes left by the last session").arg(swept));

    _menuBar = std::make_unique<MenuBarController>();
    connect(_menuBar.get(), &MenuBarController::newNoteRequested, this, [this] {
        Q_EMIT noteOpenRequested(_environment->notes().create().id);
    });
    connect(_menuBar.get(), &MenuBarController::notesRequested, this, &AppDelegate::notesWindowRequested);
    connect(_menuBar.get(), &MenuBarController::quitRequested, this, &AppDelegate::requestQuit);
    _menuBar->start();
    log(QStringLiteral("launched (pid %1)").arg(QCoreApplication::applicationPid()));
}

void AppDelegate::handleReopen() {
    log(QStringLiteral("reopen requested by a second start"));
    if (isRunningTests()) return;
    if (_menuBar) _menuBar->show();
    Q_EMIT notesWindowRequested();
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
