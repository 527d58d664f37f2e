#pragma once

#include "shelf/DeckScreen.h"
#include "shelf/DeckTimer.h"

#include <QList>
#include <QPointF>
#include <memory>

namespace vuro {

class DeckController;
class DeckPanelPort;

// Everything the decks need of the desktop and the rest of the application, so that their
// rules run without windows in tests. The desktop's host lives in shelf/ui.
class DeckHost {
public:
    virtual ~DeckHost() = default;
    virtual QPointF pointer() const = 0;  // global position
    virtual bool altHeld() const = 0;
    virtual QList<DeckScreen> screens() const = 0;
    virtual std::unique_ptr<DeckTimer> makeTimer() = 0;
    virtual std::unique_ptr<DeckPanelPort> makePanel(DeckController& controller) = 0;
    // The voice-note recorder is recording or busy: a note must not close under the user.
    virtual bool recorderBusy() const = 0;
    // True when the note is shown in a floating window, which is then brought to the front.
    virtual bool bringFloatingNoteToFront(const QString& noteID) = 0;
    virtual void setOpenNote(const QString& noteID) = 0;
    virtual void activateApplication() = 0;
    // Gives the keyboard back to the application used before.
    virtual void deactivateApplication() = 0;
    virtual void changeFontSize(double delta) = 0;
};

}  // namespace vuro
