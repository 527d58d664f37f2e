#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace vuro {

class LibraryModel;
class NoteEditor;
class NoteFilterBar;
class NoteListView;
class NoteStore;
class NotesSidebar;
class TaskBoardView;

// The Notes window: sections on the left, the search line, filters and the list in the middle
// (or the task board in the Tasks section), the selected note on the right. Acts on a selection
// as a whole: archive, unarchive, delete with undo, file into a folder, tag, colour. One per
// process, made when first asked for and hidden, not destroyed, when closed.
class NotesWindow : public QWidget {
    Q_OBJECT
public:
    explicit NotesWindow(NoteStore& store, QWidget* parent = nullptr);
    ~NotesWindow() override;

    LibraryModel& library() const { return *_library; }
    void focusSearch();

    // Children the tests and the keyboard reach.
    QLineEdit* searchLine() const { return _search; }
    NoteListView* list() const { return _list; }
    NotesSidebar* sidebar() const { return _sidebar; }
    NoteEditor* editor() const { return _editor; }
    TaskBoardView* taskBoard() const { return _taskBoard; }

    void archiveSelection();
    void unarchiveSelection();
    void deleteSelection();
    void addTagToSelection(const QString& tag);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* makeBulkBar();
    QWidget* makeUndoBar();
    QWidget* makeEditor();
    void update();
    void showPrimary();
    void updateUndoBar();
    void fillFolderMenu();
    void fillTagMenu();
    void fillColorMenu();

    NoteStore& _store;
    LibraryModel* _library;
    NotesSidebar* _sidebar;
    QLineEdit* _search;
    NoteFilterBar* _filterBar;
    QWidget* _bulkBar;
    QLabel* _bulkLabel;
    QToolButton* _archive;
    QToolButton* _unarchive;
    QToolButton* _folderButton;
    QToolButton* _tagButton;
    QToolButton* _colorButton;
    QWidget* _undoBar;
    QLabel* _undoLabel;
    QTimer _undoHide;
    QStackedWidget* _center;
    NoteListView* _list;
    TaskBoardView* _taskBoard;
    QLabel* _empty;
    QLineEdit* _title;
    NoteEditor* _editor;
    QStackedWidget* _editorStack;
    QString _editingID;
    bool _loading = false;
};

}  // namespace vuro
