// Opening the note store at start-up: 10,000 notes with 2 KB bodies, sealed as the program keeps
// them, loaded into a NoteStore (with its orphan sweep over the image and file folders), against
// the same rows with the bodies in the clear.
#include "base/Ids.h"
#include "notes/NoteStore.h"
#include "storage/DatabaseNotePersistence.h"
#include "storage/ImageStoreFiles.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/NoteFileStoreFiles.h"

#include <QCoreApplication>
#include <cstdlib>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

using namespace vuro;

namespace {

constexpr int noteCount = 10'000;

// The same table and mapping as the real persistence, but the body column holds plain UTF-8.
// Only loading is measured; the writes are never called.
class PlainNotePersistence : public NotePersistence {
public:
    explicit PlainNotePersistence(std::shared_ptr<VuroDatabase> database) : _database(std::move(database)) {}
    void save(const Note&) override { std::abort(); }
    void remove(const QString&) override { std::abort(); }
    QList<NoteFolder> loadFolders() override { return {}; }
    void saveFolder(const NoteFolder&) override { std::abort(); }
    void deleteFolder(const QString&) override { std::abort(); }
    QList<Note> loadNotes() override {
        auto rows = _database->prepare(DatabaseNotePersistence::selectNotes);
        QList<Note> notes;
        while (rows.step())
            notes.append(DatabaseNotePersistence::noteFromRow(
                rows, QString::fromUtf8(rows.blob(DatabaseNotePersistence::sealedBodyColumn))));
        return notes;
    }

private:
    std::shared_ptr<VuroDatabase> _database;
};

struct Fixture {
    QTemporaryDir folder;
    std::shared_ptr<InMemoryKeychain> keychain = std::make_shared<InMemoryKeychain>();
    QString sealedPath = folder.filePath("Sealed.store");
    QString plainPath = folder.filePath("Plain.store");

    Fixture() {
        auto database = open(sealedPath);
        DatabaseNotePersistence persistence(database);
        const QString line = QStringLiteral("- [ ] Buy milk and call the plumber about the kitchen tap 📅 ");
        database->transaction([&] {
            for (int i = 0; i < noteCount; ++i) {
                Note note;
                note.id = newId();
                note.title = i % 3 ? QString() : QStringLiteral("Note %1").arg(i);
                note.body = (QStringLiteral("# Note %1\n").arg(i) + line.repeated(40)).left(2048);
                note.created = note.modified = QDateTime::currentDateTimeUtc();
                note.order = i;
                note.tags = {QStringLiteral("work")};
                persistence.save(note);
            }
        });
        database.reset();
        QFile::copy(sealedPath, plainPath);
        // The plain twin: every body replaced by its opened text.
        auto plain = open(plainPath);
        const BodyCipher cipher = plain->cipher();
        plain->transaction([&] {
            auto rows = plain->prepare("SELECT id, sealedBody FROM StoredNote");
            auto update = plain->prepare("UPDATE StoredNote SET sealedBody = ?1 WHERE id = ?2");
            while (rows.step()) {
                update.bindBlob(1, cipher.open(rows.blob(1))).bindText(2, rows.text(0)).run();
                update.reset();
            }
        });
    }

    std::shared_ptr<VuroDatabase> open(const QString& path) {
        return std::make_shared<VuroDatabase>(path, std::make_shared<KeychainKeyProvider>(keychain));
    }
};

Fixture& fixture() {
    static Fixture instance;
    return instance;
}

// Everything start-up does for the notes: open the database (schema check, key, cipher), load
// and open every body, and let the store sweep the image and file folders.
template <typename Persistence>
void openStore(benchmark::State& state, const QString& path) {
    for (auto _ : state) {
        auto database = fixture().open(path);
        auto images = std::make_shared<ImageStoreFiles>(fixture().folder.path(), database->cipher());
        auto files = std::make_shared<NoteFileStoreFiles>(fixture().folder.path(), database->cipher());
        NoteStore store(std::make_shared<Persistence>(database), std::chrono::milliseconds(250),
                        std::chrono::seconds(10), images, files);
        if (store.notes().size() != noteCount || !store.isWritable()) state.SkipWithError("the store didn't load");
        benchmark::DoNotOptimize(store.notes().data());
    }
}

void BM_OpenSealedStore(benchmark::State& state) { openStore<DatabaseNotePersistence>(state, fixture().sealedPath); }
BENCHMARK(BM_OpenSealedStore)->Unit(benchmark::kMillisecond)->MinTime(3);

void BM_OpenPlainStore(benchmark::State& state) { openStore<PlainNotePersistence>(state, fixture().plainPath); }
BENCHMARK(BM_OpenPlainStore)->Unit(benchmark::kMillisecond)->MinTime(3);

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
