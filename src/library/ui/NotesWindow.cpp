#include "library/ui/NotesWindow.h"

#include "base/Clock.h"
#include "base/Defaults.h"
#include "editor/ui/NoteEditor.h"
#include "library/LibraryModel.h"
#include "library/ui/NoteFilterBar.h"
#include "library/ui/NoteListView.h"
#include "library/ui/NotePalette.h"
#include "library/ui/NotesSidebar.h"
#include "library/ui/TaskBoardView.h"
#include "notes/NoteStore.h"
#include "notes/TaskLine.h"
#include "shelf/DeckPrefs.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace vuro {

namespace {

QToolButton* toolButton(const QString& text, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setAutoRaise(true);
    return button;
}

QToolButton* menuButton(const QString& text, QWidget* parent) {
    QToolButton* button = toolButton(text, parent);
    button->setPopupMode(QToolButton::InstantPopup);
    button->setMenu(new QMenu(button));
    return button;
}

QIcon colorIcon(NoteColor color) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(NotePalette::paper(color).darker(140));
    painter.setBrush(NotePalette::paper(color));
    painter.drawEllipse(QRectF(1.5, 1.5, 13, 13));
    return QIcon(pixmap);
}

}  // namespace

NotesWindow::NotesWindow(NoteStore& store, QWidget* parent)
    : QWidget(parent, Qt::Window), _store(store), _library(new LibraryModel(store, this)) {
    setWindowTitle(tr("Notes"));
    resize(1180, 720);

    _sidebar = new NotesSidebar(*_library, this);
    _search = new QLineEdit(this);
    _search->setPlaceholderText(tr("Search — \"a phrase\", #tag, -leave-out"));
    _search->setClearButtonEnabled(true);
    _search->setAccessibleName(tr("Search notes"));
    connect(_search, &QLineEdit::textChanged, _library, &LibraryModel::setQuery);
    _filterBar = new NoteFilterBar(*_library, this);

    _list = new NoteListView(*_library, this);
    _empty = new QLabel(this);
    _empty->setAlignment(Qt::AlignCenter);
    _empty->setWordWrap(true);
    _empty->setForegroundRole(QPalette::PlaceholderText);
    _center = new QStackedWidget(this);
    _center->addWidget(_list);
    _center->addWidget(_empty);
    _taskBoard = new TaskBoardView(*_library, this);
    _center->addWidget(_taskBoard);
    connect(_taskBoard, &TaskBoardView::openNote, this, [this](const QString& id) { _library->click(id); });
    connect(_list, &NoteListView::deleteRequested, this, &NotesWindow::deleteSelection);
    connect(_list, &NoteListView::openRequested, this, [this] { _editor->setFocus(); });

    auto* middle = new QWidget(this);
    auto* middleLayout = new QVBoxLayout(middle);
    middleLayout->setContentsMargins(0, 6, 0, 0);
    middleLayout->setSpacing(4);
    auto* searchRow = new QHBoxLayout;
    searchRow->setContentsMargins(8, 0, 8, 0);
    searchRow->addWidget(_search);
    middleLayout->addLayout(searchRow);
    middleLayout->addWidget(_filterBar);
    middleLayout->addWidget(makeBulkBar());
    middleLayout->addWidget(makeUndoBar());
    middleLayout->addWidget(_center, 1);

    auto* splitter = new QSplitter(this);
    splitter->addWidget(_sidebar);
    splitter->addWidget(middle);
    splitter->addWidget(makeEditor());
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setStretchFactor(2, 1);
    splitter->setSizes({200, 520, 460});
    splitter->setChildrenCollapsible(false);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);

    setTabOrder(_sidebar, _search);
    setTabOrder(_search, _filterBar);
    setTabOrder(_filterBar, _list);
    setTabOrder(_list, _title);
    setTabOrder(_title, _editor);

    new QShortcut(QKeySequence::Find, this, this, &NotesWindow::focusSearch);
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_N), this, this, [this] {
        const Note note = _store.create();
        _library->setSection(NotesSection::all());
        _search->clear();
        _library->click(note.id);
        _editor->setFocus();
    });
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Z), this, this, [this] {
        if (_library->canUndoRemove()) _library->undoRemove();
    });
    const NotesSection sections[] = {NotesSection::all(), NotesSection::tasks(), NotesSection::agents(), NotesSection::archive()};
    for (int i = 0; i < 4; ++i)
        new QShortcut(QKeySequence(Qt::CTRL | (Qt::Key_1 + i)), this, this,
                      [this, section = sections[i]] { _library->setSection(section); });
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this, this, &QWidget::close);

    _undoHide.setSingleShot(true);
    connect(&_undoHide, &QTimer::timeout, this, &NotesWindow::updateUndoBar);
    connect(_library, &LibraryModel::changed, this, &NotesWindow::update);
    connect(_library, &LibraryModel::undoChanged, this, &NotesWindow::updateUndoBar);
    connect(&_store, &NoteStore::notesChanged, this, &NotesWindow::showPrimary);
    update();
    updateUndoBar();
}

