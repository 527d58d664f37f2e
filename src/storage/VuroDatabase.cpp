#include "storage/VuroDatabase.h"

#include "storage/DatabaseError.h"
#include "storage/VuroSchema.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <sqlite3.h>

namespace vuro {

QString VuroDatabase::supportFolder() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Vuro");
    if (!QDir().mkpath(folder))
        throw DatabaseError(QStringLiteral("The folder %1 could not be created.").arg(QDir::toNativeSeparators(folder)));
    return folder;
}

QString VuroDatabase::storeURL() { return supportFolder() + QStringLiteral("/Vuro.store"); }

VuroDatabase::VuroDatabase(const QString& path, std::shared_ptr<KeyProvider> keyProvider)
    : _path(path), _keyProvider(std::move(keyProvider)) {
    const int opened = sqlite3_open_v2(QFile::encodeName(path).constData(), &_handle,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    try {
        if (opened != SQLITE_OK) throw DatabaseError::from(_handle, QStringLiteral("The store could not be opened"));
        sqlite3_busy_timeout(_handle, 5000);

        // Everything up to the key only reads, so a refusal leaves the file as it was.
        const int version = schemaVersion();
        if (version > VuroSchema::currentVersion)
            throw DatabaseError(QStringLiteral("The store was written by a newer version of Vuro."));
        if (version == 0) {
            auto tables = prepare("SELECT count(*) FROM sqlite_schema");
            tables.step();
            if (tables.integer(0) > 0) throw DatabaseError(QStringLiteral("The store is not a Vuro store."));
        }
        cipher();

        execute("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA secure_delete=ON;");
        migrate(version);
    } catch (...) {
        sqlite3_close_v2(_handle);
        throw;
    }
}

VuroDatabase::~VuroDatabase() { sqlite3_close_v2(_handle); }

SqliteStatement VuroDatabase::prepare(const char* sql) { return SqliteStatement(_handle, sql); }

void VuroDatabase::execute(const char* sql) {
    char* message = nullptr;
    if (sqlite3_exec(_handle, sql, nullptr, nullptr, &message) == SQLITE_OK) return;
    const QString detail = QString::fromUtf8(message ? message : sqlite3_errmsg(_handle));
    sqlite3_free(message);
    throw DatabaseError(QStringLiteral("The store could not be read or written (%1).").arg(detail));
}

int VuroDatabase::schemaVersion() {
    auto statement = prepare("PRAGMA user_version");
    statement.step();
    return int(statement.integer(0));
}

bool VuroDatabase::hasTable(const char* name) {
    auto statement = prepare("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?1");
    statement.bindText(1, QString::fromUtf8(name));
    return statement.step();
}

qint64 VuroDatabase::rowCount(const char* table) {
    // A file from before the agent tables simply has none of those rows.
    if (!hasTable(table)) return 0;
    auto statement = prepare(QByteArray("SELECT count(*) FROM ").append(table).constData());
    statement.step();
    return statement.integer(0);
}

const BodyCipher& VuroDatabase::cipher() {
    if (_cachedCipher) return *_cachedCipher;
    bool empty = true;
    for (const char* table : {"StoredNote", "StoredAgent", "StoredAgentJob", "StoredAgentMessage"}) {
        if (rowCount(table) > 0) {
            empty = false;
            break;
        }
    }
    _cachedCipher.emplace(_keyProvider->key(empty));
    return *_cachedCipher;
}

void VuroDatabase::migrate(int fromVersion) {
    for (int version = fromVersion + 1; version <= VuroSchema::currentVersion; ++version) {
        transaction([&] {
            execute(VuroSchema::step(version));
            execute(QByteArray("PRAGMA user_version = ").append(QByteArray::number(version)).constData());
        });
    }
}

}  // namespace vuro
