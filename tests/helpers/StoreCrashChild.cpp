// Saves, changes and deletes notes in a store in an endless loop, telling its parent before and
// after every write, until the parent kills it. Used by StoreCrashIntegrationTest.
//
//   StoreCrashChild <store path> <key in hex> <round>
//
// Output lines: "ready", then for each write "begin <create|update|delete> <id> <version>" and
// "ok" once the write returned.
#include "storage/DatabaseNotePersistence.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "support/CrashNotes.h"

#include <QMap>
#include <cstdio>
#include <random>

using namespace vuro;

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: StoreCrashChild <store> <key hex> <round>\n");
        return 2;
    }
    const QString round = QString::fromUtf8(argv[3]);
    auto keychain = std::make_shared<InMemoryKeychain>();
    keychain->items.insert(QStringLiteral("note-body-key"), QByteArray::fromHex(argv[2]));
    try {
        DatabaseNotePersistence persistence(
            std::make_shared<VuroDatabase>(QString::fromUtf8(argv[1]), std::make_shared<KeychainKeyProvider>(keychain)));
        QMap<QString, int> versions;
        for (const auto& note : persistence.loadNotes()) versions.insert(note.id, test::crashNoteVersion(note));
        std::printf("ready\n");
        std::fflush(stdout);

        std::mt19937 random(std::random_device{}());
        for (int counter = 0;; ++counter) {
            const int roll = int(random() % 100);
            const QStringList ids = versions.keys();
            const QString existing = ids.isEmpty() ? QString() : ids[int(random() % ids.size())];
            if (roll < 60 || existing.isEmpty()) {
                const QString id = QStringLiteral("N%1-%2").arg(round).arg(counter);
                std::printf("begin create %s 1\n", qPrintable(id));
                std::fflush(stdout);
                persistence.save(test::crashNote(id, 1));
                versions.insert(id, 1);
            } else if (roll < 85) {
                const int version = versions.value(existing) + 1;
                std::printf("begin update %s %d\n", qPrintable(existing), version);
                std::fflush(stdout);
                persistence.save(test::crashNote(existing, version));
                versions.insert(existing, version);
            } else {
                std::printf("begin delete %s 0\n", qPrintable(existing));
                std::fflush(stdout);
                persistence.remove(existing);
                versions.remove(existing);
            }
            std::printf("ok\n");
            std::fflush(stdout);
        }
    } catch (const Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
