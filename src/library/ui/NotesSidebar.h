#pragma once

#include "library/NotesSection.h"

#include <QTreeWidget>

namespace vuro {

class LibraryModel;

// The sections of the Notes window with their counts: All Notes, Tasks, From Agents, Archive,
// then the folders and the tags. Folders and tags can be renamed (F2 or the context menu) and
// deleted (Delete); a folder is made from the Folders heading's menu.
class NotesSidebar : public QTreeWidget {
    Q_OBJECT
public:
    NotesSidebar(LibraryModel& library, QWidget* parent = nullptr);

    // The row of a section, if it is shown.
    QTreeWidgetItem* itemFor(const NotesSection& section) const;

    void renameCurrent();
    void deleteCurrent();
    void newFolder();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void rebuild();
    void addRow(QTreeWidgetItem* parent, const QString& name, int count, const NotesSection& section);
    static NotesSection sectionOf(const QTreeWidgetItem* item);

    LibraryModel& _library;
    bool _rebuilding = false;
    QStringList _signature;
};

}  // namespace vuro
