#include "storage/SealedStorage.h"

#include "agents/InMemoryAgentPersistence.h"
#include "agents/SealedAgentAttachmentFiles.h"
#include "base/Log.h"
#include "notes/UnavailableNotePersistence.h"
#include "storage/DatabaseAgentPersistence.h"
#include "storage/DatabaseNotePersistence.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/SecretServiceKeychain.h"

namespace vuro {

namespace {

SealedStorage unavailable(const QString& sentence) {
    log(QStringLiteral("Vuro: veritabanı açılamadı — ") + sentence);
    SealedStorage storage;
    storage.notes = std::make_shared<UnavailableNotePersistence>(Error(sentence));
    storage.agents = std::make_shared<InMemoryAgentPersistence>();
    return storage;
}

}  // namespace

SealedStorage SealedStorage::open(const QString& supportFolder, std::shared_ptr<KeyProvider> keyProvider) {
    try {
        SealedStorage storage;
        storage.database =
            std::make_shared<VuroDatabase>(supportFolder + QStringLiteral("/Vuro.store"), std::move(keyProvider));
        storage.images = std::make_shared<ImageStoreFiles>(supportFolder, storage.database->cipher());
        storage.files = std::make_shared<NoteFileStoreFiles>(supportFolder, storage.database->cipher());
        NoteFileStoreFiles::emptyWorkingCopies();
        storage.notes = std::make_shared<DatabaseNotePersistence>(storage.database);
        storage.agents = std::make_shared<DatabaseAgentPersistence>(storage.database);
        std::shared_ptr<VuroDatabase> database = storage.database;
        storage.attachments = std::make_shared<SealedAgentAttachmentFiles>(
            supportFolder + QStringLiteral("/AgentAttachments"), [database] { return database->cipher(); });
        return storage;
    } catch (const Error& error) {
        return unavailable(error.message());
    } catch (const std::exception& error) {
        return unavailable(QString::fromUtf8(error.what()));
    }
}

SealedStorage SealedStorage::openForUser() {
    QString folder;
    try {
        folder = VuroDatabase::supportFolder();
    } catch (const Error& error) {
        return unavailable(error.message());
    }
    auto keychain = std::make_shared<SecretServiceKeychain>(QString(Keychain::defaultService));
    return open(folder, std::make_shared<KeychainKeyProvider>(std::move(keychain)));
}

}  // namespace vuro
