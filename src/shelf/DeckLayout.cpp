#include "shelf/DeckLayout.h"

#include <algorithm>
#include <cmath>

namespace vuro {

namespace {

int scaled(double s, double v) { return static_cast<int>(std::lround(s * v)); }
int truncated(double s, double v) { return static_cast<int>(std::trunc(s * v)); }
double listWidth(DeckStyle style) { return style == DeckStyle::compact ? 36 : 200; }

}  // namespace

int DeckLayout::restRows(int noteCount) {
    const int n = std::max(noteCount, 0);
    return (n == 0 ? 1 : std::min(n, 14)) + (n >= 15 ? 1 : 0);
}

QRect DeckLayout::panelFrame(const DeckState& state, const QRect& visible, int noteCount, const DeckPrefs& prefs) {
    const double s = prefs.scale;
    int width = 0;
    int height = 0;
    int top = visible.top();
    if (state.isRest()) {
        const int rows = restRows(noteCount);
        const int a = scaled(s, 9);
        const int b = scaled(s, 6);
        height = 2 * a + b * rows + b * (rows - 1);
        width = std::max(scaled(s, 14) + 2, prefs.edgeWidth);
        // The ratio is measured from the bottom of the screen upwards.
        const int lift = static_cast<int>(std::lround(prefs.yRatio * std::max(visible.height() - height, 1)));
        top = visible.top() + visible.height() - height - lift;
    } else {
        const double w = listWidth(prefs.style);
        const int list = scaled(s, 220) + scaled(s, 4) + scaled(s, w) + scaled(s, 8) + 10;
        const int note = prefs.noteSize().width() + scaled(s, 8);
        width = std::max(list, note) + 24;
        height = visible.height();
    }
    const int left = prefs.onLeftEdge ? visible.left() : visible.left() + visible.width() - width;
    return {left, top, width, height};
}

QRect DeckLayout::hotRect(const QRect& panelFrame, const DeckPrefs& prefs) {
    const double s = prefs.scale;
    const int width = truncated(s, 4) + truncated(s, listWidth(prefs.style)) + truncated(s, 8) + 20;
    const int left = prefs.onLeftEdge ? panelFrame.left() : panelFrame.left() + panelFrame.width() - width;
    return {left, panelFrame.top(), width, panelFrame.height()};
}

}  // namespace vuro
