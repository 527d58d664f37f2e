// Token finding on arbitrary text: never crashes, every token found reads back from its own
// range, and an image token written from what was read is read again as the same token.
#include "notes/NoteTokens.h"

#include <cstdint>
#include <cstdlib>

using namespace vuro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    for (const auto& token : NoteTokens::fileTokens(text)) {
        const auto again = NoteTokens::fileTokens(text.mid(token.start, token.length));
        if (again.size() != 1 || again[0].id != token.id || again[0].name != token.name) std::abort();
        if (!NoteTokens::isValidIdentifier(token.id)) std::abort();
        if (NoteTokens::fileTokens(NoteTokens::fileToken(token.name, token.id)).value(0).id != token.id) std::abort();
    }
    for (const auto& token : NoteTokens::imageTokens(text)) {
        const auto again = NoteTokens::imageTokens(text.mid(token.start, token.length));
        if (again.size() != 1 || again[0].id != token.id) std::abort();
        const auto written = NoteTokens::imageTokens(NoteTokens::imageToken(token.id, token.width));
        if (written.size() != 1 || written[0].id != token.id) std::abort();
    }
    return 0;
}
