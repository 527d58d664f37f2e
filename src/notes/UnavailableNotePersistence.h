#pragma once

#include "base/Error.h"
#include "notes/NotePersistence.h"

namespace vuro {

// Stands in for a store that could not be opened: every operation throws error. A note store
// built on it loads nothing and stays read-only, so the user's real notes are never overwritten
// by an empty session.
class UnavailableNotePersistence : public NotePersistence {
public:
    explicit UnavailableNotePersistence(Error error) : error(std::move(error)) {}

    const Error error;

    QList<Note> loadNotes() override { throw error; }
    void save(const Note&) override { throw error; }
    void remove(const QString&) override { throw error; }
    QList<NoteFolder> loadFolders() override { throw error; }
    void saveFolder(const NoteFolder&) override { throw error; }
    void deleteFolder(const QString&) override { throw error; }
};

}  // namespace vuro
