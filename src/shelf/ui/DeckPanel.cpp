#include "shelf/ui/DeckPanel.h"

#include "base/Clock.h"
#include "base/Defaults.h"
#include "editor/ui/NoteEditor.h"
#include "notes/NoteStore.h"
#include "notes/TaskLine.h"
#include "shelf/DeckController.h"
#include "shelf/DeckLayout.h"
#include "shelf/ui/NoteColors.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

namespace vuro {

namespace {

constexpr int idRole = Qt::UserRole;
constexpr int colorRole = Qt::UserRole + 1;
constexpr int previewRole = Qt::UserRole + 2;
constexpr int openTasksRole = Qt::UserRole + 3;

// The first line of the body that is not the title, as a hint of what the note holds.
QString preview(const Note& note) {
    const QString title = note.displayTitle();
    for (const QString& line : note.body.split(QLatin1Char('\n'))) {
        if (const auto task = TaskLine::parse(line)) {
            if (!task->text.isEmpty()) return (task->isDone ? QStringLiteral("☑ ") : QStringLiteral("☐ ")) + task->text;
            continue;
        }
        QString plain = Note::derivedTitle(line);
        if (plain.startsWith(QLatin1Char('>'))) plain = plain.mid(1).trimmed();
        if (!plain.isEmpty() && plain != title) return plain;
    }
    return {};
}

std::optional<DeckShortcut> shortcutFor(const QKeyEvent& event) {
    static const QList<QPair<DeckShortcut, QPair<const char*, const char*>>> table{
        {DeckShortcut::close, {"scClose", "Esc"}},          {DeckShortcut::archiveNote, {"scArchiveNote", "Ctrl+Shift+A"}},
        {DeckShortcut::deleteNote, {"scDelete", "Ctrl+Backspace"}}, {DeckShortcut::find, {"scFind", "Ctrl+F"}},
        {DeckShortcut::task, {"scTask", "Ctrl+T"}},         {DeckShortcut::pin, {"scPin", "Ctrl+P"}},
        {DeckShortcut::colour, {"scColour", "Ctrl+K"}},     {DeckShortcut::bigger, {"scBigger", "Ctrl+="}},
        {DeckShortcut::smaller, {"scSmaller", "Ctrl+-"}}};
    const QKeySequence pressed(event.keyCombination());
    for (const auto& [shortcut, key] : table) {
        const QKeySequence wanted(Defaults::standard().stringValue(QString::fromLatin1(key.first), QString::fromLatin1(key.second)),
                                  QKeySequence::PortableText);
        if (!wanted.isEmpty() && wanted.matches(pressed) == QKeySequence::ExactMatch) return shortcut;
    }
    return std::nullopt;
}

// A note in the fan: a card of its colour with title, preview and the number of open tasks.
class NoteCardDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {200, 58}; }
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const auto color = static_cast<NoteColor>(index.data(colorRole).toInt());
        const QRectF card = QRectF(option.rect).adjusted(4, 3, -4, -3);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        QPainterPath path;
        path.addRoundedRect(card, 8, 8);
        painter->fillPath(path, paperColor(color));
        if (option.state & QStyle::State_MouseOver) painter->fillPath(path, QColor(0, 0, 0, 14));
        painter->setPen(inkColor(color));
        QFont titleFont = option.font;
        titleFont.setBold(true);
        painter->setFont(titleFont);
        const QRectF text = card.adjusted(10, 6, -10, -6);
        const int openTasks = index.data(openTasksRole).toInt();
        const QString count = openTasks > 0 ? QStringLiteral("☐ %1").arg(openTasks) : QString();
        const qreal countWidth = count.isEmpty() ? 0 : QFontMetricsF(option.font).horizontalAdvance(count) + 8;
        painter->drawText(text.adjusted(0, 0, -countWidth, 0), Qt::AlignLeft | Qt::AlignTop,
                          QFontMetrics(titleFont).elidedText(index.data(Qt::DisplayRole).toString(), Qt::ElideRight,
                                                             static_cast<int>(text.width() - countWidth)));
        painter->setFont(option.font);
        if (!count.isEmpty()) painter->drawText(text, Qt::AlignRight | Qt::AlignTop, count);
        QColor faded = inkColor(color);
        faded.setAlphaF(0.6f);
        painter->setPen(faded);
        painter->drawText(text, Qt::AlignLeft | Qt::AlignBottom,
                          QFontMetrics(option.font).elidedText(index.data(previewRole).toString(), Qt::ElideRight,
                                                               static_cast<int>(text.width())));
        painter->restore();
    }
};

