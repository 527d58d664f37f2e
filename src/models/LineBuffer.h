#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace vuro {

// Cuts a byte stream that arrives in arbitrary pieces into lines. A line ends at "\n"; a "\r"
// before it is dropped, so CRLF streams read the same. Not thread-safe; one per stream.
class LineBuffer {
public:
    void append(QByteArrayView bytes);

    // The next complete line without its ending, or none until more bytes arrive.
    // The view stays valid until the next call of append().
    std::optional<QByteArrayView> nextLine();

    // At the end of the stream: the last line when the body didn't end with a newline.
    std::optional<QByteArray> takeRest();

private:
    QByteArray _bytes;
    qsizetype _start = 0;
};

// How a payload is taken out of a line of a streamed body.
enum class LineExtract {
    serverSentEvents,  // "data:" lines give the rest, trimmed; other and empty ones give nothing
    newlineDelimited,  // every non-blank line gives itself, trimmed
};

std::optional<QByteArrayView> extractPayload(LineExtract extract, QByteArrayView line);

}  // namespace vuro
