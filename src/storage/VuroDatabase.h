#pragma once

#include "storage/BodyCipher.h"
#include "storage/KeyProvider.h"
#include "storage/SqliteStatement.h"

#include <QString>
#include <memory>
#include <optional>

struct sqlite3;

namespace vuro {

// The one on-disk store of notes, folders and agents: an SQLite file (Vuro.store) in WAL mode
// with synchronous=FULL, so that a write that returned is on disk and a crash leaves the file at
// its last commit. Opening walks the file up to the current schema (see VuroSchema) and gets the
// note key once, before anything is written: a file that can't be opened, is newer than this
// program, or whose key is missing or invalid is left exactly as it was and the constructor
// throws (DatabaseError, Keychain::KeychainError). The cipher is then cached for the life of the
// object. Main thread only; the persistences on top of it make every call there.
class VuroDatabase {
public:
    // $XDG_DATA_HOME/Vuro (~/.local/share/Vuro), created on demand; throws DatabaseError.
    static QString supportFolder();
    // Vuro.store in supportFolder().
    static QString storeURL();

    VuroDatabase(const QString& path, std::shared_ptr<KeyProvider> keyProvider);
    ~VuroDatabase();
    VuroDatabase(const VuroDatabase&) = delete;
    VuroDatabase& operator=(const VuroDatabase&) = delete;

    // The cipher of this store. The first call asks the key provider, allowing a new key only
    // while no note and no agent row exists; later calls return the same cipher.
    const BodyCipher& cipher();

    const QString& path() const { return _path; }
    int schemaVersion();

    SqliteStatement prepare(const char* sql);
    // Runs one or more statements that return no rows.
    void execute(const char* sql);
    // Runs work in one transaction: committed when it returns, rolled back when it throws.
    template <typename Work>
    void transaction(Work&& work) {
        execute("BEGIN IMMEDIATE");
        try {
            work();
        } catch (...) {
            execute("ROLLBACK");
            throw;
        }
        execute("COMMIT");
    }

private:
    bool hasTable(const char* name);
    qint64 rowCount(const char* table);
    void migrate(int fromVersion);

    QString _path;
    sqlite3* _handle = nullptr;
    std::shared_ptr<KeyProvider> _keyProvider;
    std::optional<BodyCipher> _cachedCipher;
};

}  // namespace vuro
