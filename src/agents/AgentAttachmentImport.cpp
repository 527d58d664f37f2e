#include "agents/AgentAttachmentImport.h"

#include "base/Ids.h"
#include "notes/NoteFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QStringDecoder>
#include <QTemporaryFile>
#include <functional>

extern "C" {
#include <libavformat/avformat.h>
}

namespace vuro {
namespace {

using Kind = AgentAttachment::Kind;

constexpr qint64 headLength = 8192;

QString tr(const char* text) { return QCoreApplication::translate("AgentAttachmentImport", text); }

// The type a file claims by its name, or by its first bytes when the name says nothing.
QMimeType typeOf(const QString& name, const QByteArray& head, const QString& claimed) {
    QMimeDatabase db;
    if (!claimed.isEmpty()) {
        const QMimeType type = db.mimeTypeForName(claimed);
        if (type.isValid() && !type.isDefault()) return type;
    }
    QMimeType byName = db.mimeTypeForFile(name, QMimeDatabase::MatchExtension);
    // A name that is all extension (".pdf") reads as a hidden file without one; it still says its type.
    if (byName.isDefault() && name.startsWith(QLatin1Char('.')))
        byName = db.mimeTypeForFile(QStringLiteral("file") + name, QMimeDatabase::MatchExtension);
    if (byName.isValid() && !byName.isDefault()) return byName;
    return db.mimeTypeForName(AgentAttachmentImport::looksLikeText(head) ? QStringLiteral("text/plain")
                                                                         : QStringLiteral("application/octet-stream"));
}

// Seconds of an audio or video file, or none when the container doesn't tell.
std::optional<double> durationOf(const QString& path) {
    AVFormatContext* context = nullptr;
    if (avformat_open_input(&context, QFile::encodeName(path).constData(), nullptr, nullptr) != 0) return std::nullopt;
    std::optional<double> seconds;
    if (avformat_find_stream_info(context, nullptr) >= 0 && context->duration != AV_NOPTS_VALUE && context->duration > 0)
        seconds = static_cast<double>(context->duration) / AV_TIME_BASE;
    avformat_close_input(&context);
    return seconds;
}

std::optional<double> durationOfBytes(const QByteArray& data, const QString& name) {
    QTemporaryFile file(QDir::tempPath() + QStringLiteral("/vuro-audio-XXXXXX.") + QFileInfo(name).suffix());
    if (!file.open() || file.write(data) != data.size() || !file.flush()) return std::nullopt;
    return durationOf(file.fileName());
}

QByteArray encode(const QImage& image, const char* format, int quality) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (qstrcmp(format, "JPEG") == 0 && image.hasAlphaChannel()) {
        // JPEG has no transparency: what was transparent becomes white rather than black.
        QImage flat(image.size(), QImage::Format_RGB32);
        flat.fill(Qt::white);
        QPainter painter(&flat);
        painter.drawImage(0, 0, image);
        painter.end();
        flat.save(&buffer, format, quality);
    } else {
        image.save(&buffer, format, quality);
    }
    return bytes;
}

QImage fitted(const QImage& image, int longest) {
    if (qMax(image.width(), image.height()) <= longest) return image;
    const QSize target = image.size().scaled(longest, longest, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

AgentAttachmentImport::Result finish(const QString& name, Kind kind, const QMimeType& type, QByteArray data,
                                     const std::function<std::optional<double>()>& duration) {
    AgentAttachment info;
    info.id = newId();
    info.name = name;
    info.kind = kind;
    switch (kind) {
    case Kind::pdf:
        if (!data.left(1024).contains("%PDF")) return AgentAttachmentImport::Failure::unreadable(name);
        info.mediaType = QStringLiteral("application/pdf");
        break;
    case Kind::image: {
        auto encoded = AgentAttachmentImport::reencodeImage(data);
        if (!encoded) return AgentAttachmentImport::Failure::unreadable(name);
        data = std::move(encoded->data);
        info.mediaType = encoded->mediaType;
        break;
    }
    case Kind::text:
        info.mediaType = type.isValid() && !type.isDefault() ? type.name() : QStringLiteral("text/plain");
        break;
    case Kind::document:
        info.mediaType = type.isValid() && !type.isDefault() ? type.name() : QStringLiteral("application/octet-stream");
        break;
    case Kind::audio:
        info.mediaType = type.name();
        info.duration = duration();
        break;
    }
    info.byteCount = data.size();
    return AgentAttachmentDraft{info, std::move(data)};
}

}  // namespace

QString AgentAttachmentImport::Failure::message() const {
    switch (kind) {
    case Case::unsupported:
        return tr("“%1” can't be attached: only images, PDFs, text, documents and recordings.").arg(name);
    case Case::tooLarge:
        return tr("“%1” is too large (limit %2).").arg(name, formattedByteCount(limit));
    case Case::unreadable:
        return tr("Couldn't read “%1”.").arg(name);
    case Case::tooMany:
        return tr("You can attach up to %1 files to a message.").arg(count);
    }
    return {};
}

std::optional<Kind> AgentAttachmentImport::kindOf(const QMimeType& type) {
    if (!type.isValid()) return std::nullopt;
    const QString name = type.name();
    if (type.inherits(QStringLiteral("application/pdf"))) return Kind::pdf;
    if (name.startsWith(QLatin1String("image/"))) return Kind::image;
    if (name.startsWith(QLatin1String("audio/")) || name.startsWith(QLatin1String("video/"))) return Kind::audio;
    static const QStringList documents = {
        QStringLiteral("application/vnd.openxmlformats-officedocument.wordprocessingml.document"),
        QStringLiteral("application/msword"), QStringLiteral("application/vnd.oasis.opendocument.text"),
        QStringLiteral("application/rtf"), QStringLiteral("text/rtf")};
    for (const QString& document : documents)
        if (type.inherits(document)) return Kind::document;
    if (type.inherits(QStringLiteral("text/plain")) || type.inherits(QStringLiteral("application/json")) ||
        name.startsWith(QLatin1String("text/")))
        return Kind::text;
    return std::nullopt;
}

qint64 AgentAttachmentImport::limit(Kind kind, const QString& mediaType) {
    switch (kind) {
    case Kind::image:
        return mediaType == QLatin1String("image/tiff") || mediaType == QLatin1String("image/bmp") ? 256000000 : 40000000;
    case Kind::pdf:
        return 20000000;
    case Kind::text:
    case Kind::document:
        return 10000000;
    case Kind::audio:
        return 4000000000;
    }
    return 0;
}

bool AgentAttachmentImport::looksLikeText(const QByteArray& head) {
    const QByteArray sample = head.left(headLength);
    if (sample.contains('\0')) return false;
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(sample);
    if (decoder.hasError()) return false;
    qsizetype controls = 0;
    for (const QChar c : text)
        if (c.unicode() < 0x20 && c != QLatin1Char('\n') && c != QLatin1Char('\r') && c != QLatin1Char('\t') &&
            c != QLatin1Char('\f'))
            ++controls;
    return controls * 20 <= text.size();
}

std::optional<AgentAttachmentImport::EncodedImage> AgentAttachmentImport::reencodeImage(const QByteArray& data) {
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const bool wasJpeg = reader.format() == "jpeg" || reader.format() == "jpg";
    QImage image = reader.read();
    if (image.isNull()) return std::nullopt;
    image = fitted(image, imageLongestSide);
    if (!wasJpeg) {
        QByteArray png = encode(image, "PNG", -1);
        if (!png.isEmpty() && png.size() < imageByteCeiling) return EncodedImage{png, QStringLiteral("image/png")};
    }
    // JPEG at 85, then 70; after that each pass shrinks the picture by a quarter.
    int quality = 85;
    for (int pass = 0; pass < 40; ++pass) {
        QByteArray jpeg = encode(image, "JPEG", quality);
        if (jpeg.isEmpty()) return std::nullopt;
        if (jpeg.size() < imageByteCeiling) return EncodedImage{jpeg, QStringLiteral("image/jpeg")};
        if (quality > 70) {
            quality = 70;
            continue;
        }
        const int longest = qMax(image.width(), image.height());
        if (longest <= 1) return std::nullopt;
        image = fitted(image, qMax(1, longest * 3 / 4));
    }
    return std::nullopt;
}

AgentAttachmentImport::Result AgentAttachmentImport::fromFile(const QString& path) {
    const QFileInfo info(path);
    const QString name = info.fileName();
    if (info.isDir()) return Failure::unsupported(name);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return Failure::unreadable(name);
    const QByteArray head = file.peek(headLength);
    const QMimeType type = typeOf(name, head, {});
    const auto kind = kindOf(type);
    if (!kind) return Failure::unsupported(name);
    const qint64 ceiling = limit(*kind, type.name());
    if (file.size() > ceiling) return Failure::tooLarge(name, ceiling);
    QByteArray data = file.readAll();
    if (data.size() != file.size()) return Failure::unreadable(name);
    return finish(name, *kind, type, std::move(data), [path] { return durationOf(path); });
}

AgentAttachmentImport::Result AgentAttachmentImport::fromBytes(const QString& name, const QByteArray& data,
                                                               const QString& mediaType) {
    const QMimeType type = typeOf(name, data.left(headLength), mediaType);
    const auto kind = kindOf(type);
    if (!kind) return Failure::unsupported(name);
    const qint64 ceiling = limit(*kind, type.name());
    if (data.size() > ceiling) return Failure::tooLarge(name, ceiling);
    return finish(name, *kind, type, data, [&data, &name] { return durationOfBytes(data, name); });
}

}  // namespace vuro
