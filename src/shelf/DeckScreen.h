#pragma once

#include <QRect>

namespace vuro {

// One display a deck can stand on: its identifier, its whole frame and the part that windows
// may use (without panels and docks), in global coordinates.
struct DeckScreen {
    quint32 id = 0;
    QRect frame;
    QRect visible;

    bool operator==(const DeckScreen&) const = default;
};

}  // namespace vuro
