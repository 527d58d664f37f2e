#pragma once

#include "notes/NotePersistence.h"
#include "storage/VuroDatabase.h"

#include <memory>

namespace vuro {

// Notes and folders in VuroDatabase. A body is sealed with the database's cipher; title, colour,
// dates, flags, order, origin, tags and folder stay plain. Loading fails as a whole when one body
// can't be opened (BodyCipher::CipherError), so that a damaged or foreign store goes read-only
// instead of being saved over. Each write is its own durable transaction. Main thread only.
class DatabaseNotePersistence : public NotePersistence {
public:
    explicit DatabaseNotePersistence(std::shared_ptr<VuroDatabase> database);

    QList<Note> loadNotes() override;
    void save(const Note& note) override;
    void remove(const QString& id) override;
    QList<NoteFolder> loadFolders() override;
    void saveFolder(const NoteFolder& folder) override;
    void deleteFolder(const QString& id) override;

    // The query loadNotes runs, and the note one of its rows holds once the body is known.
    static const char* const selectNotes;
    static Note noteFromRow(const SqliteStatement& row, QString body);
    static constexpr int sealedBodyColumn = 2;

private:
    std::shared_ptr<VuroDatabase> _database;
};

}  // namespace vuro
