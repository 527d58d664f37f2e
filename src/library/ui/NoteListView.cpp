#include "library/ui/NoteListView.h"

#include "library/LibraryModel.h"
#include "library/ui/NoteListDelegate.h"
#include "library/ui/NoteListModel.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace vuro {

NoteListView::NoteListView(LibraryModel& library, QWidget* parent) : QListView(parent), _library(library) {
    setModel(new NoteListModel(library, this));
    setItemDelegate(new NoteListDelegate(this));
    setSelectionMode(QAbstractItemView::NoSelection);
    setUniformItemSizes(true);
    setMouseTracking(true);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("Notes"));
    connect(&_library, &LibraryModel::changed, this, &NoteListView::follow);
}

// Keeps the keyboard's place on the shown note, so that arrows continue from there.
void NoteListView::follow() {
    const auto& primary = _library.selection().primary;
    const qsizetype row = primary ? _library.shownIDs().indexOf(*primary) : -1;
    if (row < 0) return;
    const QModelIndex index = model()->index(int(row), 0);
    if (currentIndex() != index) setCurrentIndex(index);
    scrollTo(index);
}

void NoteListView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    setFocus(Qt::MouseFocusReason);
    if (!index.isValid() || event->button() != Qt::LeftButton) {
        if (!index.isValid() && event->button() == Qt::LeftButton) _library.clearSelection();
        QListView::mousePressEvent(event);
        return;
    }
    const QString id = index.data(NoteListModel::IdRole).toString();
    if (event->modifiers().testFlag(Qt::ShiftModifier)) _library.shiftClick(id);
    else if (event->modifiers().testFlag(Qt::ControlModifier)) _library.controlClick(id);
    else _library.click(id);
}

void NoteListView::step(int delta, Qt::KeyboardModifiers modifiers) {
    const QStringList& ids = _library.shownIDs();
    if (ids.isEmpty()) return;
    // Ctrl moves only the keyboard's place; Ctrl+Space then adds or removes the note there.
    const qsizetype at = currentIndex().isValid() ? currentIndex().row() : -1;
    qsizetype target = at < 0 ? (delta > 0 ? 0 : ids.size() - 1) : std::clamp<qsizetype>(at + delta, 0, ids.size() - 1);
    // With nothing chosen yet, the first arrow chooses the row the keyboard is on.
    if (at >= 0 && !_library.selection().primary) target = at;
    if (modifiers.testFlag(Qt::ControlModifier)) {
        setCurrentIndex(model()->index(int(target), 0));
        return;
    }
    if (modifiers.testFlag(Qt::ShiftModifier)) _library.shiftClick(ids[target]);
    else _library.click(ids[target]);
}

void NoteListView::keyPressEvent(QKeyEvent* event) {
    const int page = std::max(1, viewport()->height() / std::max(1, sizeHintForRow(0)));
    const QStringList& ids = _library.shownIDs();
    switch (event->key()) {
    case Qt::Key_Up: step(-1, event->modifiers()); return;
    case Qt::Key_Down: step(1, event->modifiers()); return;
    case Qt::Key_PageUp: step(-page, event->modifiers()); return;
    case Qt::Key_PageDown: step(page, event->modifiers()); return;
    case Qt::Key_Home: step(-int(ids.size()), event->modifiers()); return;
    case Qt::Key_End: step(int(ids.size()), event->modifiers()); return;
    case Qt::Key_Space:
        if (event->modifiers().testFlag(Qt::ControlModifier) && currentIndex().isValid()) {
            _library.controlClick(currentIndex().data(NoteListModel::IdRole).toString());
            return;
        }
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        if (!_library.selection().selected.isEmpty()) Q_EMIT deleteRequested();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (_library.selection().primary) Q_EMIT openRequested();
        return;
    case Qt::Key_Escape:
        if (!_library.selection().selected.isEmpty()) {
            _library.clearSelection();
            return;
        }
        break;
    default:
        if (event->matches(QKeySequence::SelectAll)) {
            _library.selectAll();
            return;
        }
    }
    QListView::keyPressEvent(event);
}

}  // namespace vuro
