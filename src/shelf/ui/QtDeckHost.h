#pragma once

#include "shelf/DeckHost.h"

#include <QObject>
#include <functional>

namespace vuro {

class NoteStore;

// The decks' host on the desktop: the pointer and screens from Qt, QTimers, DeckPanel windows.
// Screens are identified by a hash of their name, stable while the display stays attached.
class QtDeckHost : public QObject, public DeckHost {
    Q_OBJECT
public:
    explicit QtDeckHost(NoteStore& notes, QObject* parent = nullptr);

    QPointF pointer() const override;
    bool altHeld() const override;
    QList<DeckScreen> screens() const override;
    std::unique_ptr<DeckTimer> makeTimer() override;
    std::unique_ptr<DeckPanelPort> makePanel(DeckController& controller) override;
    bool recorderBusy() const override { return false; }
    bool bringFloatingNoteToFront(const QString&) override { return false; }
    void setOpenNote(const QString& noteID) override;
    void activateApplication() override {}
    void deactivateApplication() override;
    void changeFontSize(double delta) override;

Q_SIGNALS:
    void screensChanged();
    void openNoteChanged(const QString& noteID);

private:
    NoteStore& _notes;
};

}  // namespace vuro