// The strip in rest: one coloured tab per note, a last grey one when there are more.
class Strip : public QWidget {
public:
    Strip(DeckController& controller, NoteStore& notes, QWidget* parent)
        : QWidget(parent), _controller(controller), _notes(notes) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QList<Note> visible = _notes.visibleNotes();
        const double s = _controller.model().prefs().scale;
        const int rows = DeckLayout::restRows(static_cast<int>(visible.size()));
        const qreal a = std::round(s * 9), b = std::round(s * 6);
        const bool left = _controller.model().prefs().onLeftEdge;
        for (int row = 0; row < rows; ++row) {
            const bool more = row == 14;
            const QColor color = visible.isEmpty() ? QColor(0xC8, 0xC8, 0xC8)
                                 : more          ? QColor(0x9A, 0x9A, 0x9A)
                                                 : paperColor(visible[row].color);
            const QRectF tab(left ? -6 : 2, a + row * 2 * b, width() + 4, b);
            QPainterPath path;
            path.addRoundedRect(tab, b / 2, b / 2);
            painter.fillPath(path, color);
            painter.setPen(QColor(0, 0, 0, 40));
            painter.drawPath(path);
        }
    }

private:
    DeckController& _controller;
    NoteStore& _notes;
};

// The fan's list. While a card is dragged the deck counts as busy, so that neither the idle
// tick nor a pointer leaving the strip folds the fan under the drag.
class CardList : public QListWidget {
public:
    CardList(DeckModel& model, QWidget* parent) : QListWidget(parent), _model(model) {}

protected:
    void startDrag(Qt::DropActions supportedActions) override {
        _model.setDragging(true);
        QListWidget::startDrag(supportedActions);
        _model.setDragging(false);
    }

private:
    DeckModel& _model;
};

QToolButton* toolButton(const QString& text, const QString& tip, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(tip);
    button->setAutoRaise(true);
    return button;
}

}  // namespace

