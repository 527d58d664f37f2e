#pragma once

#include "storage/SealedFileStore.h"

namespace vuro {

// The files attached to notes: NoteFiles/<id>.sealed in the support folder, one per file token.
// Opening one in another program needs a decrypted working copy; those live only in the
// temporary folder VuroNoteFiles (owner-only), which is emptied at every start.
class NoteFileStoreFiles : public SealedFileStore {
public:
    NoteFileStoreFiles(const QString& supportFolder, BodyCipher cipher);

    // Decrypts the file into VuroNoteFiles/<id>/<name> and returns that path; none when the
    // sealed file is gone. Throws BodyCipher::CipherError, or Error when it can't be written.
    std::optional<QString> workingCopy(const QString& id, const QString& name) const;

    static QString workingFolder();
    // Removes every working copy; failures are ignored.
    static void emptyWorkingCopies();
};

}  // namespace vuro
