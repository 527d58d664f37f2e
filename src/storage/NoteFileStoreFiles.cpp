#include "storage/NoteFileStoreFiles.h"

#include "storage/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace vuro {

NoteFileStoreFiles::NoteFileStoreFiles(const QString& supportFolder, BodyCipher cipher)
    : SealedFileStore(supportFolder + QStringLiteral("/NoteFiles"), std::move(cipher)) {}

QString NoteFileStoreFiles::workingFolder() { return QDir::tempPath() + QStringLiteral("/VuroNoteFiles"); }

void NoteFileStoreFiles::emptyWorkingCopies() {
    const QString folder = workingFolder();
    // A link planted in its place is removed, never followed.
    if (QFileInfo(folder).isSymLink()) {
        QFile::remove(folder);
        return;
    }
    QDir(folder).removeRecursively();
}

std::optional<QString> NoteFileStoreFiles::workingCopy(const QString& id, const QString& name) const {
    const auto bytes = load(id);
    if (!bytes) return std::nullopt;
    // Only the last path component of the name, so a name can't climb out of the folder.
    QString fileName = QFileInfo(name).fileName();
    if (fileName.isEmpty() || fileName == QLatin1String(".") || fileName == QLatin1String("..")) fileName = id;
    const QString folder = workingFolder() + QLatin1Char('/') + id;
    AtomicFile::makePrivateFolder(workingFolder());
    AtomicFile::makePrivateFolder(folder);
    const QString path = folder + QLatin1Char('/') + fileName;
    AtomicFile::write(path, *bytes);
    return path;
}

}  // namespace vuro
