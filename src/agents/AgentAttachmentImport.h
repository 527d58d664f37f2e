#pragma once

#include "agents/AgentAttachmentDraft.h"

#include <QMimeType>
#include <QString>
#include <optional>
#include <variant>

namespace vuro {

// Turns a file or bytes into an attachment draft: decides the kind, enforces the size limit of
// that kind, checks a PDF's signature, re-encodes images to at most 2,048 pixels a side and under
// 3,700,001 bytes, reads an audio file's duration. Failures are values with the sentence to show
// at the attachment tray; nothing here throws. Pure functions, safe on any thread.
class AgentAttachmentImport {
public:
    struct Failure {
        enum class Case { unsupported, tooLarge, unreadable, tooMany };
        Case kind = Case::unsupported;
        QString name;
        qint64 limit = 0;  // tooLarge
        int count = 0;     // tooMany

        static Failure unsupported(QString name) { return {Case::unsupported, std::move(name), 0, 0}; }
        static Failure tooLarge(QString name, qint64 limit) { return {Case::tooLarge, std::move(name), limit, 0}; }
        static Failure unreadable(QString name) { return {Case::unreadable, std::move(name), 0, 0}; }
        static Failure tooMany(int count) { return {Case::tooMany, {}, 0, count}; }

        QString message() const;
        bool operator==(const Failure&) const = default;
    };
    using Result = std::variant<AgentAttachmentDraft, Failure>;

    // Files one message may carry.
    static constexpr int maximumPerMessage = 10;
    // An encoded image must stay below this many bytes.
    static constexpr qint64 imageByteCeiling = 3700001;
    static constexpr int imageLongestSide = 2048;

    static Result fromFile(const QString& path);
    // mediaType may be empty: the name's extension, then the bytes themselves, tell the type.
    static Result fromBytes(const QString& name, const QByteArray& data, const QString& mediaType = {});

    // The kind of a type, or none when such files are not accepted.
    static std::optional<AgentAttachment::Kind> kindOf(const QMimeType& type);
    // The largest accepted byte count for a kind; TIFF and BMP images get more room because
    // they are large before conversion.
    static qint64 limit(AgentAttachment::Kind kind, const QString& mediaType);
    // True when the first 8,192 bytes read as text: no NUL, valid UTF-8, few control characters.
    static bool looksLikeText(const QByteArray& head);

    struct EncodedImage {
        QByteArray data;
        QString mediaType;  // "image/png" or "image/jpeg"
    };
    // Decodes and writes an image anew within the size rules; none when it can't be decoded.
    static std::optional<EncodedImage> reencodeImage(const QByteArray& data);
};

}  // namespace vuro
