#pragma once

#include "base/Error.h"
#include "notes/NotePersistence.h"

#include <QHash>
#include <optional>

namespace vuro {

// Notes and folders kept in two maps: the store of a test host, and the twin tests use to watch
// what the note store writes. writeCount counts the writes that went through; failNextWrite makes
// the next write (save, remove, saveFolder or deleteFolder) throw that error once instead.
class InMemoryNotePersistence : public NotePersistence {
public:
    QHash<QString, Note> rows;
    QHash<QString, NoteFolder> folders;
    int writeCount = 0;
    std::optional<Error> failNextWrite;

    QList<Note> loadNotes() override { return rows.values(); }
    void save(const Note& note) override;
    void remove(const QString& id) override;
    QList<NoteFolder> loadFolders() override { return folders.values(); }
    void saveFolder(const NoteFolder& folder) override;
    void deleteFolder(const QString& id) override;

private:
    void beginWrite();
};

}  // namespace vuro
