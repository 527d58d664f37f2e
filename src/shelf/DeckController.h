#pragma once

#include "shelf/DeckModel.h"
#include "shelf/DeckScreen.h"
#include "shelf/DeckShortcut.h"
#include "shelf/DeckState.h"

#include <QDateTime>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <chrono>
#include <memory>
#include <optional>

namespace vuro {

class Defaults;
class DeckHost;
class DeckManager;
class DeckPanelPort;
class DeckTimer;
class NoteStore;

// The state machine of the deck on one display: when the strip fans out, when a note opens,
// when everything goes back, and when the panel grows (before content appears) and shrinks
// (after the animation). Every delay is a member the tests shorten or drive with a fake clock.
// Main thread only; the panel, the timers and the model belong to it.
class DeckController : public QObject {
    Q_OBJECT
public:
    DeckController(const DeckScreen& screen, DeckHost& host, NoteStore& notes, Defaults& defaults,
                   DeckManager* manager = nullptr, QObject* parent = nullptr);
    ~DeckController() override;

    quint32 displayID() const { return _screen.id; }
    const DeckScreen& screen() const { return _screen; }
    DeckModel& model() { return _model; }
    const DeckState& state() const { return _state; }
    DeckPanelPort& panel() { return *_panel; }
    bool monitorsInstalled() const { return _monitorsInstalled; }
    bool idleTimerRunning() const;
    bool isAnnouncing() const;

    // Orders the panel front in the idle state and starts watching the notes.
    void start();
    void setState(const DeckState& next);
    void returnToIdle();
    void pointerEntered();
    void pointerExited();
    void announce();
    void expand(const QString& noteID);
    void collapse();
    // After a preference changed: picks up the new values and applies "deckAlwaysShown".
    void applyPrefs();
    void setScreen(const DeckScreen& screen);
    void resizePanel(const DeckState& state);
    void idleTick();
    // A key pressed while the panel may be key; the shortcut it matches, if any. Returns true
    // when the key is swallowed.
    bool keyPressed(std::optional<DeckShortcut> shortcut);
    void clickInOtherApplication();
    void clickInOwnWindow(bool isPanel, bool isTitled);
    // The screen is gone: no monitors, no timers, no panel.
    void shutDown();

    bool pointerInHotRect() const;
    QRect hotRect() const;

    std::chrono::milliseconds idlePeriod{120};
    std::chrono::milliseconds exitConfirmation{150};
    std::chrono::milliseconds growWait{33};
    std::chrono::milliseconds shrinkDelay{450};
    std::chrono::milliseconds fanTimeout{4000};
    std::chrono::milliseconds expandedTimeout{60000};
    std::chrono::milliseconds announceLength{4000};
    double movementThreshold = 2;

Q_SIGNALS:
    // The key and click monitors belong to the expanded state; the panel installs them.
    void monitorsChanged(bool installed);

private:
    void startIdleTimer();
    void goIdleAndDeactivate();
    bool openNotePinned() const;
    int shownNoteCount() const;
    DeckPrefs prefs() const;
    void setMonitors(bool installed);

    DeckScreen _screen;
    DeckHost& _host;
    NoteStore& _notes;
    Defaults& _defaults;
    QPointer<DeckManager> _manager;
    DeckModel _model;
    DeckState _state;
    std::unique_ptr<DeckPanelPort> _panel;
    std::unique_ptr<DeckTimer> _idleTimer;
    std::unique_ptr<DeckTimer> _exitWork;
    std::unique_ptr<DeckTimer> _shrinkWork;
    std::unique_ptr<DeckTimer> _growWork;
    std::unique_ptr<DeckTimer> _deferred;
    QDateTime _lastActivity;
    QPointF _lastPointer;
    std::optional<QDateTime> _announceUntil;
    bool _monitorsInstalled = false;
    int _watchedCount = -1;
};

}  // namespace vuro
