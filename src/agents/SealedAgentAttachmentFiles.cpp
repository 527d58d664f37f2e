#include "agents/SealedAgentAttachmentFiles.h"

#include "base/Log.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace vuro {
namespace {

const QString suffix = QStringLiteral(".sealed");

// Identifiers are UUIDs; anything that could step out of the folder is no identifier.
bool isSafeID(const QString& id) {
    if (id.isEmpty() || id.size() > 64) return false;
    for (const QChar c : id)
        if (!(c.isLetterOrNumber() && c.unicode() < 128) && c != QLatin1Char('-')) return false;
    return true;
}

}  // namespace

SealedAgentAttachmentFiles::SealedAgentAttachmentFiles(QString directory, std::function<BodyCipher()> cipher)
    : _directory(std::move(directory)), _cipher(std::move(cipher)) {}

QString SealedAgentAttachmentFiles::pathOf(const QString& id) const { return _directory + QLatin1Char('/') + id + suffix; }

void SealedAgentAttachmentFiles::write(const QString& id, const QByteArray& data) {
    const auto failed = [](const QString& why) {
        log(QStringLiteral("ek kaydedilemedi — ") + why);
        return Error(QCoreApplication::translate("SealedAgentAttachmentFiles", "The attachment couldn't be saved."));
    };
    if (!isSafeID(id)) throw failed(QStringLiteral("bad identifier"));
    if (!QDir().mkpath(_directory)) throw failed(QStringLiteral("can't create ") + _directory);
    const QByteArray sealed = _cipher().seal(data);
    QSaveFile file(pathOf(id));
    if (!file.open(QIODevice::WriteOnly) || file.write(sealed) != sealed.size() || !file.commit())
        throw failed(file.errorString());
}

std::optional<QByteArray> SealedAgentAttachmentFiles::read(const QString& id) const {
    if (!isSafeID(id)) return std::nullopt;
    QFile file(pathOf(id));
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    try {
        return _cipher().open(file.readAll());
    } catch (const Error& error) {
        log(QStringLiteral("attachment ") + id + QStringLiteral(" doesn't open: ") + error.message());
        return std::nullopt;
    }
}

void SealedAgentAttachmentFiles::remove(const QStringList& ids) {
    for (const QString& id : ids)
        if (isSafeID(id)) QFile::remove(pathOf(id));
}

QStringList SealedAgentAttachmentFiles::allIDs() const {
    QStringList ids;
    for (const QString& name : QDir(_directory).entryList({QLatin1Char('*') + suffix}, QDir::Files))
        ids.append(name.chopped(suffix.size()));
    return ids;
}

}  // namespace vuro