NotesWindow::~NotesWindow() = default;

void NotesWindow::focusSearch() {
    _search->setFocus(Qt::ShortcutFocusReason);
    _search->selectAll();
}

void NotesWindow::closeEvent(QCloseEvent* event) {
    _library->finishRemoval();
    event->accept();
}

QWidget* NotesWindow::makeBulkBar() {
    _bulkBar = new QWidget(this);
    auto* layout = new QHBoxLayout(_bulkBar);
    layout->setContentsMargins(8, 0, 8, 0);
    layout->setSpacing(2);
    _bulkLabel = new QLabel(_bulkBar);
    layout->addWidget(_bulkLabel);
    layout->addStretch();
    _archive = toolButton(tr("Archive"), _bulkBar);
    connect(_archive, &QToolButton::clicked, this, &NotesWindow::archiveSelection);
    _unarchive = toolButton(tr("Unarchive"), _bulkBar);
    connect(_unarchive, &QToolButton::clicked, this, &NotesWindow::unarchiveSelection);
    QToolButton* remove = toolButton(tr("Delete"), _bulkBar);
    connect(remove, &QToolButton::clicked, this, &NotesWindow::deleteSelection);
    _folderButton = menuButton(tr("Folder"), _bulkBar);
    connect(_folderButton->menu(), &QMenu::aboutToShow, this, &NotesWindow::fillFolderMenu);
    _tagButton = menuButton(tr("Tags"), _bulkBar);
    connect(_tagButton->menu(), &QMenu::aboutToShow, this, &NotesWindow::fillTagMenu);
    _colorButton = menuButton(tr("Colour"), _bulkBar);
    connect(_colorButton->menu(), &QMenu::aboutToShow, this, &NotesWindow::fillColorMenu);
    for (QToolButton* button : {_archive, _unarchive, remove, _folderButton, _tagButton, _colorButton})
        layout->addWidget(button);
    return _bulkBar;
}

QWidget* NotesWindow::makeUndoBar() {
    _undoBar = new QWidget(this);
    _undoBar->setAutoFillBackground(true);
    _undoBar->setBackgroundRole(QPalette::ToolTipBase);
    auto* layout = new QHBoxLayout(_undoBar);
    layout->setContentsMargins(8, 2, 8, 2);
    _undoLabel = new QLabel(_undoBar);
    _undoLabel->setForegroundRole(QPalette::ToolTipText);
    layout->addWidget(_undoLabel, 1);
    QToolButton* undo = toolButton(tr("Undo"), _undoBar);
    connect(undo, &QToolButton::clicked, _library, &LibraryModel::undoRemove);
    layout->addWidget(undo);
    return _undoBar;
}

