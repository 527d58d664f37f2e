#pragma once

#include "shelf/DeckController.h"

#include <QMap>
#include <map>
#include <QObject>
#include <memory>

namespace vuro {

class Defaults;
class DeckHost;
class NoteStore;

// One deck per display served. Rebuilds the set when the screens change, passes preference
// changes on, and sends commands (a new note, the fan, an arrival) to the deck under the
// pointer. Main thread only.
class DeckManager : public QObject {
    Q_OBJECT
public:
    DeckManager(DeckHost& host, NoteStore& notes, Defaults& defaults, QObject* parent = nullptr);
    ~DeckManager() override;

    // Builds the decks of the screens there are now; call again whenever they change.
    void refreshScreens();
    const std::map<quint32, std::unique_ptr<DeckController>>& decks() const { return _decks; }
    DeckController* deck(quint32 displayID) const;
    // The deck of the screen under the pointer, else of the first screen.
    DeckController* deckUnderPointer() const;
    void returnOthersToIdle(quint32 exceptDisplayID);

    void announce();
    void expand(const QString& noteID);
    // A new, empty note opened on the Shelf under the pointer; returns its id.
    QString createAndExpand();

Q_SIGNALS:
    void decksChanged();

private:
    DeckHost& _host;
    NoteStore& _notes;
    Defaults& _defaults;
    std::map<quint32, std::unique_ptr<DeckController>> _decks;
};

}  // namespace vuro
