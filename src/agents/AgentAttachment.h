#pragma once

#include "agents/RawEnum.h"

#include <QJsonObject>
#include <QString>
#include <optional>

namespace vuro {

// A file handed to an agent with a message or a job. The bytes live in a sealed file named by id;
// this record is what messages and jobs keep.
struct AgentAttachment {
    enum class Kind { image, pdf, text, document, audio };

    QString id;
    QString name;  // the file's name as the user knows it
    Kind kind = Kind::document;
    QString mediaType;
    qint64 byteCount = 0;
    std::optional<double> duration;  // seconds, for recordings

    QJsonObject toJson() const;
    static AgentAttachment fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const AgentAttachment&) const = default;
};

template <>
struct RawNames<AgentAttachment::Kind> {
    static constexpr const char* type = "Kind";
    static constexpr std::array cases{
        std::pair{AgentAttachment::Kind::image, "image"},   std::pair{AgentAttachment::Kind::pdf, "pdf"},
        std::pair{AgentAttachment::Kind::text, "text"},     std::pair{AgentAttachment::Kind::document, "document"},
        std::pair{AgentAttachment::Kind::audio, "audio"},
    };
};

size_t qHash(const AgentAttachment& attachment, size_t seed = 0);

}  // namespace vuro
