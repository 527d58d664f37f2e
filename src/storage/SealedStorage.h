#pragma once

#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentPersistence.h"
#include "notes/NotePersistence.h"
#include "storage/ImageStoreFiles.h"
#include "storage/KeyProvider.h"
#include "storage/NoteFileStoreFiles.h"
#include "storage/VuroDatabase.h"

#include <memory>

namespace vuro {

// What start-up gets from the storage layer: the note and agent persistences and, when the store
// opened, the database and the sealed image, file and agent attachment folders bound to its cipher.
struct SealedStorage {
    std::shared_ptr<NotePersistence> notes;
    // The database's agents, or an empty store in memory when the database didn't open, so that
    // agents still work for the session.
    std::shared_ptr<AgentPersistence> agents;
    std::shared_ptr<AgentAttachmentFiles> attachments;  // none when the store didn't open
    std::shared_ptr<VuroDatabase> database;     // none when the store didn't open
    std::shared_ptr<ImageStoreFiles> images;    // likewise
    std::shared_ptr<NoteFileStoreFiles> files;  // likewise

    // Opens Vuro.store in supportFolder with the note key of keyProvider, binds Images/,
    // NoteFiles/ and AgentAttachments/ to its cipher and empties the working copies of attached files. Any failure is
    // logged as "Vuro: veritabanı açılamadı — " and the sentence, and gives an
    // UnavailableNotePersistence holding it with nothing else: the program then runs read-only
    // on the notes it can't reach, never on a fresh empty store over them.
    static SealedStorage open(const QString& supportFolder, std::shared_ptr<KeyProvider> keyProvider);

    // The same in the user's data folder, with the note key in the desktop keyring.
    static SealedStorage openForUser();
};

}  // namespace vuro
