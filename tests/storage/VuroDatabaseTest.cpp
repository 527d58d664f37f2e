#include "storage/DatabaseError.h"
#include "storage/DatabaseNotePersistence.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/VuroDatabase.h"
#include "support/Printers.h"
#include "support/SqliteFile.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;
using namespace vuro::test;

namespace {

const QByteArray noteKey(32, '\x2a');

class VuroDatabaseTest : public testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath("Vuro.store");
    std::shared_ptr<InMemoryKeychain> keychain = std::make_shared<InMemoryKeychain>();

    std::shared_ptr<VuroDatabase> open() {
        return std::make_shared<VuroDatabase>(path, std::make_shared<KeychainKeyProvider>(keychain));
    }

    QStringList tables() {
        QStringList names;
        for (const auto& row : querySql(path, "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY name"))
            names.append(row[0].toString());
        return names;
    }

    // Opening must fail with the given sentence and leave every file of the folder as it was.
    void expectRefusedUntouched(const QString& sentence) {
        const auto before = filesUnder(folder.path());
        try {
            open();
            ADD_FAILURE() << "the store opened";
        } catch (const Error& error) {
            EXPECT_EQ(error.message(), sentence);
        }
        EXPECT_EQ(filesUnder(folder.path()), before);
    }
};

const QStringList currentTables = {"StoredAgent", "StoredAgentJob", "StoredAgentMessage", "StoredFolder",
                                   "StoredNote"};

Note sampleNote(const QString& id, NoteOrigin origin = NoteOrigin::local()) {
    Note note;
    note.id = id;
    note.title = "Title " + id;
    note.body = "# Body of " + id + "\n- [ ] çay 📅 and ![image](vuro-img://IMG-1)";
    note.color = NoteColor::lilac;
    note.created = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
    note.modified = QDateTime::fromMSecsSinceEpoch(1'700'000'999'456, Qt::UTC);
    note.archived = true;
    note.pinned = true;
    note.order = -2.75;
    note.origin = std::move(origin);
    note.tags = {"work", "çok-iyi"};
    note.folderID = "FOLDER-1";
    return note;
}

TEST_F(VuroDatabaseTest, aNewStoreGetsTheCurrentSchemaAndANewKey) {
    {
        auto database = open();
        EXPECT_EQ(database->schemaVersion(), 5);
        EXPECT_EQ(keychain->items.value("note-body-key").size(), 32);
    }
    EXPECT_EQ(tables(), currentTables);
    EXPECT_EQ(querySql(path, "PRAGMA journal_mode").value(0).value(0).toString(), "wal");
    const QByteArray key = keychain->items.value("note-body-key");
    open();
    EXPECT_EQ(keychain->items.value("note-body-key"), key);
}

TEST_F(VuroDatabaseTest, notesRoundTripWithEveryMapping) {
    const QList<Note> notes = {
        sampleNote("LOCAL"),
        sampleNote("DROP", NoteOrigin::drop("channel-9", "drop-3", "Ayşe")),
        sampleNote("AGENT", NoteOrigin::agent("AGENT-ID", "run-7", "Vuro")),
        [] {
            Note bare;
            bare.id = "BARE";
            bare.created = bare.modified = QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
            return bare;
        }(),
    };
    {
        DatabaseNotePersistence persistence(open());
        for (const auto& note : notes) persistence.save(note);
    }
    DatabaseNotePersistence persistence(open());
    EXPECT_EQ(persistence.loadNotes(), notes);

    // How the origins sit in their columns: agents behind "agent.", local notes as NULLs.
    const auto rows = querySql(path, "SELECT id, originChannelID, originDropID, originSenderName, tags, folderID "
                                     "FROM StoredNote ORDER BY id");
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0], (QVariantList{"AGENT", "agent.AGENT-ID", "run-7", "Vuro", "work\nçok-iyi", "FOLDER-1"}));
    EXPECT_EQ(rows[1], (QVariantList{"BARE", QVariant(), QVariant(), QVariant(), "", QVariant()}));
    EXPECT_EQ(rows[2], (QVariantList{"DROP", "channel-9", "drop-3", "Ayşe", "work\nçok-iyi", "FOLDER-1"}));
}

TEST_F(VuroDatabaseTest, savingAgainReplacesAndRemovingAMissingNoteIsNoFailure) {
    DatabaseNotePersistence persistence(open());
    Note note = sampleNote("N");
    persistence.save(note);
    note.body = "changed";
    note.title.clear();
    note.tags.clear();
    note.folderID.reset();
    note.origin = NoteOrigin::local();
    persistence.save(note);
    EXPECT_EQ(persistence.loadNotes(), QList<Note>{note});

    persistence.remove("N");
    EXPECT_NO_THROW(persistence.remove("N"));
    EXPECT_TRUE(persistence.loadNotes().isEmpty());
}

