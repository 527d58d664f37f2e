#include "base/Log.h"
#include "notes/NoteStore.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/SealedStorage.h"
#include "support/Printers.h"
#include "support/SqliteFile.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;
using namespace vuro::test;

namespace {

class SealedStorageTest : public testing::Test {
protected:
    void SetUp() override {
        previousTemp = qgetenv("TMPDIR");
        qputenv("TMPDIR", temp.path().toUtf8());
        setLogSink([this](const QString& line) { logLines.append(line); });
    }
    void TearDown() override {
        setLogSink({});
        qputenv("TMPDIR", previousTemp);
    }

    SealedStorage open() { return SealedStorage::open(support.path(), std::make_shared<KeychainKeyProvider>(keychain)); }

    // Opening must end read-only with the sentence, logged once, and nothing else at hand.
    void expectReadOnly(const QString& sentence) {
        logLines.clear();
        SealedStorage storage = open();
        EXPECT_EQ(logLines, QStringList{"Vuro: veritabanı açılamadı — " + sentence});
        EXPECT_EQ(storage.database, nullptr);
        EXPECT_EQ(storage.images, nullptr);
        EXPECT_EQ(storage.files, nullptr);
        EXPECT_EQ(storage.attachments, nullptr);
        // Agents still work, for this session only.
        ASSERT_NE(storage.agents, nullptr);
        storage.agents->saveAgent(Agent::notesAgent());
        EXPECT_EQ(storage.agents->loadAgents().size(), 1);
        NoteStore store(storage.notes);
        EXPECT_FALSE(store.isWritable());
        EXPECT_EQ(store.lastError(), std::optional(sentence));
        EXPECT_TRUE(store.notes().isEmpty());
        store.create("t", "lost?");
        EXPECT_TRUE(store.notes().isEmpty());
    }

    QTemporaryDir support;
    QTemporaryDir temp;
    QByteArray previousTemp;
    QStringList logLines;
    std::shared_ptr<InMemoryKeychain> keychain = std::make_shared<InMemoryKeychain>();
};

TEST_F(SealedStorageTest, opensTheStoreAndBindsTheFileFoldersToItsCipher) {
    QDir().mkpath(NoteFileStoreFiles::workingFolder() + "/OLD");
    QString imageID;
    {
        SealedStorage storage = open();
        ASSERT_NE(storage.database, nullptr);
        EXPECT_TRUE(logLines.isEmpty());
        EXPECT_FALSE(QFileInfo::exists(NoteFileStoreFiles::workingFolder()));
        // The store sweeps unreferenced images when it opens, so the image comes after it.
        NoteStore store(storage.notes, std::chrono::milliseconds(0), std::chrono::milliseconds(0), storage.images,
                        storage.files);
        imageID = storage.images->add("picture");
        store.create("", "![image](vuro-img://" + imageID + ")");
        storage.agents->saveAgent(Agent::notesAgent());
        storage.attachments->write("ATTACHMENT-1", "a letter");
    }
    SealedStorage storage = open();
    ASSERT_NE(storage.database, nullptr);
    EXPECT_EQ(BodyCipher(storage.database->cipher()).open(filesUnder(support.path()).value("Images/" + imageID + ".sealed")),
              "picture");
    NoteStore store(storage.notes, std::chrono::milliseconds(0), std::chrono::milliseconds(0), storage.images,
                    storage.files);
    ASSERT_EQ(store.notes().size(), 1);
    EXPECT_TRUE(store.isWritable());
    EXPECT_EQ(storage.images->allIDs(), QStringList{imageID});  // referenced, so the sweep kept it
    ASSERT_EQ(storage.agents->loadAgents().size(), 1);
    EXPECT_EQ(storage.agents->loadAgents()[0].id, Agent::notesAgentID);
    EXPECT_EQ(storage.attachments->read("ATTACHMENT-1"), QByteArray("a letter"));
    EXPECT_EQ(BodyCipher(storage.database->cipher())
                  .open(filesUnder(support.path()).value("AgentAttachments/ATTACHMENT-1.sealed")),
              "a letter");
}

TEST_F(SealedStorageTest, aLostKeyOverNotesGoesReadOnlyAndLeavesTheStoreAlone) {
    {
        SealedStorage storage = open();
        NoteStore(storage.notes).create("kept", "body");
    }
    const auto before = filesUnder(support.path());
    keychain->items.clear();
    expectReadOnly("The encryption key for your notes is missing from the keyring.");
    EXPECT_EQ(filesUnder(support.path()), before);
    EXPECT_TRUE(keychain->items.isEmpty());
}

TEST_F(SealedStorageTest, oneDamagedBodyMakesTheStoreReadOnly) {
    {
        SealedStorage storage = open();
        NoteStore store(storage.notes);
        for (int i = 0; i < 3; ++i) store.create(QString::number(i), "body " + QString::number(i));
    }
    const QString path = support.filePath("Vuro.store");
    QByteArray body = querySql(path, "SELECT sealedBody FROM StoredNote LIMIT 1 OFFSET 1").value(0).value(0).toByteArray();
    body[13] = char(body[13] ^ 0x80);
    execWithBlob(path, "UPDATE StoredNote SET sealedBody = ?1 WHERE rowid = (SELECT rowid FROM StoredNote LIMIT 1 OFFSET 1)",
                 body);
    const auto before = filesUnder(support.path());

    SealedStorage storage = open();
    NoteStore store(storage.notes);
    EXPECT_FALSE(store.isWritable());
    EXPECT_EQ(store.lastError(), std::optional(QString("The note could not be decrypted.")));
    store.create("new", "note");
    EXPECT_TRUE(store.notes().isEmpty());
    EXPECT_EQ(filesUnder(support.path()).value("Vuro.store"), before.value("Vuro.store"));
}

TEST_F(SealedStorageTest, aFolderThatCantBeMadeIsAFailureToo) {
    QFile blocker(support.filePath("NoteFiles"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    logLines.clear();
    SealedStorage storage = open();
    ASSERT_EQ(logLines.size(), 1);
    EXPECT_TRUE(logLines[0].startsWith("Vuro: veritabanı açılamadı — The folder ")) << logLines[0].toStdString();
    EXPECT_EQ(storage.database, nullptr);
    EXPECT_THROW(storage.notes->loadNotes(), Error);
}

}  // namespace
