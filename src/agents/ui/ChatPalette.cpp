#include "agents/ui/ChatPalette.h"

namespace vuro::ChatPalette {
namespace {

bool isDark(const QColor& color) { return color.lightnessF() < 0.5; }

}  // namespace

QColor mix(const QColor& a, const QColor& b, double share) {
    const auto blend = [share](double x, double y) { return x + (y - x) * share; };
    return QColor::fromRgbF(static_cast<float>(blend(a.redF(), b.redF())), static_cast<float>(blend(a.greenF(), b.greenF())),
                            static_cast<float>(blend(a.blueF(), b.blueF())));
}

QColor userBubble(const QPalette& palette) {
    return mix(palette.color(QPalette::Base), palette.color(QPalette::Highlight), 0.16);
}

QColor card(const QPalette& palette) {
    return mix(palette.color(QPalette::Base), palette.color(QPalette::Window), 0.45);
}

QColor cardBorder(const QPalette& palette) {
    return mix(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.18);
}

QColor muted(const QPalette& palette) {
    return mix(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.6);
}

QColor error(const QPalette& palette) {
    return isDark(palette.color(QPalette::Base)) ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB3, 0x26, 0x1E);
}

}  // namespace vuro::ChatPalette
