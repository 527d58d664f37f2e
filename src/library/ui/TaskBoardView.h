#pragma once

#include <QWidget>

class QCheckBox;
class QTreeWidget;
class QTreeWidgetItem;

namespace vuro {

class LibraryModel;

// The Tasks section: every open task of the shown notes by due date (overdue, today, tomorrow,
// the next seven days, later, without a date, and done ones when asked). Ticking a box (mouse or
// Space) rewrites that line of its note through the store. Enter shows the task's note.
class TaskBoardView : public QWidget {
    Q_OBJECT
public:
    TaskBoardView(LibraryModel& library, QWidget* parent = nullptr);

    QTreeWidget* tree() const { return _tree; }
    QCheckBox* showDone() const { return _showDone; }
    void rebuild();

Q_SIGNALS:
    void openNote(const QString& noteID);

private:
    void toggled(QTreeWidgetItem* item, int column);

    LibraryModel& _library;
    QCheckBox* _showDone;
    QTreeWidget* _tree;
    bool _rebuilding = false;
};

}  // namespace vuro
