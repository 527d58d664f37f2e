#include "base/Defaults.h"
#include "shelf/DeckLayout.h"
#include "support/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

const QRect visible{0, 30, 1600, 970};

struct FrameCase {
    const char* name;
    DeckState state;
    int notes;
    QHash<QString, QVariant> prefs;
    QRect frame;
    QRect hot;
};

class PanelFrames : public ::testing::TestWithParam<FrameCase> {};

TEST_P(PanelFrames, followTheStateThePreferencesAndTheCount) {
    const auto& c = GetParam();
    QTemporaryDir folder;
    Defaults defaults(folder.filePath(QStringLiteral("Vuro.conf")), {});
    for (auto it = c.prefs.cbegin(); it != c.prefs.cend(); ++it) defaults.setValue(it.key(), it.value());
    const DeckPrefs prefs = DeckPrefs::read(defaults);
    const QRect frame = DeckLayout::panelFrame(c.state, visible, c.notes, prefs);
    EXPECT_EQ(frame, c.frame) << c.name;
    EXPECT_EQ(DeckLayout::hotRect(frame, prefs), c.hot) << c.name;
}

using P = QHash<QString, QVariant>;
INSTANTIATE_TEST_SUITE_P(
    Table, PanelFrames,
    testing::Values(
        // rest: height 2·9 + 6·rows + 6·(rows − 1), centred by the default ratio 0.5
        FrameCase{"no notes, one row", DeckState::rest(), 0, {}, {1584, 503, 16, 24}, {1368, 503, 232, 24}},
        FrameCase{"14 notes, 14 rows", DeckState::rest(), 14, {}, {1584, 425, 16, 180}, {1368, 425, 232, 180}},
        FrameCase{"20 notes, 15 rows", DeckState::rest(), 20, {}, {1584, 419, 16, 192}, {1368, 419, 232, 192}},
        FrameCase{"ratio 0 sits at the bottom", DeckState::rest(), 0, P{{"deckYRatio", 0}}, {1584, 976, 16, 24},
                  {1368, 976, 232, 24}},
        FrameCase{"ratio 1 at the top", DeckState::rest(), 0, P{{"deckYRatio", 1}}, {1584, 30, 16, 24},
                  {1368, 30, 232, 24}},
        FrameCase{"wide edge", DeckState::rest(), 0, P{{"edgeWidth", 30}}, {1570, 503, 30, 24}, {1368, 503, 232, 24}},
        FrameCase{"edge below 4 counts as 14", DeckState::rest(), 0, P{{"edgeWidth", 2}, {"deckScale", 0.7}},
                  {1586, 507, 14, 16}, {1433, 507, 167, 16}},
        FrameCase{"left edge", DeckState::rest(), 1, P{{"deckOnLeftEdge", true}}, {0, 503, 16, 24}, {0, 503, 232, 24}},
        // fan and expanded: the full visible height, wide enough for the list or the note
        FrameCase{"fan, tabs, medium note", DeckState::fan(), 5, {}, {1108, 30, 492, 970}, {1368, 30, 232, 970}},
        FrameCase{"expanded, same frame", DeckState::expanded(QStringLiteral("A")), 5, {}, {1108, 30, 492, 970},
                  {1368, 30, 232, 970}},
        FrameCase{"compact, small note", DeckState::fan(), 5, P{{"deckStyle", "compact"}, {"noteSize", "small"}},
                  {1168, 30, 432, 970}, {1532, 30, 68, 970}},
        FrameCase{"scale 1.5, huge note", DeckState::fan(), 5, P{{"deckScale", 1.5}, {"noteSize", "huge"}},
                  {884, 30, 716, 970}, {1262, 30, 338, 970}},
        FrameCase{"compact at 1.3: hot width truncates", DeckState::fan(), 5,
                  P{{"deckScale", 1.3}, {"deckStyle", "compact"}}, {1106, 30, 494, 970}, {1519, 30, 81, 970}},
        FrameCase{"stale scale 2.5 acts as 1.0", DeckState::fan(), 5, P{{"deckScale", 2.5}}, {1108, 30, 492, 970},
                  {1368, 30, 232, 970}},
        FrameCase{"unknown size and style fall back", DeckState::fan(), 5,
                  P{{"noteSize", "giant"}, {"deckStyle", "round"}, {"deckScale", "x"}}, {1108, 30, 492, 970},
                  {1368, 30, 232, 970}}),
    [](const auto& test) {
        QString name = QString::fromUtf8(test.param.name);
        for (QChar& c : name)
            if (!c.isLetterOrNumber()) c = QLatin1Char('_');
        return name.toStdString();
    });

TEST(DeckLayout, restRowsCapAt14AndAddOneFrom15) {
    const QList<QPair<int, int>> cases{{-3, 1}, {0, 1}, {1, 1}, {13, 13}, {14, 14}, {15, 15}, {20, 15}, {500, 15}};
    for (const auto& [count, rows] : cases) EXPECT_EQ(DeckLayout::restRows(count), rows) << count;
}

}  // namespace
