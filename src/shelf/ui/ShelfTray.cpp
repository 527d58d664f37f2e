#include "shelf/ui/ShelfTray.h"

#include "shelf/DeckManager.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace vuro {

ShelfTray::ShelfTray(QSystemTrayIcon& icon, QMenu& menu, DeckManager& decks, std::function<void()> openNotes,
                     std::function<void()> quit, QObject* parent)
    : QObject(parent) {
    QAction* newNote = menu.addAction(tr("New Note"));
    connect(newNote, &QAction::triggered, this, [&decks] { decks.createAndExpand(); });
    QAction* showShelf = menu.addAction(tr("Show Shelf"));
    connect(showShelf, &QAction::triggered, this, [&decks] { decks.announce(); });
    QAction* notes = menu.addAction(tr("Notes…"));
    connect(notes, &QAction::triggered, this, [openNotes = std::move(openNotes)] {
        if (openNotes) openNotes();
    });
    menu.addSeparator();
    QAction* quitAction = menu.addAction(tr("Quit"));
    connect(quitAction, &QAction::triggered, this, [quit = std::move(quit)] {
        if (quit) quit();
    });
    connect(&icon, &QSystemTrayIcon::activated, this, [&decks](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) decks.announce();
    });
}

}  // namespace vuro
