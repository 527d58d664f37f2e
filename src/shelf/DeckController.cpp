#include "shelf/DeckController.h"

#include "base/Clock.h"
#include "base/Defaults.h"
#include "notes/NoteStore.h"
#include "shelf/DeckHost.h"
#include "shelf/DeckLayout.h"
#include "shelf/DeckManager.h"
#include "shelf/DeckPanelPort.h"
#include "shelf/DeckTimer.h"
#include "editor/EditorBridge.h"

#include <cmath>

namespace vuro {

DeckController::DeckController(const DeckScreen& screen, DeckHost& host, NoteStore& notes, Defaults& defaults,
                               DeckManager* manager, QObject* parent)
    : QObject(parent), _screen(screen), _host(host), _notes(notes), _defaults(defaults), _manager(manager),
      _idleTimer(host.makeTimer()), _exitWork(host.makeTimer()), _shrinkWork(host.makeTimer()),
      _growWork(host.makeTimer()), _deferred(host.makeTimer()), _lastActivity(Clock::now()) {
    _model.setPrefs(prefs());
    _panel = host.makePanel(*this);
}

DeckController::~DeckController() = default;

DeckPrefs DeckController::prefs() const { return DeckPrefs::read(_defaults); }

int DeckController::shownNoteCount() const { return static_cast<int>(_notes.visibleNotes().size()); }

bool DeckController::idleTimerRunning() const { return _idleTimer->isActive(); }

bool DeckController::isAnnouncing() const { return _announceUntil && *_announceUntil > Clock::now(); }

QRect DeckController::hotRect() const { return DeckLayout::hotRect(_panel->frame(), _model.prefs()); }

bool DeckController::pointerInHotRect() const { return QRectF(hotRect()).contains(_host.pointer()); }

bool DeckController::openNotePinned() const {
    if (!_state.isExpanded()) return false;
    const auto note = _notes.note(_state.noteID);
    return note && note->pinned;
}

void DeckController::start() {
    connect(&_notes, &NoteStore::notesChanged, this, [this] {
        // The strip's height follows the number of notes it shows.
        const int count = shownNoteCount();
        if (count == _watchedCount) return;
        _watchedCount = count;
        if (_state.isRest()) resizePanel(_state);
    });
    _watchedCount = shownNoteCount();
    resizePanel(_state);
    _panel->orderFront();
    returnToIdle();
}

void DeckController::shutDown() {
    setMonitors(false);
    for (auto* timer : {_idleTimer.get(), _exitWork.get(), _shrinkWork.get(), _growWork.get(), _deferred.get()})
        timer->stop();
    disconnect(&_notes, nullptr, this, nullptr);
    _panel->orderOut();
}

void DeckController::setScreen(const DeckScreen& screen) {
    _screen = screen;
    resizePanel(_state);
}

void DeckController::resizePanel(const DeckState& state) {
    _panel->setFrame(DeckLayout::panelFrame(state, _screen.visible, shownNoteCount(), _model.prefs()));
}

void DeckController::setMonitors(bool installed) {
    if (_monitorsInstalled == installed) return;
    _monitorsInstalled = installed;
    Q_EMIT monitorsChanged(installed);
}

void DeckController::setState(const DeckState& next) {
    const DeckState old = _state;
    if (next == old) return;
    _shrinkWork->stop();
    _growWork->stop();  // a publication still waiting is overtaken by this one
    _state = next;

    const bool growing = old.isRest() || next.isExpanded();
    if (growing) {
        // The panel takes its size first, so content never appears in a window too small for it.
        resizePanel(next);
        if (next.isFan()) {
            _model.publish(next, DeckTransition::plain);
            _model.bumpReveal();
        } else if (old.isRest() && !pointerInHotRect()) {
            _model.publish(next, DeckTransition::none);
        } else {
            _growWork->start(growWait, false, [this] { _model.publish(_state, DeckTransition::plain); });
        }
    } else {
        _model.publish(next, DeckTransition::spring);
        // The panel stays large until the views have finished shrinking.
        _shrinkWork->start(shrinkDelay, false, [this] { resizePanel(_state); });
    }

    _lastActivity = Clock::now();
    setMonitors(next.isExpanded());
    if (next.isRest() || (next.isFan() && prefs().alwaysShown))
        _idleTimer->stop();
    else if (!_idleTimer->isActive())
        startIdleTimer();
}

void DeckController::startIdleTimer() {
    _lastActivity = Clock::now();
    _lastPointer = _host.pointer();
    _idleTimer->start(idlePeriod, true, [this] { idleTick(); });
}

void DeckController::returnToIdle() { setState(prefs().alwaysShown ? DeckState::fan() : DeckState::rest()); }

void DeckController::goIdleAndDeactivate() {
    const bool wasExpanded = _state.isExpanded();
    returnToIdle();
    if (wasExpanded) _host.deactivateApplication();
}

void DeckController::pointerEntered() {
    _lastActivity = Clock::now();
    _exitWork->stop();
    _shrinkWork->stop();
    // Holding Alt lets the pointer pass over the strip to whatever lies behind it.
    if (_host.altHeld()) return;
    if (_state.isRest()) {
        if (_manager) _manager->returnOthersToIdle(displayID());
        setState(DeckState::fan());
    } else {
        resizePanel(_state);
    }
}

void DeckController::pointerExited() {
    if (!_state.isFan() || prefs().alwaysShown) return;
    _exitWork->start(exitConfirmation, false, [this] {
        if (_state.isFan() && !_model.isDragging() && !isAnnouncing() && !pointerInHotRect()) returnToIdle();
    });
}

void DeckController::idleTick() {
    const QPointF pointer = _host.pointer();
    const bool announcing = isAnnouncing();
    if (_state.isFan() && !_model.isDragging() && !QRectF(hotRect()).contains(pointer) && !announcing) {
        _announceUntil.reset();
        collapse();
        return;
    }
    if (_model.isDragging() || _host.recorderBusy()) {
        _lastActivity = Clock::now();
        return;
    }
    if (std::abs(pointer.x() - _lastPointer.x()) > movementThreshold ||
        std::abs(pointer.y() - _lastPointer.y()) > movementThreshold) {
        _lastPointer = pointer;
        _lastActivity = Clock::now();
    }
    const qint64 elapsed = _lastActivity.msecsTo(Clock::now());
    if (_state.isFan() && elapsed > fanTimeout.count()) {
        collapse();
    } else if (_state.isExpanded() && elapsed > expandedTimeout.count() && !openNotePinned()) {
        goIdleAndDeactivate();
    }
}

void DeckController::collapse() {
    _model.setOpenedTop(std::nullopt);
    if (_state.isExpanded()) {
        setState(DeckState::fan());
        _host.deactivateApplication();
    } else {
        returnToIdle();
    }
}

void DeckController::announce() {
    if (_state.isExpanded()) return;  // the user is working
    _announceUntil = Clock::now().addMSecs(announceLength.count());
    if (_manager) _manager->returnOthersToIdle(displayID());
    if (_state.isRest()) setState(DeckState::fan());
}

void DeckController::expand(const QString& noteID) {
    _lastActivity = Clock::now();
    if (_host.bringFloatingNoteToFront(noteID)) return;  // a note is never open twice
    _model.setOpenedHeight(_model.prefs().noteSize().height());
    _model.setOpenedTop(std::nullopt);
    if (_manager) _manager->returnOthersToIdle(displayID());
    setState(DeckState::expanded(noteID));
    _host.setOpenNote(noteID);
    _host.activateApplication();
    _panel->makeKeyAndFront();
}

void DeckController::applyPrefs() {
    const DeckPrefs current = prefs();
    _model.setPrefs(current);
    if (_state.isFan() && !current.alwaysShown) {
        if (pointerInHotRect()) {
            if (!_idleTimer->isActive()) startIdleTimer();
        } else {
            setState(DeckState::rest());
        }
    } else if (_state.isRest() && current.alwaysShown) {
        setState(DeckState::fan());
    }
    resizePanel(_state);
}

bool DeckController::keyPressed(std::optional<DeckShortcut> shortcut) {
    if (!_state.isExpanded() || !_panel->isKey()) return false;
    _lastActivity = Clock::now();
    if (!shortcut) return false;
    const QString id = _state.noteID;
    switch (*shortcut) {
    case DeckShortcut::close:
        if (_model.findQuery())
            _model.setFindQuery(std::nullopt);
        else
            collapse();
        break;
    case DeckShortcut::archiveNote:
        _notes.setArchived(id, true);
        collapse();
        break;
    case DeckShortcut::deleteNote:
        _notes.remove(id);
        collapse();
        break;
    case DeckShortcut::find:
        _model.setFindQuery(_model.findQuery() ? std::nullopt : std::optional<QString>(QString()));
        break;
    case DeckShortcut::task:
        if (_model.bridge()) _model.bridge()->toggleTaskLine();
        break;
    case DeckShortcut::pin: _notes.togglePin(id); break;
    case DeckShortcut::colour: _notes.cycleColor(id); break;
    case DeckShortcut::bigger: _host.changeFontSize(1.5); break;
    case DeckShortcut::smaller: _host.changeFontSize(-1.5); break;
    }
    return true;
}

void DeckController::clickInOtherApplication() {
    if (!_state.isExpanded() || openNotePinned()) return;
    // The click itself goes through; the deck follows once it has been delivered.
    _deferred->start(std::chrono::milliseconds(0), false, [this] {
        if (_state.isExpanded() && !openNotePinned()) goIdleAndDeactivate();
    });
}

void DeckController::clickInOwnWindow(bool isPanel, bool isTitled) {
    if (isPanel || !isTitled || !_state.isExpanded() || openNotePinned()) return;
    _deferred->start(std::chrono::milliseconds(0), false, [this] {
        if (_state.isExpanded() && !openNotePinned()) returnToIdle();
    });
}

}  // namespace vuro