TEST_F(VuroDatabaseTest, storedValuesAreReadLeniently) {
    // Values another version may have left: colours out of range, empty tag entries, a drop
    // origin with missing fields.
    {
        DatabaseNotePersistence persistence(open());
        persistence.save(sampleNote("A"));
    }
    execSql(path, "UPDATE StoredNote SET colorIndex = 13, tags = '\n work \n\n#home\n', "
                  "originChannelID = 'ch', originDropID = NULL, originSenderName = NULL");
    const auto notes = DatabaseNotePersistence(open()).loadNotes();
    ASSERT_EQ(notes.size(), 1);
    EXPECT_EQ(notes[0].color, NoteColor::mint);
    EXPECT_EQ(notes[0].tags, (QStringList{"work", "home"}));
    EXPECT_EQ(notes[0].origin, NoteOrigin::drop("ch", "", ""));
}

TEST_F(VuroDatabaseTest, foldersAreSavedReplacedAndDeleted) {
    DatabaseNotePersistence persistence(open());
    const QDateTime created = QDateTime::fromMSecsSinceEpoch(1'600'000'000'000, Qt::UTC);
    persistence.saveFolder({"F1", "Work", created});
    persistence.saveFolder({"F2", "Home", created});
    persistence.saveFolder({"F1", "Office", created});
    EXPECT_EQ(persistence.loadFolders(), (QList<NoteFolder>{{"F1", "Office", created}, {"F2", "Home", created}}));
    persistence.deleteFolder("F1");
    persistence.deleteFolder("F1");
    EXPECT_EQ(persistence.loadFolders(), (QList<NoteFolder>{{"F2", "Home", created}}));
}

TEST_F(VuroDatabaseTest, oneFlippedBitFailsTheWholeLoad) {
    {
        DatabaseNotePersistence persistence(open());
        for (const auto* id : {"A", "B", "C"}) persistence.save(sampleNote(id));
    }
    QByteArray body = querySql(path, "SELECT sealedBody FROM StoredNote WHERE id = 'B'").value(0).value(0).toByteArray();
    body[20] = char(body[20] ^ 0x04);
    execWithBlob(path, "UPDATE StoredNote SET sealedBody = ?1 WHERE id = 'B'", body);
    try {
        DatabaseNotePersistence(open()).loadNotes();
        ADD_FAILURE() << "a damaged body loaded";
    } catch (const BodyCipher::CipherError& error) {
        EXPECT_EQ(error.message(), "The note could not be decrypted.");
    }
}

// A store as the first version of the program left it, built here from that version's tables.
void makeVersionOneStore(const QString& path, const BodyCipher& cipher) {
    execSql(path, R"(
        CREATE TABLE StoredNote (id TEXT PRIMARY KEY NOT NULL, title TEXT NOT NULL, sealedBody BLOB NOT NULL,
            colorIndex INTEGER NOT NULL, created INTEGER, modified INTEGER, archived INTEGER NOT NULL,
            pinned INTEGER NOT NULL, "order" REAL NOT NULL, originChannelID TEXT, originDropID TEXT,
            originSenderName TEXT);
        CREATE TABLE StoredChannel (id TEXT PRIMARY KEY NOT NULL, name TEXT NOT NULL, kindRaw TEXT NOT NULL,
            roleRaw TEXT NOT NULL, hostName TEXT NOT NULL, createdAt INTEGER, historyDays INTEGER, inviteURL TEXT,
            zoneOwnerName TEXT NOT NULL);
        CREATE TABLE StoredDrop (id TEXT PRIMARY KEY NOT NULL, channelID TEXT NOT NULL, senderID TEXT NOT NULL,
            senderName TEXT NOT NULL, createdAt INTEGER, kindRaw TEXT NOT NULL, sealedText BLOB NOT NULL,
            attachmentFileName TEXT, attachmentByteCount INTEGER);
        CREATE TABLE StoredRecordMeta (key TEXT PRIMARY KEY NOT NULL, systemFields BLOB NOT NULL);
        CREATE TABLE StoredSyncState (scope TEXT PRIMARY KEY NOT NULL, data BLOB NOT NULL);
        INSERT INTO StoredChannel VALUES ('CH1', 'Family', 'group', 'owner', 'mac', 1600000000000, 30, NULL, 'me');
        INSERT INTO StoredDrop VALUES ('D1', 'CH1', 'S1', 'Mum', 1600000000000, 'text', x'00', 'a.pdf', 12);
        INSERT INTO StoredRecordMeta VALUES ('k', x'01');
        INSERT INTO StoredSyncState VALUES ('zone', x'02');
        PRAGMA user_version = 1;
    )");
    const struct {
        const char* id;
        const char* body;
        const char* origin;
    } rows[] = {{"N1", "first body", "NULL, NULL, NULL"}, {"N2", "# from mum", "'CH1', 'D1', 'Mum'"}};
    for (const auto& row : rows) {
        execWithBlob(path,
                     QStringLiteral("INSERT INTO StoredNote VALUES ('%1', 'T %1', ?1, 2, 1600000000000, "
                                    "1600000001000, 0, 1, 3.5, %2)")
                         .arg(QLatin1String(row.id), QLatin1String(row.origin)),
                     cipher.seal(QString::fromUtf8(row.body)));
    }
}

