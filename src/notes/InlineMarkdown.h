#pragma once

#include <QString>
#include <optional>

namespace vuro {

// Reads one line as inline Markdown only (no lists, quotes or headings) and keeps the characters
// a reader sees: emphasis marks, link targets and escapes go, code, link texts and entities stay.
// Stateless and thread-safe.
class InlineMarkdown {
public:
    // The plain text of line, or none when the parser refuses it.
    static std::optional<QString> plainText(const QString& line);
};

}  // namespace vuro
