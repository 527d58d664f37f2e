#pragma once

#include "agents/AgentAttachment.h"

#include <QByteArray>
#include <QString>
#include <variant>

namespace vuro {

// A file of a turn as a back-end gets it: its record and its content in the form that back-end
// can take (native bytes, extracted text, or a note that the content is missing).
struct ChatAttachment {
    struct Image {
        QByteArray data;
        QString mediaType;
        bool operator==(const Image&) const = default;
    };
    struct Pdf {
        QByteArray data;
        bool operator==(const Pdf&) const = default;
    };
    struct Text {
        QString text;
        bool operator==(const Text&) const = default;
    };
    struct Pending {  // not ready yet
        bool operator==(const Pending&) const = default;
    };
    struct Omitted {  // the back-end can't take it
        bool operator==(const Omitted&) const = default;
    };
    using Content = std::variant<Image, Pdf, Text, Pending, Omitted>;

    AgentAttachment info;
    Content content;

    bool isNative() const { return std::holds_alternative<Image>(content) || std::holds_alternative<Pdf>(content); }
    bool operator==(const ChatAttachment&) const = default;
};

}  // namespace vuro
