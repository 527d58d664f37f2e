#include "library/ui/NotePalette.h"

#include <QCoreApplication>

namespace vuro::NotePalette {

QColor paper(NoteColor color) {
    switch (color) {
    case NoteColor::lemon: return QColor(0xFF, 0xF1, 0x9C);
    case NoteColor::peach: return QColor(0xFF, 0xD1, 0xA8);
    case NoteColor::rose: return QColor(0xF9, 0xC0, 0xCB);
    case NoteColor::lilac: return QColor(0xDB, 0xC8, 0xF4);
    case NoteColor::sky: return QColor(0xBF, 0xE0, 0xF8);
    case NoteColor::mint: return QColor(0xC4, 0xEE, 0xD0);
    case NoteColor::sand: return QColor(0xE9, 0xDC, 0xC3);
    case NoteColor::slate: return QColor(0xC9, 0xD1, 0xD9);
    }
    return QColor(0xFF, 0xF1, 0x9C);
}

QString name(NoteColor color) {
    const char* names[] = {QT_TRANSLATE_NOOP("NoteColor", "Lemon"), QT_TRANSLATE_NOOP("NoteColor", "Peach"),
                           QT_TRANSLATE_NOOP("NoteColor", "Rose"),  QT_TRANSLATE_NOOP("NoteColor", "Lilac"),
                           QT_TRANSLATE_NOOP("NoteColor", "Sky"),   QT_TRANSLATE_NOOP("NoteColor", "Mint"),
                           QT_TRANSLATE_NOOP("NoteColor", "Sand"),  QT_TRANSLATE_NOOP("NoteColor", "Slate")};
    return QCoreApplication::translate("NoteColor", names[rawValue(color) & 7]);
}

}  // namespace vuro::NotePalette
