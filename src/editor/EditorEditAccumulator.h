#pragma once

#include "editor/EditorRange.h"

#include <QList>

namespace vuro {

// The ranges edited since the last styling pass. Ranges are recorded as the text store reports
// them and may have gone stale by the time they are drained; normalising clamps or drops them.
class EditorEditAccumulator {
public:
    void record(const EditorRange& range) { _pending.append(range); }
    bool isEmpty() const { return _pending.isEmpty(); }
    const QList<EditorRange>& pending() const { return _pending; }

    // The pending ranges normalised against the text's length, emptied afterwards. While an
    // input method composes nothing is drained and the ranges wait for the commit. Empty
    // ranges (deletions) are kept: their line still needs a pass.
    QList<EditorRange> drain(qsizetype textLength, bool hasMarkedText);

    // Drops ranges with a negative location or length, clamps the rest into the text, drops
    // empty ones unless asked to keep them, sorts, and merges ranges that overlap or touch.
    static QList<EditorRange> normalize(QList<EditorRange> ranges, qsizetype textLength, bool keepEmpty = false);

private:
    QList<EditorRange> _pending;
};

}  // namespace vuro
