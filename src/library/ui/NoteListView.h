#pragma once

#include <QListView>

namespace vuro {

class LibraryModel;

// The note list. Clicks and keys go to the library's selection: a click selects one note,
// Shift extends from the anchor, Ctrl adds or removes one; arrows move, Shift+arrows extend,
// Ctrl+A selects all, Delete asks to delete, Enter opens the note in the editor.
class NoteListView : public QListView {
    Q_OBJECT
public:
    NoteListView(LibraryModel& library, QWidget* parent = nullptr);

Q_SIGNALS:
    void deleteRequested();
    void openRequested();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void follow();
    void step(int delta, Qt::KeyboardModifiers modifiers);

    LibraryModel& _library;
};

}  // namespace vuro
