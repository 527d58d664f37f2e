#pragma once

#include "notes/Note.h"

#include <QList>

namespace vuro {

// Where notes and folders are kept. Every operation may throw a vuro::Error whose message is
// shown to the user; all are called on the main thread.
class NotePersistence {
public:
    virtual ~NotePersistence() = default;
    virtual QList<Note> loadNotes() = 0;
    virtual void save(const Note& note) = 0;  // insert or replace by id
    virtual void remove(const QString& id) = 0;
    virtual QList<NoteFolder> loadFolders() = 0;
    virtual void saveFolder(const NoteFolder& folder) = 0;
    virtual void deleteFolder(const QString& id) = 0;
};

// A sealed file store seen from the note store: list the stored ids, delete some of them.
class NoteImageFiles {
public:
    virtual ~NoteImageFiles() = default;
    virtual QStringList allIDs() const = 0;
    virtual void deleteIDs(const QStringList& ids) = 0;
};

}  // namespace vuro
