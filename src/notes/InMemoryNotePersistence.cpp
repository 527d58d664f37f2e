#include "notes/InMemoryNotePersistence.h"

namespace vuro {

void InMemoryNotePersistence::beginWrite() {
    if (failNextWrite) {
        const Error error = *failNextWrite;
        failNextWrite.reset();
        throw error;
    }
    ++writeCount;
}

void InMemoryNotePersistence::save(const Note& note) {
    beginWrite();
    rows.insert(note.id, note);
}

void InMemoryNotePersistence::remove(const QString& id) {
    beginWrite();
    rows.remove(id);
}

void InMemoryNotePersistence::saveFolder(const NoteFolder& folder) {
    beginWrite();
    folders.insert(folder.id, folder);
}

void InMemoryNotePersistence::deleteFolder(const QString& id) {
    beginWrite();
    folders.remove(id);
}

}  // namespace vuro
