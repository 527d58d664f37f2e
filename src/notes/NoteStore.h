#pragma once

#include "notes/Note.h"
#include "notes/NotePersistence.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vuro {

// The one live collection of notes and folders. Loads everything once at construction and
// writes through a NotePersistence, at once or 0.25 s after a note's last change. Owns the one
// undoable deletion and the orphan sweep of sealed images and files. A store whose load failed
// is read-only for the life of the process: every change is ignored and lastError says why.
// Main thread only; observers connect to the change signals.
class NoteStore : public QObject {
    Q_OBJECT
public:
    struct PendingDelete {
        Note note;
        QDateTime deadline;
    };

    NoteStore(std::shared_ptr<NotePersistence> persistence,
              std::chrono::milliseconds saveDelay = std::chrono::milliseconds(250),
              std::chrono::milliseconds undoWindow = std::chrono::seconds(10),
              std::shared_ptr<NoteImageFiles> images = nullptr, std::shared_ptr<NoteImageFiles> files = nullptr,
              QObject* parent = nullptr);
    ~NoteStore() override;

    // Reads.
    const QList<Note>& notes() const { return _notes; }
    const QList<NoteFolder>& folders() const { return _folders; }
    const std::optional<QString>& lastError() const { return _lastError; }
    bool isWritable() const { return _isWritable; }
    const std::optional<PendingDelete>& pendingUndo() const { return _pendingUndo; }
    const QSet<QString>& unsavedIDs() const { return _unsavedIDs; }
    std::optional<Note> note(const QString& id) const;
    std::optional<NoteFolder> folder(const QString& id) const;
    QList<Note> visibleNotes() const;  // not archived, stably sorted by order
    std::optional<Note> noteForOriginID(const QString& originID) const;

    // Changes; all are no-ops when the store is not writable.
    Note create(const QString& title = {}, const QString& body = {}, std::optional<NoteColor> color = std::nullopt,
                const NoteOrigin& origin = NoteOrigin::local());
    void setBody(const QString& id, const QString& body, bool debounced = true, bool touch = true);
    void setTitle(const QString& id, const QString& title, bool debounced = true, bool touch = true);
    void setColor(const QString& id, NoteColor color, bool debounced = false, bool touch = true);
    void cycleColor(const QString& id, bool debounced = false, bool touch = true);
    void togglePin(const QString& id, bool debounced = false, bool touch = true);
    void setArchived(const QString& id, bool archived);
    void move(const QString& id, int delta);
    void remove(const QString& id);  // the undoable deletion
    void undoDelete();
    bool discardIfEmpty(const QString& id);
    int importNotes(QList<Note> incoming);
    int sweepEmptyNotes();
    bool flush();

    // Tags (names are normalised; a rename onto an existing tag merges) and folders
    // (a rename onto an existing name merges the notes into it; deleting one unfiles its notes).
    void addTags(const QString& id, const QStringList& tags);
    void removeTags(const QString& id, const QStringList& tags);
    void renameTag(const QString& from, const QString& to);
    void deleteTag(const QString& tag);
    void setFolder(const QString& id, const std::optional<QString>& folderID);
    std::optional<NoteFolder> createFolder(const QString& name);
    void renameFolder(const QString& folderID, const QString& name);
    void deleteFolder(const QString& folderID);
    QStringList allTags() const;  // every tag in use, sorted

    std::chrono::milliseconds saveDelay() const { return _saveDelay; }
    std::chrono::milliseconds undoWindow() const { return _undoWindow; }

    // Folders sort by name (localised comparison), then id.
    static bool folderLessThan(const NoteFolder& a, const NoteFolder& b);

Q_SIGNALS:
    void notesChanged();
    void foldersChanged();
    void lastErrorChanged();
    void pendingUndoChanged();
    void unsavedIDsChanged();

private:
    bool mutate(const QString& id, bool debounced, bool touch, const std::function<bool(Note&)>& edit);
    void scheduleSave(const QString& id);
    void cancelPendingSave(const QString& id);
    bool saveNow(const Note& note);
    void purgePending();
    void setLastError(std::optional<QString> error);
    void setUnsaved(const QString& id, bool unsaved);
    double topOrder() const;
    qsizetype indexOf(const QString& id) const;
    void appendNote(const Note& note);
    void removeNoteAt(qsizetype index);
    std::optional<NoteFolder> folderNamed(const QString& name) const;
    void editNotes(const std::function<bool(Note&)>& edit);  // touched and written at once
    void sortFolders();

    QList<Note> _notes;
    // Where each id sits in _notes: a keystroke must not scan ten thousand notes. Rebuilt lazily
    // after a removal shifts the positions.
    mutable QHash<QString, qsizetype> _index;
    mutable bool _indexValid = true;
    QList<NoteFolder> _folders;
    QSet<QString> _unsavedIDs;
    std::optional<QString> _lastError;
    bool _isWritable = true;
    std::optional<PendingDelete> _pendingUndo;
    std::shared_ptr<NotePersistence> _persistence;
    QHash<QString, QTimer*> _pendingSaves;
    std::chrono::milliseconds _saveDelay;
    std::chrono::milliseconds _undoWindow;
    QTimer _undoExpiry;
    std::shared_ptr<NoteImageFiles> _images;
    std::shared_ptr<NoteImageFiles> _files;
};

}  // namespace vuro
