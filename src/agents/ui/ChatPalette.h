#pragma once

#include <QColor>
#include <QPalette>

namespace vuro::ChatPalette {

// The chat's colours, all taken from the widget palette so that the window follows the desktop's
// light or dark scheme: the user's bubbles lean toward the highlight, cards toward the base.
QColor userBubble(const QPalette& palette);
QColor card(const QPalette& palette);
QColor cardBorder(const QPalette& palette);
QColor muted(const QPalette& palette);
// A red that stays readable on the palette's base colour.
QColor error(const QPalette& palette);

// a and b blended: 0 is all a, 1 all b.
QColor mix(const QColor& a, const QColor& b, double share);

}  // namespace vuro::ChatPalette
