#include "agents/ui/AgentAvatar.h"

#include "base/Text.h"
#include "library/ui/NotePalette.h"

#include <QPainter>

namespace vuro {

AgentAvatar::AgentAvatar(int diameter, QWidget* parent) : QWidget(parent), _diameter(diameter) {
    setFixedSize(diameter, diameter);
}

QString AgentAvatar::face(const Agent& agent) {
    const QString emoji = Text::trimmed(agent.emoji);
    if (!emoji.isEmpty()) return Text::leftCharacters(emoji, 1);
    return Text::leftCharacters(agent.displayName(), 1).toUpper();
}

void AgentAvatar::setAgent(const Agent& agent) {
    _face = face(agent);
    _color = agent.color;
    setAccessibleName(agent.displayName());
    update();
}

void AgentAvatar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor paper = NotePalette::paper(_color);
    painter.setBrush(paper);
    painter.setPen(QPen(paper.darker(118), 1));
    painter.drawEllipse(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    QFont font = this->font();
    font.setPixelSize(static_cast<int>(_diameter * 0.52));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(0x2B, 0x2B, 0x2B));  // paper colours are all light
    painter.drawText(rect(), Qt::AlignCenter, _face);
}

}  // namespace vuro
