#include "storage/AtomicFile.h"

#include "base/Error.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <sys/stat.h>
#include <unistd.h>

namespace vuro {

void AtomicFile::write(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    const auto fail = [&] {
        const QString reason = file.errorString();
        file.cancelWriting();
        throw Error(QStringLiteral("The file %1 could not be saved (%2).").arg(QFileInfo(path).fileName(), reason));
    };
    if (!file.open(QIODevice::WriteOnly)) fail();
    if (file.write(bytes) != bytes.size() || !file.flush()) fail();
    // The bytes must be on disk before the rename makes them the file's content.
    if (::fsync(file.handle()) != 0) fail();
    if (!file.commit()) fail();
}

void AtomicFile::makePrivateFolder(const QString& folder) {
    if (!QDir().mkpath(folder))
        throw Error(QStringLiteral("The folder %1 could not be created.").arg(QDir::toNativeSeparators(folder)));
    struct stat status {};
    const QByteArray native = QFile::encodeName(folder);
    // A folder someone else made (or a link to one) would let them read what is put in it.
    if (::lstat(native.constData(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::getuid())
        throw Error(QStringLiteral("The folder %1 is not yours to use.").arg(QDir::toNativeSeparators(folder)));
    if ((status.st_mode & 077) != 0) ::chmod(native.constData(), 0700);
}

}  // namespace vuro
