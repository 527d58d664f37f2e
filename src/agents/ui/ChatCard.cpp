#include "agents/ui/ChatCard.h"

#include "agents/ui/ChatPalette.h"

#include <QPainter>
#include <QPainterPath>

namespace vuro {

ChatCard::ChatCard(Fill fill, QWidget* parent) : QFrame(parent), _fill(fill) {}

void ChatCard::paintEvent(QPaintEvent*) {
    const QPalette& colors = palette();
    QColor fill = ChatPalette::card(colors);
    QColor border = ChatPalette::cardBorder(colors);
    if (_fill == Fill::userBubble) {
        fill = ChatPalette::userBubble(colors);
        border = fill;
    } else if (_fill == Fill::attention) {
        // Something waits for the user: the highlight colour frames it.
        fill = ChatPalette::mix(colors.color(QPalette::Base), colors.color(QPalette::Highlight), 0.07);
        border = ChatPalette::mix(colors.color(QPalette::Base), colors.color(QPalette::Highlight), 0.6);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.fillPath(path, fill);
    painter.setPen(QPen(border, 1));
    painter.drawPath(path);
}

}  // namespace vuro