TEST_F(VuroDatabaseTest, aVersionOneStoreWithChannelsAndDropsOpensAsTheCurrentVersion) {
    keychain->items.insert("note-body-key", noteKey);
    makeVersionOneStore(path, BodyCipher(noteKey));

    auto database = open();
    EXPECT_EQ(database->schemaVersion(), 5);
    EXPECT_EQ(tables(), currentTables);
    const auto notes = DatabaseNotePersistence(database).loadNotes();
    ASSERT_EQ(notes.size(), 2);
    EXPECT_EQ(notes[0].body, "first body");
    EXPECT_EQ(notes[0].title, "T N1");
    EXPECT_EQ(notes[0].origin, NoteOrigin::local());
    EXPECT_EQ(notes[1].body, "# from mum");
    EXPECT_EQ(notes[1].origin, NoteOrigin::drop("CH1", "D1", "Mum"));
    for (const auto& note : notes) {
        EXPECT_EQ(note.color, NoteColor::rose);
        EXPECT_EQ(note.created, QDateTime::fromMSecsSinceEpoch(1'600'000'000'000, Qt::UTC));
        EXPECT_EQ(note.modified, QDateTime::fromMSecsSinceEpoch(1'600'000'001'000, Qt::UTC));
        EXPECT_FALSE(note.archived);
        EXPECT_TRUE(note.pinned);
        EXPECT_EQ(note.order, 3.5);
        EXPECT_TRUE(note.tags.isEmpty());
        EXPECT_EQ(note.folderID, std::nullopt);
    }
    // The key was the old one: nothing new was made.
    EXPECT_EQ(keychain->items.value("note-body-key"), noteKey);
    EXPECT_EQ(querySql(path, "PRAGMA integrity_check").value(0).value(0).toString(), "ok");
}

TEST_F(VuroDatabaseTest, aLostKeyIsRemadeOnlyOverAStoreWithNothingSealed) {
    struct Case {
        const char* name;
        const char* row;  // one row that must keep the key from being remade
    };
    const Case cases[] = {
        {"note", nullptr},
        {"agent", "INSERT INTO StoredAgent VALUES ('A', 'n', '', 4, '', x'00', 'apple', '', 'read', 0)"},
        {"agent job", "INSERT INTO StoredAgentJob VALUES ('J', 'A', 't', x'00', NULL, x'7b7d', 1, 0, NULL, NULL, NULL)"},
        {"agent message", "INSERT INTO StoredAgentMessage VALUES ('M', 'A', 'user', 0, NULL, x'00')"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        QFile::remove(path);
        keychain->items.clear();
        {
            auto database = open();
            if (c.row) database->execute(c.row);
            else DatabaseNotePersistence(database).save(sampleNote("N"));
        }
        keychain->items.clear();
        expectRefusedUntouched("The encryption key for your notes is missing from the keyring.");
        EXPECT_TRUE(keychain->items.isEmpty());
    }

    // Folders hold nothing sealed: with only a folder, a new key is made.
    QFile::remove(path);
    DatabaseNotePersistence(open()).saveFolder({"F", "Work", QDateTime::currentDateTimeUtc()});
    keychain->items.clear();
    EXPECT_NO_THROW(open());
    EXPECT_EQ(keychain->items.value("note-body-key").size(), 32);
}

TEST_F(VuroDatabaseTest, storesThatCannotBeOpenedAreLeftAsTheyWere) {
    {
        DatabaseNotePersistence(open()).save(sampleNote("N"));
    }
    const QByteArray key = keychain->items.value("note-body-key");

    keychain->items.insert("note-body-key", key.left(31));
    expectRefusedUntouched("The encryption key in the keyring is invalid.");
    EXPECT_EQ(keychain->items.value("note-body-key"), key.left(31));

    keychain->items.insert("note-body-key", key);
    keychain->failNext = Keychain::KeychainError::status(4, "The keyring is locked.");
    expectRefusedUntouched("The keyring is locked.");

    execSql(path, "PRAGMA user_version = 6");
    expectRefusedUntouched("The store was written by a newer version of Vuro.");
    execSql(path, "PRAGMA user_version = 5");
    EXPECT_NO_THROW(open());

    QFile garbage(path);
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write(QByteArray(4096, 'x'));
    garbage.close();
    const auto before = filesUnder(folder.path());
    EXPECT_THROW(open(), DatabaseError);
    EXPECT_EQ(filesUnder(folder.path()), before);
}

TEST_F(VuroDatabaseTest, aForeignSQLiteFileIsNotTakenOver) {
    execSql(path, "CREATE TABLE photos (id INTEGER PRIMARY KEY); INSERT INTO photos VALUES (1);");
    expectRefusedUntouched("The store is not a Vuro store.");
    EXPECT_TRUE(keychain->items.isEmpty());
}

}  // namespace
