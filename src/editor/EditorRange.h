#pragma once

#include <QtGlobal>

namespace vuro {

// A range of UTF-16 positions in an editor's text.
struct EditorRange {
    qsizetype location = 0;
    qsizetype length = 0;

    qsizetype end() const { return location + length; }
    bool isEmpty() const { return length == 0; }
    bool intersects(const EditorRange& other) const {
        return qMax(location, other.location) < qMin(end(), other.end());
    }
    bool operator==(const EditorRange&) const = default;
};

}  // namespace vuro
