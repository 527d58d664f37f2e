#include "shelf/DeckPrefs.h"

#include "base/Defaults.h"

#include <cmath>

namespace vuro {

double DeckPrefs::effectiveScale(double stored) {
    // A scale written by an older build or by hand may lie outside what the layout can take.
    return std::isfinite(stored) && stored >= 0.7 && stored <= 1.8 ? stored : 1.0;
}

QSize DeckPrefs::noteSize(const QString& key) {
    if (key == QLatin1String("small")) return {400, 320};
    if (key == QLatin1String("large")) return {560, 470};
    if (key == QLatin1String("huge")) return {680, 560};
    return {460, 380};
}

DeckPrefs DeckPrefs::read(const Defaults& defaults) {
    DeckPrefs prefs;
    prefs.alwaysShown = defaults.boolValue(QStringLiteral("deckAlwaysShown"), false);
    prefs.onLeftEdge = defaults.boolValue(QStringLiteral("deckOnLeftEdge"), false);
    prefs.scale = effectiveScale(defaults.doubleValue(QStringLiteral("deckScale"), 1.0));
    const double ratio = defaults.doubleValue(QStringLiteral("deckYRatio"), 0.5);
    prefs.yRatio = std::isfinite(ratio) && ratio >= 0 && ratio <= 1 ? ratio : 0.5;
    const int edge = defaults.intValue(QStringLiteral("edgeWidth"), 14);
    prefs.edgeWidth = edge < 4 ? 14 : edge;
    prefs.style = defaults.stringValue(QStringLiteral("deckStyle")) == QLatin1String("compact") ? DeckStyle::compact
                                                                                              : DeckStyle::tabs;
    const QString size = defaults.stringValue(QStringLiteral("noteSize"), QStringLiteral("medium"));
    prefs.noteSizeKey = QStringList{QStringLiteral("small"), QStringLiteral("medium"), QStringLiteral("large"),
                                    QStringLiteral("huge")}
                                .contains(size)
                            ? size
                            : QStringLiteral("medium");
    const double font = defaults.doubleValue(QStringLiteral("noteFontSize"), 14);
    prefs.fontSize = std::isfinite(font) && font >= 8 && font <= 48 ? font : 14;
    prefs.markdown = defaults.boolValue(QStringLiteral("markdown"), true);
    prefs.revealMarks = defaults.boolValue(QStringLiteral("revealMarkdownMarks"), true);
    prefs.hideActions = defaults.boolValue(QStringLiteral("deckHideActions"), false);
    prefs.pillHidden = defaults.boolValue(QStringLiteral("deckPillHidden"), false);
    prefs.openOnHover = defaults.boolValue(QStringLiteral("deckOpenOnHover"), true);
    prefs.tabPreview = defaults.boolValue(QStringLiteral("deckTabPreview"), true);
    prefs.displayID = static_cast<quint32>(defaults.value(QStringLiteral("deckDisplay"), 0).toUInt());
    return prefs;
}

}  // namespace vuro