QWidget* NotesWindow::makeEditor() {
    auto* pane = new QWidget(this);
    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(12, 10, 12, 10);
    _title = new QLineEdit(pane);
    _title->setPlaceholderText(tr("Title"));
    _title->setFrame(false);
    _title->setAccessibleName(tr("Note title"));
    QFont titleFont = _title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.35);
    titleFont.setBold(true);
    _title->setFont(titleFont);
    // The same editor as on the Shelf: live Markdown, task boxes, date marks on commit.
    _editor = new NoteEditor(pane);
    _editor->setAccessibleName(tr("Note text"));
    _editor->setCommitFilter([](const QString& newBody, const QString& oldBody) {
        return TaskLine::applyDueDates(newBody, oldBody, Clock::now());
    });
    // Font size and Markdown rendering follow the same preferences as on the Shelf.
    const auto applyEditorPreferences = [this] {
        const DeckPrefs prefs = DeckPrefs::read(Defaults::standard());
        _editor->setNoteFontSize(prefs.fontSize);
        _editor->setMarkdown(prefs.markdown);
        _editor->setRevealMarks(prefs.revealMarks);
    };
    applyEditorPreferences();
    connect(&Defaults::standard(), &Defaults::changed, this, applyEditorPreferences);
    connect(_title, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (!_loading && !_editingID.isEmpty()) _store.setTitle(_editingID, text);
    });
    connect(_editor, &NoteEditor::storedTextChanged, this, [this](const QString& stored) {
        if (!_loading && !_editingID.isEmpty()) _store.setBody(_editingID, stored);
    });
    auto* noSelection = new QLabel(tr("Select a note"), pane);
    noSelection->setAlignment(Qt::AlignCenter);
    noSelection->setForegroundRole(QPalette::PlaceholderText);
    auto* editing = new QWidget(pane);
    auto* editingLayout = new QVBoxLayout(editing);
    editingLayout->setContentsMargins(0, 0, 0, 0);
    editingLayout->addWidget(_title);
    editingLayout->addWidget(_editor, 1);
    _editorStack = new QStackedWidget(pane);
    _editorStack->addWidget(noSelection);
    _editorStack->addWidget(editing);
    layout->addWidget(_editorStack);
    return pane;
}

// Loads the shown note into the editor, and follows changes made elsewhere (the Shelf, an
// agent, a ticked task) unless the user is typing in it.
void NotesWindow::showPrimary() {
    const auto& primary = _library->selection().primary;
    const std::optional<Note> note = primary ? _store.note(*primary) : std::nullopt;
    // The line last typed into the note being left is finished there, date mark included.
    if (!_editingID.isEmpty() && (!note || note->id != _editingID)) _editor->commit();
    if (!note) {
        _editingID.clear();
        _editorStack->setCurrentIndex(0);
        return;
    }
    _editorStack->setCurrentIndex(1);
    const bool switching = _editingID != note->id;
    _loading = true;
    if (switching || (!_title->hasFocus() && _title->text() != note->title)) _title->setText(note->title);
    if (switching || (!_editor->hasFocus() && _editor->storedText() != note->body)) _editor->setStoredText(note->body);
    _loading = false;
    _editingID = note->id;
    const bool writable = _store.isWritable() && !note->archived;
    _title->setReadOnly(!writable);
    _editor->setReadOnly(!writable);
}

void NotesWindow::update() {
    const QList<Note>& shown = _library->shown();
    const bool archive = _library->section().kind == NotesSection::Kind::archive;
    if (_library->section().kind == NotesSection::Kind::tasks) {
        _center->setCurrentWidget(_taskBoard);
    } else if (shown.isEmpty()) {
        _empty->setText(_library->query().isEmpty() ? (archive ? tr("Nothing archived") : tr("No notes here"))
                                                     : tr("No notes match “%1”").arg(_library->query()));
        _center->setCurrentWidget(_empty);
    } else {
        _center->setCurrentWidget(_list);
    }
    const int selected = int(_library->selection().selected.size());
    _bulkBar->setVisible(selected > 0);
    _bulkLabel->setText(selected == 1 ? tr("1 note selected") : tr("%1 notes selected").arg(selected));
    _archive->setVisible(!archive);
    _unarchive->setVisible(archive);
    showPrimary();
}

