#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <optional>

namespace vuro {

// The metadata of a file attached to a note; the bytes live sealed in the note file store.
struct NoteFile {
    enum class Kind { audio, video, image, pdf, document };

    QString id;
    QString name;
    QString typeIdentifier;  // a MIME type name on this platform
    qint64 byteCount = 0;
    std::optional<double> duration;  // seconds
    QDateTime added;

    Kind kind() const;
    static QString kindName(Kind kind);  // "audio", "video", "image", "pdf", "document"
    QString typeLabel() const;
    QString summary() const;
    QString agentLabel(bool turkish) const;

    QJsonObject toJson() const;
    static NoteFile fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const NoteFile&) const = default;
};

// "1:05" below an hour, "1:02:03" from 3,600 seconds up.
QString formattedDuration(double seconds);
// A byte count in file style: "512 bytes", "2 MB".
QString formattedByteCount(qint64 bytes);

}  // namespace vuro
