#include "base/Ids.h"
#include "storage/DatabaseNotePersistence.h"
#include "storage/ImageStoreFiles.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/NoteFileStoreFiles.h"
#include "support/Printers.h"
#include "support/SqliteFile.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;
using namespace vuro::test;

namespace {

// The files under the folder that hold text, in UTF-8 or UTF-16 either way round.
QStringList filesHolding(const QString& folder, const QString& text) {
    const QList<QByteArray> forms = {
        text.toUtf8(), QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2),
        [&] {
            QByteArray big;
            for (const QChar c : text) big.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xff));
            return big;
        }()};
    QStringList holding;
    const auto files = filesUnder(folder);
    for (auto it = files.begin(); it != files.end(); ++it)
        for (const auto& form : forms)
            if (it.value().contains(form)) holding.append(it.key());
    holding.removeDuplicates();
    return holding;
}

TEST(NoPlaintextOnDiskTest, whatTheUserWroteIsNeverOnDiskInTheClear) {
    QTemporaryDir support;
    const QString secret = "secret-" + newId();
    // Titles stay plain by design; finding this one proves that the scan sees the database and
    // its log.
    const QString title = "title-" + newId();
    auto keychain = std::make_shared<InMemoryKeychain>();
    auto database =
        std::make_shared<VuroDatabase>(support.filePath("Vuro.store"), std::make_shared<KeychainKeyProvider>(keychain));
    auto persistence = std::make_unique<DatabaseNotePersistence>(database);
    ImageStoreFiles images(support.path(), database->cipher());
    NoteFileStoreFiles files(support.path(), database->cipher());

    for (int i = 0; i < 40; ++i) {
        Note note;
        note.id = newId();
        note.title = title;
        // Small bodies sit in the row, large ones spill into overflow pages.
        note.body = QStringLiteral("# %1\n").arg(secret).repeated(i % 2 ? 1 : 300) + "çay ☕";
        note.created = note.modified = QDateTime::currentDateTimeUtc();
        persistence->save(note);
        note.body += "\nedited " + secret;
        persistence->save(note);
        if (i % 5 == 0) persistence->remove(note.id);
    }
    const QString imageID = images.add(("PNG" + secret).toUtf8());
    files.save("FILE-1", ("file " + secret).toUtf8().repeated(1000));
    images.remove(images.add(secret.toUtf8()));

    const QStringList whileOpen = filesHolding(support.path(), title);
    EXPECT_TRUE(whileOpen.contains("Vuro.store-wal") || whileOpen.contains("Vuro.store")) << whileOpen.join(", ").toStdString();
    EXPECT_EQ(filesHolding(support.path(), secret), QStringList());

    persistence.reset();
    database.reset();
    EXPECT_FALSE(QFile::exists(support.filePath("Vuro.store-wal")));
    EXPECT_EQ(filesHolding(support.path(), secret), QStringList());
    EXPECT_EQ(filesHolding(support.path(), title), QStringList{"Vuro.store"});
    EXPECT_EQ(images.load(imageID), std::optional(("PNG" + secret).toUtf8()));
}

}  // namespace
