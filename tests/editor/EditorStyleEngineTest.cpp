#include "editor/EditorStyleEngine.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;

namespace {

// The text covered by the spans of one role, in order, and the hidden characters as text.
QStringList covered(const QString& text, const EditorStyling& styling, EditorSpanRole role) {
    QStringList out;
    for (const auto& span : styling.spans)
        if (span.role == role) out.append(text.mid(span.range.location, span.range.length));
    return out;
}

QString hiddenText(const QString& text, const EditorStyling& styling) {
    QString out;
    for (const auto& range : styling.hidden) out += text.mid(range.location, range.length);
    return out;
}

QString visibleMarks(const QString& text, const EditorStyling& styling) {
    QString out;
    for (const auto& mark : styling.marks)
        if (!mark.hidden) out += text.mid(mark.range.location, mark.range.length);
    return out;
}

// Styles a one-line text with the caret away from it (on a line that does not exist).
EditorStyling away(const QString& text) { return EditorStyleEngine::style(text, 0, {text.size() + 1, 0}, text.size() + 1, true); }

struct InlineCase {
    const char* text;
    EditorSpanRole role;
    QStringList styled;
    const char* hidden;
};

class InlinePatterns : public testing::TestWithParam<InlineCase> {};

TEST_P(InlinePatterns, styleAndHideMarksAwayFromTheCaret) {
    const auto& c = GetParam();
    const QString text = QString::fromUtf8(c.text);
    const EditorStyling styling = away(text);
    EXPECT_EQ(covered(text, styling, c.role), c.styled) << c.text;
    EXPECT_EQ(hiddenText(text, styling), QString::fromUtf8(c.hidden)) << c.text;
}

INSTANTIATE_TEST_SUITE_P(
    Table, InlinePatterns,
    testing::Values(
        InlineCase{"a **bold** b", EditorSpanRole::bold, {"**bold**"}, "****"},
        InlineCase{"__strong__", EditorSpanRole::bold, {"__strong__"}, "____"},
        InlineCase{"**bold without end", EditorSpanRole::bold, {}, ""},
        InlineCase{"** not bold**", EditorSpanRole::bold, {}, ""},
        InlineCase{"2 * 3 * 4", EditorSpanRole::italic, {}, ""},
        InlineCase{"snake_case_name", EditorSpanRole::italic, {"_case_"}, "__"},
        InlineCase{"an *em* word", EditorSpanRole::italic, {"*em*"}, "**"},
        InlineCase{"use `x = 1` here", EditorSpanRole::code, {"`x = 1`"}, "``"},
        InlineCase{"~~gone~~ and ~~ no~~", EditorSpanRole::strikethrough, {"~~gone~~"}, "~~~~"},
        InlineCase{"see [the site](https://example.org) now", EditorSpanRole::link, {"the site"},
                   "[](https://example.org)"},
        InlineCase{"## Title", EditorSpanRole::heading, {"## Title"}, "## "},
        InlineCase{"#NoHeading", EditorSpanRole::heading, {}, ""},
        InlineCase{"> quoted words", EditorSpanRole::quote, {"quoted words"}, "> "},
        InlineCase{"  - item", EditorSpanRole::bullet, {"-"}, ""},
        InlineCase{"plain prose, nothing here", EditorSpanRole::bold, {}, ""}));

TEST(EditorStyleEngine, headingLevelFollowsTheHashes) {
    for (int level = 1; level <= 6; ++level) {
        const QString text = QString(level, QLatin1Char('#')) + QStringLiteral(" T");
        const auto styling = away(text);
        ASSERT_EQ(styling.spans.size(), 1) << level;
        EXPECT_EQ(styling.spans[0].level, level);
    }
    EXPECT_TRUE(away(QStringLiteral("####### seven")).spans.isEmpty());
}

TEST(EditorStyleEngine, linkTargetOnlyForAllowedSchemes) {
    const auto urlOf = [](const char* text) {
        const auto styling = away(QString::fromUtf8(text));
        for (const auto& span : styling.spans)
            if (span.role == EditorSpanRole::link) return span.url;
        return QStringLiteral("<no link>");
    };
    EXPECT_EQ(urlOf("[a](https://x.org/p)"), QStringLiteral("https://x.org/p"));
    EXPECT_EQ(urlOf("[a](mailto:ann@x.org)"), QStringLiteral("mailto:ann@x.org"));
    EXPECT_EQ(urlOf("[a](javascript:alert(1))"), QString());
    EXPECT_EQ(urlOf("[a](file:///etc/passwd)"), QString());
}

TEST(EditorStyleEngine, marksNearTheCaretStayVisible) {
    const QString text = QStringLiteral("**x**\n**y**\n");
    const EditorRange firstLine{0, 6};
    // Caret on the first line: its marks show, the second line's are hidden.
    const auto onFirst = EditorStyleEngine::style(text, 0, firstLine, 2, true);
    EXPECT_EQ(visibleMarks(text, onFirst), QStringLiteral("****"));
    EXPECT_EQ(hiddenText(text, onFirst), QStringLiteral("****"));
    EXPECT_EQ(onFirst.hidden.front().location, 6);
    // With reveal off every mark hides, caret or not.
    const auto off = EditorStyleEngine::style(text, 0, firstLine, 2, false);
    EXPECT_EQ(hiddenText(text, off), QStringLiteral("********"));
    // A caret right after a closing mark counts as touching it even on an empty caret line.
    const auto touching = EditorStyleEngine::style(QStringLiteral("a **b**"), 0, {100, 0}, 7, true);
    EXPECT_EQ(visibleMarks(QStringLiteral("a **b**"), touching), QStringLiteral("**"));
}

TEST(EditorStyleEngine, hiddenMarksCarryTheirKind) {
    const QString text = QStringLiteral("# T **b**");
    const auto styling = away(text);
    ASSERT_EQ(styling.marks.size(), 3);
    EXPECT_EQ(styling.marks[0].kind, EditorMarkerKind::block);
    EXPECT_EQ(styling.marks[1].kind, EditorMarkerKind::inlineMark);
    EXPECT_TRUE(std::all_of(styling.marks.cbegin(), styling.marks.cend(), [](const auto& m) { return m.hidden; }));
}

TEST(EditorStyleEngine, positionsAreOffsetByTheBase) {
    const auto styling = EditorStyleEngine::style(QStringLiteral("**b**"), 1000, {0, 0}, 0, true);
    ASSERT_EQ(styling.spans.size(), 1);
    EXPECT_EQ(styling.spans[0].range, (EditorRange{1000, 5}));
    EXPECT_EQ(styling.hidden, (QList<EditorRange>{{1000, 2}, {1003, 2}}));
}

struct TokenCase {
    const char* text;
    QStringList tokens;
};

class Tokens : public testing::TestWithParam<TokenCase> {};

TEST_P(Tokens, areEmbedsWithAllButTheFirstCharacterHidden) {
    const QString text = QString::fromUtf8(GetParam().text);
    const auto styling = away(text);
    EXPECT_EQ(covered(text, styling, EditorSpanRole::embed), GetParam().tokens);
    QStringList heads, tails;
    for (const auto& token : GetParam().tokens) heads.append(token.left(1));
    EXPECT_EQ(covered(text, styling, EditorSpanRole::embedHead), heads);
    // Every character of a token but the first is hidden, whatever the caret does.
    const auto revealed = EditorStyleEngine::style(text, 0, {0, text.size()}, 0, true);
    for (const auto& span : revealed.spans) {
        if (span.role != EditorSpanRole::embed) continue;
        const EditorRange tail{span.range.location + 1, span.range.length - 1};
        const bool covered = std::any_of(revealed.hidden.cbegin(), revealed.hidden.cend(), [&](const EditorRange& h) {
            return h.location <= tail.location && h.end() >= tail.end();
        });
        EXPECT_TRUE(covered) << GetParam().text;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, Tokens,
    testing::Values(TokenCase{"see ![image](vuro-img://AB-12) here", {"![image](vuro-img://AB-12)"}},
                    TokenCase{"![image|240.5](vuro-img://X)", {"![image|240.5](vuro-img://X)"}},
                    TokenCase{"[report.pdf](vuro-file://F1) and [](vuro-file://F2)",
                              {"[report.pdf](vuro-file://F1)", "[](vuro-file://F2)"}},
                    TokenCase{"![image](other://X) stays text", {}},
                    TokenCase{"[x](vuro-file://AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA)", {}}));

}  // namespace
