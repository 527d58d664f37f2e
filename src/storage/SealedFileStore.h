#pragma once

#include "notes/NotePersistence.h"
#include "storage/BodyCipher.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

namespace vuro {

// A folder of files sealed with one BodyCipher, one file "<id>.sealed" per id. Ids are those a
// body token can carry (letters, digits, "-"; see NoteTokens); any other id is refused, so an id
// can never name a path outside the folder. Writes are atomic: a temporary file in the folder is
// written, flushed to disk and renamed over the old one, so a crash leaves the old or the new
// content, never a mix. The folder and the cipher are bound once; main thread.
class SealedFileStore : public NoteImageFiles {
public:
    // Creates the folder (owner-only) when it is missing; throws Error when that fails.
    SealedFileStore(QString folder, BodyCipher cipher);

    // Seals bytes under a new id and returns it.
    QString add(const QByteArray& bytes);
    // Seals bytes under id, replacing what was there. Throws Error.
    void save(const QString& id, const QByteArray& bytes);
    // The opened bytes, or none when there is no such file. Throws BodyCipher::CipherError.
    std::optional<QByteArray> load(const QString& id) const;
    bool contains(const QString& id) const;
    void remove(const QString& id);

    QStringList allIDs() const override;
    void deleteIDs(const QStringList& ids) override;

    const QString& folder() const { return _folder; }
    const BodyCipher& cipher() const { return _cipher; }

private:
    QString pathOf(const QString& id) const;

    QString _folder;
    BodyCipher _cipher;
};

}  // namespace vuro
