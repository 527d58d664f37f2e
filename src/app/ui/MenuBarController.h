#pragma once

#include <QObject>

class QMenu;
class QSystemTrayIcon;

namespace vuro {

// The tray icon and its menu: New Note, Tell Vuro…, Show Shelf, Notes…, Settings…, Quit; a click on the icon fans the
// Shelf out. On a desktop without a tray the program keeps running without it; a second start
// then brings it forward. Main thread only.
class MenuBarController : public QObject {
    Q_OBJECT
public:
    explicit MenuBarController(QObject* parent = nullptr);
    ~MenuBarController() override;

    // Shows the icon; false when this desktop has no tray.
    bool start();
    // Opens the menu at the icon.
    void show();

    QMenu* menu() const { return _menu; }
    bool hasTrayIcon() const { return _tray != nullptr; }

Q_SIGNALS:
    void newNoteRequested();
    void shelfRequested();
    void notesRequested();
    void tellVuroRequested();
    void settingsRequested();
    void quitRequested();

private:
    QMenu* _menu;
    QSystemTrayIcon* _tray = nullptr;
};

}  // namespace vuro