void NotesWindow::updateUndoBar() {
    const bool undoable = _library->canUndoRemove();
    if (!undoable) {
        _undoBar->hide();
        return;
    }
    const int count = _library->pendingRemovalCount();
    _undoLabel->setText(count == 1 ? tr("Note deleted") : tr("%1 notes deleted").arg(count));
    _undoBar->show();
    // The store drops its undo when the window ends; look again then.
    _undoHide.start(_library->undoWindow() + std::chrono::milliseconds(50));
}

void NotesWindow::archiveSelection() { _library->archive(_library->selectedIDs()); }
void NotesWindow::unarchiveSelection() { _library->unarchive(_library->selectedIDs()); }
void NotesWindow::deleteSelection() { _library->remove(_library->selectedIDs()); }

void NotesWindow::addTagToSelection(const QString& tag) {
    const QString normalized = Note::normalizedTag(tag);
    if (!normalized.isEmpty()) _library->addTags(_library->selectedIDs(), {normalized});
}

void NotesWindow::fillFolderMenu() {
    QMenu* menu = _folderButton->menu();
    menu->clear();
    for (const NoteFolder& folder : _store.folders())
        menu->addAction(folder.name, this, [this, id = folder.id] { _library->moveToFolder(_library->selectedIDs(), id); });
    if (!_store.folders().isEmpty()) menu->addSeparator();
    menu->addAction(tr("No Folder"), this, [this] { _library->moveToFolder(_library->selectedIDs(), std::nullopt); });
    menu->addAction(tr("New Folder…"), this, [this] {
        bool ok = false;
        const QString name = QInputDialog::getText(this, tr("New Folder"), tr("Folder name:"), QLineEdit::Normal, {}, &ok);
        if (!ok || name.trimmed().isEmpty()) return;
        if (const auto folder = _store.createFolder(name.trimmed())) _library->moveToFolder(_library->selectedIDs(), folder->id);
    });
}

void NotesWindow::fillTagMenu() {
    QMenu* menu = _tagButton->menu();
    menu->clear();
    menu->addAction(tr("Add Tag…"), this, [this] {
        bool ok = false;
        const QString tag = QInputDialog::getText(this, tr("Add Tag"), tr("Tag:"), QLineEdit::Normal, {}, &ok);
        if (ok) addTagToSelection(tag);
    });
    for (const QString& tag : _store.allTags())
        menu->addAction(QLatin1Char('#') + tag, this, [this, tag] { _library->addTags(_library->selectedIDs(), {tag}); });
    QStringList present;
    for (const QString& id : _library->selectedIDs())
        if (const auto note = _store.note(id))
            for (const QString& tag : note->tags)
                if (!present.contains(tag)) present.append(tag);
    if (present.isEmpty()) return;
    present.sort(Qt::CaseInsensitive);
    QMenu* removeMenu = menu->addMenu(tr("Remove Tag"));
    for (const QString& tag : present)
        removeMenu->addAction(QLatin1Char('#') + tag, this, [this, tag] { _library->removeTags(_library->selectedIDs(), {tag}); });
}

void NotesWindow::fillColorMenu() {
    QMenu* menu = _colorButton->menu();
    menu->clear();
    for (int raw = 0; raw < 8; ++raw) {
        const auto color = static_cast<NoteColor>(raw);
        menu->addAction(colorIcon(color), NotePalette::name(color), this,
                        [this, color] { _library->setColor(_library->selectedIDs(), color); });
    }
}

}  // namespace vuro
