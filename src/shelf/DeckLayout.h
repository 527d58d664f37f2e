#pragma once

#include "shelf/DeckPrefs.h"
#include "shelf/DeckState.h"

#include <QRect>

namespace vuro {

// The frame arithmetic of a deck's panel, in screen coordinates with y growing downwards.
// Pure functions: the controller and the tests call them with a screen's visible frame.
struct DeckLayout {
    // Rows of the strip in rest: the count capped at 14 (1 for none), one more from 15 notes on.
    static int restRows(int noteCount);
    static QRect panelFrame(const DeckState& state, const QRect& visible, int noteCount, const DeckPrefs& prefs);
    // The part of the panel that counts as inside for the pointer tests.
    static QRect hotRect(const QRect& panelFrame, const DeckPrefs& prefs);
};

}  // namespace vuro
