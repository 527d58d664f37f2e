#pragma once

#include "shelf/DeckState.h"

#include <QSize>
#include <QString>

namespace vuro {

class Defaults;

// The preferences a deck reads, taken from Defaults at one moment. Values out of range are
// replaced by their defaults here, so the arithmetic never sees them.
struct DeckPrefs {
    bool alwaysShown = false;  // "deckAlwaysShown": the fan is the idle state
    bool onLeftEdge = false;   // "deckOnLeftEdge"
    double scale = 1.0;        // "deckScale", effective: 0.7…1.8, else 1.0
    double yRatio = 0.5;       // "deckYRatio": 0 puts the strip at the bottom, 1 at the top
    int edgeWidth = 14;        // "edgeWidth", at least 4, else 14
    DeckStyle style = DeckStyle::tabs;  // "deckStyle"
    QString noteSizeKey = QStringLiteral("medium");  // "noteSize": small, medium, large, huge
    double fontSize = 14;      // "noteFontSize"
    bool markdown = true;      // "markdown"
    bool revealMarks = true;   // "revealMarkdownMarks"
    bool hideActions = false;  // "deckHideActions"
    bool pillHidden = false;   // "deckPillHidden"
    bool openOnHover = true;   // "deckOpenOnHover"
    bool tabPreview = true;    // "deckTabPreview"
    quint32 displayID = 0;     // "deckDisplay": 0 serves every screen

    static DeckPrefs read(const Defaults& defaults);
    static double effectiveScale(double stored);
    static QSize noteSize(const QString& key);  // width and height of an open note

    QSize noteSize() const { return noteSize(noteSizeKey); }
    bool operator==(const DeckPrefs&) const = default;
};

}  // namespace vuro
