#include "notes/NoteFile.h"

#include "base/Json.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>
#include <cmath>

namespace vuro {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("vuro::NoteFile", text); }

// The type behind a file: its own type name when the platform knows it, else the one its name's
// extension suggests; an invalid type stands for plain data.
QMimeType resolvedType(const NoteFile& file) {
    const QMimeDatabase database;
    if (const QMimeType named = database.mimeTypeForName(file.typeIdentifier); named.isValid()) return named;
    const QMimeType byName = database.mimeTypeForFile(file.name, QMimeDatabase::MatchExtension);
    return byName.isDefault() ? QMimeType() : byName;
}

bool conformsTo(const QMimeType& type, QLatin1StringView prefixOrName, bool isPrefix) {
    if (!type.isValid()) return false;
    QStringList names = type.allAncestors();
    names.prepend(type.name());
    for (const QString& name : names) {
        if (isPrefix ? name.startsWith(prefixOrName) : name == prefixOrName) return true;
    }
    return false;
}

QString extensionOf(const QString& name) {
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || dot == name.size() - 1) return {};
    const QString extension = name.mid(dot + 1);
    return extension.contains(QLatin1Char('/')) ? QString() : extension;
}

QString decimal(double value, int decimals) {
    QString text = QLocale().toString(value, 'f', decimals);
    if (decimals > 0) {
        const QString zeros = QLocale().decimalPoint() + QString(decimals, QLatin1Char('0'));
        if (text.endsWith(zeros)) text.chop(zeros.size());
    }
    return text;
}

}  // namespace

NoteFile::Kind NoteFile::kind() const {
    const QMimeType type = resolvedType(*this);
    if (conformsTo(type, QLatin1StringView("audio/"), true)) return Kind::audio;
    if (conformsTo(type, QLatin1StringView("video/"), true)) return Kind::video;
    if (conformsTo(type, QLatin1StringView("image/"), true)) return Kind::image;
    if (conformsTo(type, QLatin1StringView("application/pdf"), false)) return Kind::pdf;
    return Kind::document;
}

QString NoteFile::kindName(Kind kind) {
    switch (kind) {
    case Kind::audio: return QStringLiteral("audio");
    case Kind::video: return QStringLiteral("video");
    case Kind::image: return QStringLiteral("image");
    case Kind::pdf: return QStringLiteral("pdf");
    case Kind::document: break;
    }
    return QStringLiteral("document");
}

QString NoteFile::typeLabel() const {
    if (const QString extension = extensionOf(name); !extension.isEmpty() && extension.size() <= 5) {
        return extension.toUpper();
    }
    if (const QMimeType type = resolvedType(*this); type.isValid() && !type.comment().isEmpty()) return type.comment();
    return tr("File");
}

QString NoteFile::summary() const {
    const Kind k = kind();
    const bool timed = (k == Kind::audio || k == Kind::video) && duration;
    return (timed ? formattedDuration(*duration) : typeLabel()) + QStringLiteral(" · ") + formattedByteCount(byteCount);
}

QString NoteFile::agentLabel(bool turkish) const {
    QString what;
    switch (kind()) {
    case Kind::audio: what = turkish ? QStringLiteral("ses kaydı") : QStringLiteral("audio recording"); break;
    case Kind::video: what = QStringLiteral("video"); break;
    case Kind::image: what = turkish ? QStringLiteral("resim") : QStringLiteral("image"); break;
    case Kind::pdf: what = QStringLiteral("PDF"); break;
    case Kind::document: what = typeLabel(); break;
    }
    const Kind k = kind();
    if ((k == Kind::audio || k == Kind::video) && duration) what += QStringLiteral(", ") + formattedDuration(*duration);
    return QStringLiteral("%1 (%2, %3)").arg(name, what, formattedByteCount(byteCount));
}

QJsonObject NoteFile::toJson() const {
    QJsonObject object{
        {QStringLiteral("id"), id},
        {QStringLiteral("name"), name},
        {QStringLiteral("typeIdentifier"), typeIdentifier},
        {QStringLiteral("byteCount"), byteCount},
        {QStringLiteral("added"), Json::fromDate(added)},
    };
    if (duration) object.insert(QStringLiteral("duration"), *duration);
    return object;
}

NoteFile NoteFile::fromJson(const QJsonObject& object) {
    NoteFile file;
    file.id = Json::requireString(object, QStringLiteral("id"));
    file.name = Json::requireString(object, QStringLiteral("name"));
    file.typeIdentifier = Json::requireString(object, QStringLiteral("typeIdentifier"));
    file.byteCount = Json::requireInteger(object, QStringLiteral("byteCount"));
    file.duration = Json::optionalDouble(object, QStringLiteral("duration"));
    file.added = Json::requireDate(object, QStringLiteral("added"));
    return file;
}

QString formattedDuration(double seconds) {
    const qint64 total = std::isfinite(seconds) && seconds > 0 ? static_cast<qint64>(std::llround(seconds)) : 0;
    const qint64 hours = total / 3600;
    const qint64 minutes = (total % 3600) / 60;
    const qint64 rest = total % 60;
    if (hours > 0) {
        return QStringLiteral("%1:%2:%3").arg(hours).arg(minutes, 2, 10, QLatin1Char('0')).arg(rest, 2, 10, QLatin1Char('0'));
    }
    return QStringLiteral("%1:%2").arg(minutes).arg(rest, 2, 10, QLatin1Char('0'));
}

// Decimal units as file managers count them: whole kilobytes, megabytes with one decimal,
// larger units with two.
QString formattedByteCount(qint64 bytes) {
    if (bytes == 0) return tr("Zero KB");
    if (bytes < 0) return tr("%1 bytes").arg(bytes);
    if (bytes == 1) return tr("1 byte");
    if (bytes < 1000) return tr("%1 bytes").arg(bytes);
    static const char* const units[] = {"KB", "MB", "GB", "TB", "PB", "EB"};
    double value = static_cast<double>(bytes) / 1000.0;
    int unit = 0;
    while (unit < 5 && std::round(value * 100) / 100 >= 1000.0) {
        value /= 1000.0;
        ++unit;
    }
    const int decimals = unit == 0 ? 0 : (unit == 1 ? 1 : 2);
    return QStringLiteral("%1 %2").arg(decimal(value, decimals), QLatin1String(units[unit]));
}

}  // namespace vuro
