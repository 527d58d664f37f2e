#include "editor/EditorEditAccumulator.h"
#include "editor/EditorTextAdapter.h"
#include "support/Printers.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

struct RoundTrip {
    const char* stored;
    const char* editor;
    const char* back;
};

class TaskBoxes : public testing::TestWithParam<RoundTrip> {};

TEST_P(TaskBoxes, convertBothWays) {
    const auto& c = GetParam();
    const QString editor = EditorTextAdapter::toEditor(QString::fromUtf8(c.stored));
    EXPECT_EQ(editor, QString::fromUtf8(c.editor));
    EXPECT_EQ(EditorTextAdapter::toStored(editor), QString::fromUtf8(c.back));
}

INSTANTIATE_TEST_SUITE_P(
    Table, TaskBoxes,
    testing::Values(RoundTrip{"- [ ] milk", "☐ milk", "- [ ] milk"},
                    RoundTrip{"- [ ]", "☐ ", "- [ ] "},  // a lone box keeps a blank behind it
                    RoundTrip{"* [X] done", "☑ done", "- [x] done"},
                    RoundTrip{"\t+ [x]   spaced", "\t☑ spaced", "\t- [x] spaced"},
                    RoundTrip{"-[ ] x", "-[ ] x", "-[ ] x"},
                    RoundTrip{"a - [ ] inside", "a - [ ] inside", "a - [ ] inside"},
                    RoundTrip{"one\n- [ ] two\r\n  - [x] three", "one\n☐ two\r\n  ☑ three",
                              "one\n- [ ] two\r\n  - [x] three"},
                    RoundTrip{"- [ ]x", "- [ ]x", "- [ ]x"}));

// The editor-to-stored conversion is a hand-written pass; its definition is the pair of
// line-anchored replacements below. Random texts of the characters that matter must convert alike.
TEST(EditorTextAdapter, toStoredDoesWhatTheLineAnchoredReplacementsDo) {
    static const QRegularExpression open(QStringLiteral("^([\\t ]*)☐ "), QRegularExpression::MultilineOption);
    static const QRegularExpression done(QStringLiteral("^([\\t ]*)☑ "), QRegularExpression::MultilineOption);
    const QString alphabet = QStringLiteral(" \t\n\r☐☑a-[x");
    QRandomGenerator random(7);
    for (int i = 0; i < 20000; ++i) {
        QString text;
        const int length = random.bounded(24);
        for (int j = 0; j < length; ++j) text += alphabet[random.bounded(alphabet.size())];
        QString expected = text;
        expected.replace(open, QStringLiteral("\\1- [ ] "));
        expected.replace(done, QStringLiteral("\\1- [x] "));
        ASSERT_EQ(EditorTextAdapter::toStored(text), expected) << text.toStdString();
    }
}

TEST(EditorTextAdapter, memoReturnsThePartnerOfTheLastText) {
    EditorTextAdapter adapter;
    const QString stored = QStringLiteral("- [ ] a");
    const QString editor = adapter.editor(stored);
    EXPECT_EQ(editor, QStringLiteral("☐ a"));
    // The editor text just produced goes back to exactly the stored text it came from, even
    // where a fresh conversion would normalise it.
    const QString odd = QStringLiteral("* [X] b");
    EXPECT_EQ(adapter.stored(adapter.editor(odd)), odd);
    EXPECT_EQ(adapter.stored(QStringLiteral("☑ b!")), QStringLiteral("- [x] b!"));
    EXPECT_EQ(adapter.editor(QStringLiteral("- [x] b!")), QStringLiteral("☑ b!"));
}

struct NormalizeCase {
    QList<EditorRange> in;
    qsizetype length;
    bool keepEmpty;
    QList<EditorRange> out;
};

class Normalize : public testing::TestWithParam<NormalizeCase> {};

TEST_P(Normalize, clampsDropsSortsAndMerges) {
    const auto& c = GetParam();
    EXPECT_EQ(EditorEditAccumulator::normalize(c.in, c.length, c.keepEmpty), c.out);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Normalize,
    testing::Values(NormalizeCase{{{-1, 3}, {2, -1}, {3, 2}}, 10, false, {{3, 2}}},
                    NormalizeCase{{{8, 5}}, 10, false, {{8, 2}}},
                    NormalizeCase{{{12, 5}}, 10, false, {}},
                    NormalizeCase{{{12, 5}}, 10, true, {{10, 0}}},
                    NormalizeCase{{{4, 0}}, 10, false, {}},
                    NormalizeCase{{{5, 2}, {0, 2}, {2, 1}}, 10, false, {{0, 3}, {5, 2}}},
                    NormalizeCase{{{0, 4}, {1, 1}, {4, 2}}, 10, false, {{0, 6}}},
                    NormalizeCase{{{3, 0}, {3, 2}}, 10, true, {{3, 2}}}));

TEST(EditorEditAccumulator, keepsItsRangesWhileComposing) {
    EditorEditAccumulator edits;
    edits.record({4, 1});
    edits.record({2, 0});
    EXPECT_TRUE(edits.drain(10, true).isEmpty());
    EXPECT_FALSE(edits.isEmpty());
    EXPECT_EQ(edits.drain(10, false), (QList<EditorRange>{{2, 0}, {4, 1}}));
    EXPECT_TRUE(edits.isEmpty());
}

}  // namespace