DeckPanel::DeckPanel(DeckController& controller, NoteStore& notes)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus),
      _controller(controller), _notes(notes) {
    // A dock is kept above normal windows by the window manager and never gets a taskbar entry;
    // no strut is set, so the strip does not push other windows aside.
    setAttribute(Qt::WA_X11NetWmWindowTypeDock);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setMouseTracking(true);
    setAutoFillBackground(true);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, QColor(0xF4, 0xF2, 0xEE));
    setPalette(palette);

    _pages = new QStackedWidget(this);
    auto* root = new QHBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    // The controller alone decides the frame; no page may widen the thin strip of rest.
    root->setSizeConstraint(QLayout::SetNoConstraint);
    _pages->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    root->addWidget(_pages);

    _strip = new Strip(controller, notes, _pages);
    _pages->addWidget(_strip);

    auto* fan = new QWidget(_pages);
    auto* fanLayout = new QVBoxLayout(fan);
    fanLayout->setContentsMargins(10, 10, 10, 10);
    auto* header = new QHBoxLayout;
    auto* heading = new QLabel(tr("Shelf"), fan);
    QFont headingFont = heading->font();
    headingFont.setBold(true);
    headingFont.setPointSizeF(headingFont.pointSizeF() * 1.2);
    heading->setFont(headingFont);
    auto* newNote = toolButton(QStringLiteral("+"), tr("New note"), fan);
    connect(newNote, &QToolButton::clicked, this, [this] {
        const Note note = _notes.create();
        if (_notes.note(note.id)) _controller.expand(note.id);
    });
    header->addWidget(heading);
    header->addStretch();
    header->addWidget(newNote);
    fanLayout->addLayout(header);
    _undoBar = new QWidget(fan);
    auto* undoLayout = new QHBoxLayout(_undoBar);
    undoLayout->setContentsMargins(4, 0, 4, 0);
    undoLayout->addWidget(new QLabel(tr("Note deleted"), _undoBar));
    auto* undo = new QPushButton(tr("Undo"), _undoBar);
    connect(undo, &QPushButton::clicked, &_notes, &NoteStore::undoDelete);
    undoLayout->addStretch();
    undoLayout->addWidget(undo);
    fanLayout->addWidget(_undoBar);
    _list = new CardList(_controller.model(), fan);
    _list->setItemDelegate(new NoteCardDelegate(_list));
    _list->setFrameShape(QFrame::NoFrame);
    _list->setDragDropMode(QAbstractItemView::InternalMove);
    _list->setDefaultDropAction(Qt::MoveAction);
    _list->setMouseTracking(true);
    _list->setStyleSheet(QStringLiteral("QListWidget { background: transparent; }"));
    connect(_list, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { _controller.expand(item->data(idRole).toString()); });
    // Queued: the store's change rebuilds the list, which must not happen inside the drop.
    connect(
        _list->model(), &QAbstractItemModel::rowsMoved, this,
        [this](const QModelIndex&, int start, int, const QModelIndex&, int row) { listReordered(start, row); },
        Qt::QueuedConnection);
    fanLayout->addWidget(_list);
    _pages->addWidget(fan);

    _notePage = new QWidget(_pages);
    auto* noteLayout = new QVBoxLayout(_notePage);
    noteLayout->setContentsMargins(12, 10, 12, 12);
    auto* toolbar = new QHBoxLayout;
    auto* back = toolButton(QStringLiteral("‹"), tr("Back to the notes"), _notePage);
    connect(back, &QToolButton::clicked, this, [this] { _controller.collapse(); });
    _colorButton = toolButton(QStringLiteral("●"), tr("Next colour"), _notePage);
    connect(_colorButton, &QToolButton::clicked, this, [this] { _notes.cycleColor(_shownNoteID); });
    _pinButton = toolButton(QStringLiteral("📌"), tr("Keep open"), _notePage);
    _pinButton->setCheckable(true);
    connect(_pinButton, &QToolButton::clicked, this, [this] { _notes.togglePin(_shownNoteID); });
    auto* archive = toolButton(QStringLiteral("🗄"), tr("Archive"), _notePage);
    connect(archive, &QToolButton::clicked, this, [this] {
        _notes.setArchived(_shownNoteID, true);
        _controller.collapse();
    });
    auto* remove = toolButton(QStringLiteral("🗑"), tr("Delete"), _notePage);
    connect(remove, &QToolButton::clicked, this, [this] {
        _notes.remove(_shownNoteID);
        _controller.collapse();
    });
    toolbar->addWidget(back);
    toolbar->addStretch();
    for (auto* button : {_colorButton, _pinButton, archive, remove}) toolbar->addWidget(button);
    noteLayout->addLayout(toolbar);
    _findBar = new QWidget(_notePage);
    auto* findLayout = new QHBoxLayout(_findBar);
    findLayout->setContentsMargins(0, 0, 0, 4);
    _findField = new QLineEdit(_findBar);
    _findField->setPlaceholderText(tr("Find in note"));
    _findField->setClearButtonEnabled(true);
    connect(_findField, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (_controller.model().findQuery()) _controller.model().setFindQuery(text);
    });
    connect(_findField, &QLineEdit::returnPressed, this, &DeckPanel::findNext);
    findLayout->addWidget(_findField);
    noteLayout->addWidget(_findBar);
    _editor = new NoteEditor(_notePage);
    // A committed task line that names a date in words gets its date mark.
    _editor->setCommitFilter([](const QString& newBody, const QString& oldBody) {
        return TaskLine::applyDueDates(newBody, oldBody, Clock::now());
    });
    connect(_editor, &NoteEditor::storedTextChanged, this, [this](const QString& stored) {
        if (!_shownNoteID.isEmpty()) _notes.setBody(_shownNoteID, stored);
    });
    noteLayout->addWidget(_editor);
    _pages->addWidget(_notePage);

    connect(&_controller.model(), &DeckModel::stateChanged, this, [this](const DeckState& state) { showState(state); });
    connect(&_controller.model(), &DeckModel::revealed, this, &DeckPanel::refreshList);
    connect(&_controller.model(), &DeckModel::changed, this, [this] {
        updateFind();
        refreshNote();
        if (_listStale && !_controller.model().isDragging()) refreshList();
    });
    connect(&_controller, &DeckController::monitorsChanged, this, &DeckPanel::setMonitors);
    connect(&_notes, &NoteStore::notesChanged, this, [this] {
        if (_pages->currentIndex() == 0) _strip->update();
        if (_pages->currentIndex() == 1) refreshList();
        refreshNote();
    });
    connect(&_notes, &NoteStore::pendingUndoChanged, this,
            [this] { _undoBar->setVisible(_notes.pendingUndo().has_value()); });
    _undoBar->setVisible(false);
    _controller.model().setBridge(_editor);
    showState(_controller.model().state());
}

DeckPanel::~DeckPanel() {
    setMonitors(false);
    _controller.model().setBridge(nullptr);
}

void DeckPanel::setFrame(const QRect& frame) {
    if (geometry() == frame) return;
    // Taken at once and laid out before the next paint: the old size never shows for a frame.
    setGeometry(frame);
    if (layout()) layout()->activate();
}

void DeckPanel::orderFront() { show(); }

void DeckPanel::orderOut() { hide(); }

void DeckPanel::makeKeyAndFront() {
    setWindowFlag(Qt::WindowDoesNotAcceptFocus, false);
    show();
    raise();
    activateWindow();
    _editor->setFocus();
}

bool DeckPanel::isKey() const { return isActiveWindow(); }

void DeckPanel::showState(const DeckState& state) {
    if (state.isRest()) {
        _pages->setCurrentIndex(0);
        _strip->update();
    } else if (state.isFan()) {
        refreshList();
        _pages->setCurrentIndex(1);
    } else {
        refreshNote();
        _pages->setCurrentIndex(2);
    }
}

