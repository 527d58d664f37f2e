#pragma once

#include "shelf/DeckPanelPort.h"
#include "shelf/DeckState.h"

#include <QPointer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace vuro {

class DeckController;
class NoteEditor;
class NoteStore;

// The window of one deck at the screen edge: a frameless tool window that stays on top, typed
// as a dock on X11 (without struts, so maximised windows keep the whole screen). It shows the
// strip of coloured tabs in rest, the list of notes in the fan, and the open note with its
// toolbar and find bar when expanded. Pointer and key events go to the controller, which
// decides everything; the panel only draws what the model says.
class DeckPanel : public QWidget, public DeckPanelPort {
    Q_OBJECT
public:
    DeckPanel(DeckController& controller, NoteStore& notes);
    ~DeckPanel() override;

    void setFrame(const QRect& frame) override;
    QRect frame() const override { return geometry(); }
    void orderFront() override;
    void orderOut() override;
    void makeKeyAndFront() override;
    bool isKey() const override;

    NoteEditor* editor() const { return _editor; }
    QListWidget* list() const { return _list; }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showState(const DeckState& state);
    void refreshList();
    void refreshNote();
    void listReordered(int from, int to);
    void setMonitors(bool installed);
    void markAsDock();
    void updateFind();
    // Selects the next match of the find bar's text after the caret, from the top after the last.
    void findNext();

    DeckController& _controller;
    NoteStore& _notes;
    QStackedWidget* _pages = nullptr;
    QWidget* _strip = nullptr;
    QListWidget* _list = nullptr;
    QWidget* _undoBar = nullptr;
    QWidget* _notePage = nullptr;
    QToolButton* _colorButton = nullptr;
    QToolButton* _pinButton = nullptr;
    QWidget* _findBar = nullptr;
    QLineEdit* _findField = nullptr;
    NoteEditor* _editor = nullptr;
    QString _shownNoteID;
    bool _monitors = false;
    bool _listStale = false;  // the notes changed during a drag
};

}  // namespace vuro
