#include "models/LineBuffer.h"

#include <cstring>

namespace vuro {

void LineBuffer::append(QByteArrayView bytes) {
    // Drop consumed lines before growing, so a long stream keeps a buffer of about one chunk.
    if (_start > 0) {
        _bytes.remove(0, _start);
        _start = 0;
    }
    _bytes.append(bytes);
}

std::optional<QByteArrayView> LineBuffer::nextLine() {
    const qsizetype available = _bytes.size() - _start;
    if (available <= 0) return std::nullopt;
    const char* begin = _bytes.constData() + _start;
    const auto* newline = static_cast<const char*>(std::memchr(begin, '\n', static_cast<size_t>(available)));
    if (!newline) return std::nullopt;
    qsizetype length = newline - begin;
    _start += length + 1;
    if (length > 0 && begin[length - 1] == '\r') --length;
    return QByteArrayView(begin, length);
}

std::optional<QByteArray> LineBuffer::takeRest() {
    QByteArray rest = _bytes.mid(_start);
    _bytes.clear();
    _start = 0;
    if (rest.endsWith('\r')) rest.chop(1);
    if (rest.isEmpty()) return std::nullopt;
    return rest;
}

std::optional<QByteArrayView> extractPayload(LineExtract extract, QByteArrayView line) {
    if (extract == LineExtract::serverSentEvents) {
        if (!line.startsWith("data:")) return std::nullopt;
        line = line.sliced(5);
    }
    line = line.trimmed();
    if (line.isEmpty()) return std::nullopt;
    return line;
}

}  // namespace vuro