void DeckPanel::refreshList() {
    // Rebuilding the list under a drag would end it: the drop picks the change up.
    _listStale = _controller.model().isDragging();
    if (_listStale) return;
    const QList<Note> visible = _notes.visibleNotes();
    const bool showAll = _controller.model().showAll();
    _list->clear();
    for (qsizetype i = 0; i < visible.size() && (showAll || i < 50); ++i) {
        const Note& note = visible[i];
        auto* item = new QListWidgetItem(note.displayTitle(), _list);
        item->setData(idRole, note.id);
        item->setData(colorRole, rawValue(note.color));
        item->setData(previewRole, preview(note));
        const auto progress = TaskLine::progress(note.body);
        item->setData(openTasksRole, progress.total - progress.done);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled);
    }
}

void DeckPanel::listReordered(int from, int to) {
    // The list already shows the new order; the store learns it as one move of one note.
    const QList<Note> visible = _notes.visibleNotes();
    if (from < 0 || from >= visible.size()) return;
    const int target = to > from ? to - 1 : to;
    if (target != from) _notes.move(visible[from].id, target - from);
}

void DeckPanel::refreshNote() {
    const DeckState& state = _controller.state();
    if (!state.isExpanded()) {
        if (!_shownNoteID.isEmpty()) _editor->commit();
        _shownNoteID.clear();
        return;
    }
    const auto note = _notes.note(state.noteID);
    if (!note) return;
    const DeckPrefs& prefs = _controller.model().prefs();
    if (_shownNoteID != note->id) {
        _shownNoteID = note->id;
        _editor->setStoredText(note->body);
    }
    _editor->setNoteFontSize(prefs.fontSize);
    _editor->setMarkdown(prefs.markdown);
    _editor->setRevealMarks(prefs.revealMarks);
    _editor->setInk(inkColor(note->color));
    QPalette palette = _notePage->palette();
    palette.setColor(QPalette::Window, paperColor(note->color));
    palette.setColor(QPalette::Base, paperColor(note->color));
    palette.setColor(QPalette::Text, inkColor(note->color));
    _notePage->setAutoFillBackground(true);
    _notePage->setPalette(palette);
    _editor->setPalette(palette);
    _pinButton->setChecked(note->pinned);
    updateFind();
}

void DeckPanel::updateFind() {
    const auto& query = _controller.model().findQuery();
    const bool opening = query && _findBar->isHidden();
    const bool closing = !query && !_findBar->isHidden();
    _findBar->setVisible(query.has_value());
    if (query && _findField->text() != *query) _findField->setText(*query);
    // The bar takes the typing when it opens and gives it back to the note when it closes.
    if (opening && isActiveWindow()) _findField->setFocus();
    if (closing && _findField->hasFocus()) _editor->setFocus();
    QList<QTextEdit::ExtraSelection> found;
    if (query && !query->isEmpty()) {
        QTextCursor cursor(_editor->document());
        while (!(cursor = _editor->document()->find(*query, cursor)).isNull()) {
            QTextEdit::ExtraSelection selection;
            selection.cursor = cursor;
            selection.format.setBackground(QColor(0xFF, 0xC1, 0x07, 140));
            found.append(selection);
        }
    }
    _editor->setExtraSelections(found);
}

void DeckPanel::findNext() {
    const auto& query = _controller.model().findQuery();
    if (!query || query->isEmpty()) return;
    QTextDocument* document = _editor->document();
    QTextCursor next = document->find(*query, _editor->textCursor());
    if (next.isNull()) next = document->find(*query, 0);  // from the top again
    if (next.isNull()) return;
    _editor->setTextCursor(next);
    _editor->ensureCursorVisible();
}

void DeckPanel::setMonitors(bool installed) {
    if (_monitors == installed) return;
    _monitors = installed;
    if (installed)
        qApp->installEventFilter(this);
    else
        qApp->removeEventFilter(this);
}

bool DeckPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && watched->isWidgetType() &&
        static_cast<QWidget*>(watched)->window() == this) {
        return _controller.keyPressed(shortcutFor(*static_cast<QKeyEvent*>(event)));
    }
    if (event->type() == QEvent::MouseButtonPress && watched->isWindowType()) {
        const auto* window = static_cast<QWindow*>(watched);
        const bool isPanel = window == windowHandle();
        const bool titled = !(window->flags() & (Qt::FramelessWindowHint | Qt::Popup | Qt::ToolTip));
        _controller.clickInOwnWindow(isPanel, titled);
    }
    if (event->type() == QEvent::ApplicationDeactivate) _controller.clickInOtherApplication();
    return false;
}

void DeckPanel::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    _controller.pointerEntered();
}

void DeckPanel::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    _controller.pointerExited();
}

}  // namespace vuro
