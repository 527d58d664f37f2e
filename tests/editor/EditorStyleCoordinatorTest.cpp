#include "editor/EditorStyleCoordinator.h"
#include "editor/EditorTextView.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;

namespace {

// A text view over a string that records what each pass styled.
class StringView : public EditorTextView {
public:
    QString text;
    qsizetype caret = 0;
    bool composing = false;
    int bindingWrites = 0;
    QList<bool> passes;  // full or not, one per pass
    QList<EditorRange> styled;
    QList<EditorStyling> stylings;

    qsizetype textLength() const override { return text.size(); }
    EditorRange lineRange(qsizetype position) const override {
        const qsizetype start = position == 0 ? 0 : text.lastIndexOf(QLatin1Char('\n'), position - 1) + 1;
        const qsizetype newline = text.indexOf(QLatin1Char('\n'), position);
        const qsizetype end = newline < 0 ? text.size() : newline + 1;
        return {start, end - start};
    }
    QString textIn(const EditorRange& range) const override { return text.mid(range.location, range.length); }
    qsizetype selectionStart() const override { return caret; }
    bool hasMarkedText() const override { return composing; }
    void writeBinding() override { ++bindingWrites; }
    void beginStyling(bool full) override { passes.append(full); }
    void styleLines(const EditorRange& range, const EditorStyling& styling) override {
        styled.append(range);
        stylings.append(styling);
    }
    void endStyling(bool) override {}

    // The first positions of the lines covered by the last pass.
    QList<qsizetype> styledLineStarts() const {
        QList<qsizetype> starts;
        for (const auto& range : styled)
            for (qsizetype at = range.location; at < range.end() || (range.isEmpty() && at == range.location);) {
                const EditorRange line = lineRange(at);
                starts.append(line.location);
                if (line.isEmpty()) break;
                at = line.end();
            }
        return starts;
    }
    void clear() {
        passes.clear();
        styled.clear();
        stylings.clear();
    }
    // Replaces [at, at+removed) by inserted and reports it like a text store does.
    void edit(EditorStyleCoordinator& coordinator, qsizetype at, qsizetype removed, const QString& inserted) {
        text.replace(at, removed, inserted);
        coordinator.recordEdit({at, inserted.size()});
        caret = at + inserted.size();
        coordinator.textDidChange();
    }
};

class Coordinator : public testing::Test {
protected:
    void SetUp() override {
        view.text = QStringLiteral("**x**\n**y**\nplain line\n# Head\n");
        coordinator.setStyleInputs(QStringLiteral("14|ink|ltr|md|reveal"));
        coordinator.applyFull();
        view.clear();
    }
    StringView view;
    EditorStyleCoordinator coordinator{view};
};

TEST_F(Coordinator, caretMoveToAnotherLineRestylesExactlyTheOldAndTheNewLine) {
    view.caret = 8;  // second line
    coordinator.selectionDidChange();
    EXPECT_EQ(view.passes, (QList<bool>{false}));
    EXPECT_EQ(view.styledLineStarts(), (QList<qsizetype>{0, 6}));
    // Now the first line's marks are hidden and the second line's shown.
    QString hidden;
    for (const auto& styling : view.stylings)
        for (const auto& mark : styling.marks) hidden += mark.hidden ? QStringLiteral("H") : QStringLiteral("v");
    EXPECT_EQ(hidden, QStringLiteral("HHvv"));

    view.clear();
    view.caret = 9;  // same line
    coordinator.selectionDidChange();
    EXPECT_TRUE(view.passes.isEmpty());

    view.caret = 25;  // a line far away: two separate ranges
    coordinator.selectionDidChange();
    EXPECT_EQ(view.styledLineStarts(), (QList<qsizetype>{6, 23}));
}

TEST_F(Coordinator, withRevealOffACaretMoveCostsNothing) {
    coordinator.revealsMarks = false;
    view.caret = 8;
    coordinator.selectionDidChange();
    EXPECT_TRUE(view.passes.isEmpty());
    EXPECT_EQ(coordinator.lastLine(), (EditorRange{6, 6}));
}

TEST_F(Coordinator, anEditRestylesOnlyItsLines) {
    view.edit(coordinator, 14, 0, QStringLiteral("X"));  // inside "plain line"
    EXPECT_EQ(view.bindingWrites, 1);
    EXPECT_EQ(view.styledLineStarts(), (QList<qsizetype>{12}));

    // A new line end splits a line: both halves are restyled.
    view.clear();
    view.edit(coordinator, 14, 0, QStringLiteral("\n"));
    EXPECT_EQ(view.styledLineStarts(), (QList<qsizetype>{12, 15}));

    // A deletion reports an empty range; its line still gets its pass.
    view.clear();
    view.edit(coordinator, 2, 1, QString());
    EXPECT_EQ(view.styledLineStarts(), (QList<qsizetype>{0}));
    EXPECT_TRUE(coordinator.edits().isEmpty());
}

TEST_F(Coordinator, nothingIsStyledWhileAnInputMethodComposes) {
    view.composing = true;
    view.edit(coordinator, 14, 0, QStringLiteral("k"));
    EXPECT_EQ(view.bindingWrites, 1);  // the text is kept, only the styling waits
    EXPECT_TRUE(view.passes.isEmpty());
    EXPECT_FALSE(coordinator.edits().isEmpty());
    coordinator.selectionDidChange();
    coordinator.applyPartial({{0, 5}}, true);
    EXPECT_TRUE(view.passes.isEmpty());

    view.composing = false;  // the commit
    view.edit(coordinator, 15, 0, QStringLiteral("a"));
    EXPECT_EQ(view.styledLineStarts(), (QList<qsizetype>{12}));
}

TEST_F(Coordinator, aChangedStyleInputAsksForOneFullPass) {
    coordinator.setStyleInputs(QStringLiteral("14|ink|ltr|md|reveal"));
    EXPECT_FALSE(coordinator.needsFullPass());
    coordinator.setStyleInputs(QStringLiteral("16|ink|ltr|md|reveal"));
    EXPECT_TRUE(coordinator.needsFullPass());
    view.edit(coordinator, 0, 0, QStringLiteral("a"));
    EXPECT_EQ(view.passes, (QList<bool>{true}));
    EXPECT_EQ(view.styled, (QList<EditorRange>{{0, view.text.size()}}));
    EXPECT_FALSE(coordinator.needsFullPass());
}

TEST_F(Coordinator, markdownOffLaysNoStyles) {
    coordinator.markdownEnabled = false;
    view.edit(coordinator, 0, 0, QStringLiteral("a"));
    ASSERT_EQ(view.stylings.size(), 1);
    EXPECT_TRUE(view.stylings[0].spans.isEmpty());
    EXPECT_TRUE(view.stylings[0].hidden.isEmpty());
}

TEST_F(Coordinator, staleRangesAreClampedIntoTheText) {
    coordinator.applyPartial({{500, 10}, {-3, 2}}, false);
    EXPECT_EQ(view.styled, (QList<EditorRange>{{view.text.size(), 0}}));
}

}  // namespace
