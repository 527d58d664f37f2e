#include "storage/ImageStoreFiles.h"
#include "storage/NoteFileStoreFiles.h"
#include "support/Printers.h"
#include "support/SqliteFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;
using namespace vuro::test;

namespace {

const BodyCipher cipher(QByteArray(32, '\x11'));

class SealedFileStoreTest : public testing::Test {
protected:
    QTemporaryDir support;
};

TEST_F(SealedFileStoreTest, filesAreSealedInTheirFolderAndReadBack) {
    ImageStoreFiles images(support.path(), cipher);
    NoteFileStoreFiles files(support.path(), cipher);
    const QByteArray picture("\x89PNG picture bytes", 18);
    const QString imageID = images.add(picture);
    files.save("report-1", "attached file");

    EXPECT_EQ(images.load(imageID), std::optional(picture));
    EXPECT_EQ(files.load("report-1"), std::optional(QByteArray("attached file")));
    EXPECT_EQ(images.load("report-1"), std::nullopt);  // the stores don't share a folder

    const auto onDisk = filesUnder(support.path());
    EXPECT_EQ(onDisk.keys(), (QStringList{"Images/" + imageID + ".sealed", "NoteFiles/report-1.sealed"}));
    EXPECT_EQ(onDisk.value("NoteFiles/report-1.sealed").size(), 28 + 13);
    EXPECT_EQ(cipher.open(onDisk.value("NoteFiles/report-1.sealed")), "attached file");
    for (const auto* sub : {"/Images", "/NoteFiles"})
        EXPECT_EQ(QFileInfo(support.path() + sub).permissions().toInt() & 0x0077, 0) << sub;  // no group or other bits

    files.save("report-1", "second version");
    EXPECT_EQ(files.load("report-1"), std::optional(QByteArray("second version")));
}

TEST_F(SealedFileStoreTest, listsAndDeletesOnlyWhatItStores) {
    NoteFileStoreFiles files(support.path(), cipher);
    for (const auto* id : {"A", "B", "C-3"}) files.save(id, id);
    const QString folder = support.path() + "/NoteFiles/";
    // Things that aren't stored files: other names, and a temporary file an interrupted write left.
    for (const auto* name : {"notes.txt", "bad id.sealed", "D.sealed.XyZ123"}) {
        QFile stray(folder + name);
        ASSERT_TRUE(stray.open(QIODevice::WriteOnly));
    }
    QStringList ids = files.allIDs();
    ids.sort();
    EXPECT_EQ(ids, (QStringList{"A", "B", "C-3"}));

    files.deleteIDs({"A", "C-3", "missing", "../NoteFiles/B"});
    EXPECT_EQ(files.allIDs(), QStringList{"B"});
    EXPECT_TRUE(QFile::exists(folder + "notes.txt"));

    // Binding the folder again clears what interrupted writes left behind.
    NoteFileStoreFiles again(support.path(), cipher);
    EXPECT_FALSE(QFile::exists(folder + "D.sealed.XyZ123"));
    EXPECT_TRUE(QFile::exists(folder + "notes.txt"));
}

TEST_F(SealedFileStoreTest, idsThatCouldLeaveTheFolderAreRefused) {
    NoteFileStoreFiles files(support.path(), cipher);
    for (const auto* id : {"../escape", "a/b", "", ".", "x.sealed"}) {
        EXPECT_THROW(files.save(id, "x"), Error) << id;
        EXPECT_THROW(files.load(id), Error) << id;
    }
    EXPECT_EQ(filesUnder(support.path()).size(), 0);
}

TEST_F(SealedFileStoreTest, aDamagedFileFailsWithTheSentenceAndAnotherKeyCantOpenIt) {
    ImageStoreFiles images(support.path(), cipher);
    images.save("P", "picture");
    const QString path = support.path() + "/Images/P.sealed";
    EXPECT_THROW(ImageStoreFiles(support.path(), BodyCipher(QByteArray(32, '\x12'))).load("P"),
                 BodyCipher::CipherError);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    bytes[bytes.size() - 1] = char(bytes[bytes.size() - 1] ^ 1);
    file.seek(0);
    file.write(bytes);
    file.close();
    EXPECT_THROW(images.load("P"), BodyCipher::CipherError);
}

class WorkingCopyTest : public SealedFileStoreTest {
protected:
    void SetUp() override {
        previousTemp = qgetenv("TMPDIR");
        qputenv("TMPDIR", temp.path().toUtf8());
    }
    void TearDown() override { qputenv("TMPDIR", previousTemp); }
    QTemporaryDir temp;
    QByteArray previousTemp;
};

TEST_F(WorkingCopyTest, workingCopiesAreDecryptedIntoAPrivateTemporaryFolderAndEmptied) {
    NoteFileStoreFiles files(support.path(), cipher);
    files.save("F1", "meeting minutes");
    EXPECT_EQ(NoteFileStoreFiles::workingFolder(), temp.path() + "/VuroNoteFiles");

    struct Case {
        const char* name;
        const char* fileName;
    };
    for (const Case c : {Case{"minutes.txt", "minutes.txt"}, Case{"../../escape.txt", "escape.txt"},
                         Case{"", "F1"}, Case{"..", "F1"}}) {
        const auto path = files.workingCopy("F1", c.name);
        ASSERT_TRUE(path.has_value()) << c.name;
        EXPECT_EQ(*path, temp.path() + "/VuroNoteFiles/F1/" + c.fileName);
        QFile copy(*path);
        ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
        EXPECT_EQ(copy.readAll(), "meeting minutes");
    }
    EXPECT_EQ(QFileInfo(NoteFileStoreFiles::workingFolder()).permissions().toInt() & 0x0077, 0);
    EXPECT_EQ(files.workingCopy("GONE", "x.txt"), std::nullopt);

    NoteFileStoreFiles::emptyWorkingCopies();
    EXPECT_FALSE(QFileInfo::exists(NoteFileStoreFiles::workingFolder()));
    EXPECT_NO_THROW(NoteFileStoreFiles::emptyWorkingCopies());
}

TEST_F(WorkingCopyTest, aPlantedLinkIsNeitherFollowedNorEmptied) {
    NoteFileStoreFiles files(support.path(), cipher);
    files.save("F1", "private");
    QTemporaryDir elsewhere;
    QFile keep(elsewhere.filePath("keep.txt"));
    ASSERT_TRUE(keep.open(QIODevice::WriteOnly));
    keep.close();
    ASSERT_TRUE(QFile::link(elsewhere.path(), NoteFileStoreFiles::workingFolder()));

    EXPECT_THROW(files.workingCopy("F1", "a.txt"), Error);
    EXPECT_EQ(QDir(elsewhere.path()).entryList(QDir::Files), QStringList{"keep.txt"});
    NoteFileStoreFiles::emptyWorkingCopies();
    EXPECT_FALSE(QFileInfo(NoteFileStoreFiles::workingFolder()).isSymLink());
    EXPECT_TRUE(QFile::exists(elsewhere.filePath("keep.txt")));
}

}  // namespace
