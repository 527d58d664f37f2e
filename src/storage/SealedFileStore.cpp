#include "storage/SealedFileStore.h"

#include "base/Ids.h"
#include "notes/NoteTokens.h"
#include "storage/AtomicFile.h"

#include <QDir>
#include <QFile>

namespace vuro {

namespace {

const QString suffix = QStringLiteral(".sealed");

}  // namespace

SealedFileStore::SealedFileStore(QString folder, BodyCipher cipher)
    : _folder(std::move(folder)), _cipher(std::move(cipher)) {
    AtomicFile::makePrivateFolder(_folder);
    // Temporary files of writes that a crash interrupted hold only sealed bytes; clear them away.
    for (const auto& name : QDir(_folder).entryList({QStringLiteral("*.sealed.*")}, QDir::Files | QDir::Hidden))
        QFile::remove(_folder + QLatin1Char('/') + name);
}

QString SealedFileStore::pathOf(const QString& id) const {
    if (!NoteTokens::isValidIdentifier(id)) throw Error(QStringLiteral("“%1” is not a valid file id.").arg(id));
    return _folder + QLatin1Char('/') + id + suffix;
}

QString SealedFileStore::add(const QByteArray& bytes) {
    QString id = newId();
    save(id, bytes);
    return id;
}

void SealedFileStore::save(const QString& id, const QByteArray& bytes) {
    AtomicFile::write(pathOf(id), _cipher.seal(bytes));
}

std::optional<QByteArray> SealedFileStore::load(const QString& id) const {
    QFile file(pathOf(id));
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    return _cipher.open(file.readAll());
}

bool SealedFileStore::contains(const QString& id) const { return QFile::exists(pathOf(id)); }

void SealedFileStore::remove(const QString& id) { QFile::remove(pathOf(id)); }

QStringList SealedFileStore::allIDs() const {
    QStringList ids;
    for (const auto& name : QDir(_folder).entryList({QLatin1Char('*') + suffix}, QDir::Files)) {
        const QString id = name.chopped(suffix.size());
        if (NoteTokens::isValidIdentifier(id)) ids.append(id);
    }
    return ids;
}

void SealedFileStore::deleteIDs(const QStringList& ids) {
    for (const auto& id : ids)
        if (NoteTokens::isValidIdentifier(id)) QFile::remove(pathOf(id));
}

}  // namespace vuro
