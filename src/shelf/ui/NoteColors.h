#pragma once

#include "notes/NoteColor.h"

#include <QColor>

namespace vuro {

// The paper colour of each note colour, and the ink that reads on it.
inline QColor paperColor(NoteColor color) {
    static const QColor papers[] = {QColor(0xFF, 0xF1, 0x9C), QColor(0xFF, 0xD6, 0xB0), QColor(0xFF, 0xC9, 0xD4),
                                    QColor(0xE2, 0xD4, 0xFF), QColor(0xC9, 0xE6, 0xFF), QColor(0xC8, 0xF0, 0xD8),
                                    QColor(0xEE, 0xE2, 0xC8), QColor(0x5A, 0x63, 0x70)};
    return papers[rawValue(color) & 7];
}

inline QColor inkColor(NoteColor color) {
    return color == NoteColor::slate ? QColor(0xF2, 0xF4, 0xF7) : QColor(0x26, 0x22, 0x1C);
}

}  // namespace vuro
