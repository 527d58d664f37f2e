#pragma once

#include <QObject>
#include <functional>

class QMenu;
class QSystemTrayIcon;

namespace vuro {

class DeckManager;

// The Shelf's part of the tray: New Note (opened on the Shelf), Show Shelf, Notes…, Quit, and a
// click on the icon that fans the Shelf out under the pointer.
class ShelfTray : public QObject {
    Q_OBJECT
public:
    // Adds the entries to menu; openNotes shows the Notes window, quit ends the application.
    ShelfTray(QSystemTrayIcon& icon, QMenu& menu, DeckManager& decks, std::function<void()> openNotes,
              std::function<void()> quit, QObject* parent = nullptr);
};

}  // namespace vuro
