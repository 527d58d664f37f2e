#pragma once

#include "notes/NoteColor.h"

#include <QColor>
#include <QString>

namespace vuro::NotePalette {

// The paper colour of a note and its name in menus.
QColor paper(NoteColor color);
QString name(NoteColor color);

}  // namespace vuro::NotePalette
