#include "agents/ui/ErrorLabel.h"

#include "agents/ui/ChatPalette.h"

#include <QEvent>

namespace vuro {

ErrorLabel::ErrorLabel(QWidget* parent) : QLabel(parent) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    recolour();
}

void ErrorLabel::recolour() {
    // Setting the palette reports a palette change of its own; the flag stops the echo.
    _recolouring = true;
    QPalette colors = palette();
    // On a base-coloured ground a label draws with Text, elsewhere with WindowText.
    colors.setColor(QPalette::WindowText, ChatPalette::error(colors));
    colors.setColor(QPalette::Text, ChatPalette::error(colors));
    setPalette(colors);
    _recolouring = false;
}

void ErrorLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !_recolouring) recolour();
}

}  // namespace vuro
