#pragma once

#include "library/NoteFacts.h"
#include "library/NoteFilter.h"
#include "library/NotesSection.h"
#include "library/NotesSelection.h"

#include <QHash>
#include <QObject>
#include <QTimer>
#include <chrono>

namespace vuro {

class NoteStore;

// The model of the Notes window: the current section, search line, filters and selection, the
// notes they let through in their order, the sidebar's counts, and the bulk changes of a
// selection. Reads are computed on demand and cached until the store or a setting changes;
// `changed` is emitted once per turn of the event loop however many changes came. Main thread.
//
// Deleting one note uses the store's own undo. Deleting several hides them at once and removes
// them from the store when the undo window ends (or at the next deletion), so that all of them
// can come back whole, images and files included.
class LibraryModel : public QObject {
    Q_OBJECT
public:
    struct Counts {
        int all = 0;
        int tasks = 0;
        int agents = 0;
        int archive = 0;
        QHash<QString, int> folders;  // by folder id
        QHash<QString, int> tags;     // by tag as the store spells it
    };

    explicit LibraryModel(NoteStore& store, QObject* parent = nullptr);
    ~LibraryModel() override;

    NoteStore& store() const { return _store; }

    const NotesSection& section() const { return _section; }
    void setSection(const NotesSection& section);
    const QString& query() const { return _query; }
    void setQuery(const QString& query);
    const NoteFilter& filter() const { return _filter; }
    void setFilter(const NoteFilter& filter);

    // What the list shows, in its order, and their ids.
    const QList<Note>& shown();
    const QStringList& shownIDs();
    const Counts& counts();
    const NoteFacts& facts(const Note& note) { return _facts.facts(note); }

    const NotesSelection::State& selection() const { return _selection; }
    void click(const QString& id);
    void shiftClick(const QString& id);
    void controlClick(const QString& id);
    void selectAll();
    void clearSelection();
    // The selected notes in the order shown.
    QStringList selectedIDs();

    void archive(const QStringList& ids);
    void unarchive(const QStringList& ids);
    void remove(const QStringList& ids);
    bool canUndoRemove() const;
    int pendingRemovalCount() const;
    void undoRemove();
    // Removes now what waits for the undo window to end (before quitting).
    void finishRemoval();
    void moveToFolder(const QStringList& ids, const std::optional<QString>& folderID);
    void addTags(const QStringList& ids, const QStringList& tags);
    void removeTags(const QStringList& ids, const QStringList& tags);
    void setColor(const QStringList& ids, NoteColor color);

    std::chrono::milliseconds undoWindow() const { return _undoWindow; }
    void setUndoWindow(std::chrono::milliseconds window) { _undoWindow = window; }

Q_SIGNALS:
    // The shown notes, the counts or the selection may have changed.
    void changed();
    void undoChanged();

private:
    void invalidate();
    void refresh();

    NoteStore& _store;
    NotesSection _section;
    QString _query;
    NoteFilter::Search _search;
    NoteFilter _filter;
    NotesSelection::State _selection;
    NoteFactsCache _facts;
    QList<Note> _shown;
    QStringList _shownIDs;
    Counts _counts;
    bool _dirty = true;
    QTimer _notify;
    QStringList _pendingRemoval;
    std::optional<QString> _singleRemoval;  // a deletion whose undo the store holds
    QTimer _removalTimer;
    std::chrono::milliseconds _undoWindow;
};

}  // namespace vuro
