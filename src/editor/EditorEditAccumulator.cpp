#include "editor/EditorEditAccumulator.h"

#include <algorithm>

namespace vuro {

QList<EditorRange> EditorEditAccumulator::drain(qsizetype textLength, bool hasMarkedText) {
    if (hasMarkedText) return {};
    QList<EditorRange> ranges;
    ranges.swap(_pending);
    return normalize(std::move(ranges), textLength, true);
}

QList<EditorRange> EditorEditAccumulator::normalize(QList<EditorRange> ranges, qsizetype textLength, bool keepEmpty) {
    QList<EditorRange> kept;
    kept.reserve(ranges.size());
    for (EditorRange range : ranges) {
        if (range.location < 0 || range.length < 0) continue;
        range.location = std::min(range.location, textLength);
        range.length = std::min(range.length, textLength - range.location);
        if (range.length == 0 && !keepEmpty) continue;
        kept.append(range);
    }
    std::sort(kept.begin(), kept.end(), [](const EditorRange& a, const EditorRange& b) {
        return a.location != b.location ? a.location < b.location : a.length < b.length;
    });
    QList<EditorRange> merged;
    for (const EditorRange& range : kept) {
        if (!merged.isEmpty() && range.location <= merged.last().end()) {
            EditorRange& last = merged.last();
            last.length = std::max(last.end(), range.end()) - last.location;
        } else {
            merged.append(range);
        }
    }
    return merged;
}

}  // namespace vuro
