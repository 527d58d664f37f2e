#include "agents/ui/ElidedLabel.h"

#include <QPainter>

namespace vuro {
namespace {

constexpr int shortestWidth = 48;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString& text) {
    _text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

QSize ElidedLabel::sizeHint() const { return {fontMetrics().horizontalAdvance(_text) + 2, fontMetrics().height()}; }

QSize ElidedLabel::minimumSizeHint() const { return {std::min(sizeHint().width(), shortestWidth), fontMetrics().height()}; }

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    setToolTip(fontMetrics().horizontalAdvance(_text) + 2 > width() ? _text : QString());
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, fontMetrics().elidedText(_text, Qt::ElideRight, width()));
}

}  // namespace vuro
