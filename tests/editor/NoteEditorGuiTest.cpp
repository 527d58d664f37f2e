#include "editor/ui/NoteEditor.h"
#include "support/Printers.h"
#include "support/Screenshot.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QInputMethodEvent>
#include <QTest>
#include <QTextBlock>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

const QString note = QStringLiteral(
    "# Shopping list\n"
    "Buy **fresh** bread and *good* cheese\n"
    "- [ ] milk from the `corner` shop\n"
    "- [x] eggs\n"
    "> a quote worth keeping\n"
    "~~old plan~~ see [the map](https://example.org/map)\n"
    "[receipt.pdf](vuro-file://F1) attached\n"
    "last line");


class Editor : public testing::Test {
protected:
    void SetUp() override {
        editor.resize(560, 360);
        editor.setNoteFontSize(14);
        editor.setStoredText(note);
        editor.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&editor));
    }
    void caretTo(int blockNumber, int column) {
        QTextCursor cursor(editor.document()->findBlockByNumber(blockNumber));
        cursor.setPosition(cursor.block().position() + column);
        editor.setTextCursor(cursor);
        QApplication::processEvents();
    }
    // x of a position within a block, as laid out now.
    qreal xAt(int blockNumber, int column) {
        const QTextBlock block = editor.document()->findBlockByNumber(blockNumber);
        QTextCursor cursor(block);
        cursor.setPosition(block.position() + column);
        return editor.cursorRect(cursor).left();
    }
    NoteEditor editor;
};

TEST_F(Editor, hidesMarksAwayFromTheCaretAndShowsThemOnItsLine) {
    caretTo(7, 0);  // the last line
    // "Buy **fresh**": with the marks hidden, "f" stands where the two stars would start.
    EXPECT_NEAR(xAt(1, 6), xAt(1, 4), 0.5);
    // Heading marks take no room either: the title starts at the left margin.
    EXPECT_NEAR(xAt(0, 2), xAt(0, 0), 0.5);
    test::screenshot(editor, QStringLiteral("editor-caret-away"));

    caretTo(1, 2);
    EXPECT_GT(xAt(1, 6) - xAt(1, 4), 8);  // the stars are back
    EXPECT_NEAR(xAt(0, 2), xAt(0, 0), 0.5);  // other lines stay hidden
    test::screenshot(editor, QStringLiteral("editor-caret-on-marks"));
}

TEST_F(Editor, storedTextCopyAndCaretStillSeeEveryCharacter) {
    EXPECT_EQ(editor.toPlainText().split(QLatin1Char('\n'))[2], QStringLiteral("☐ milk from the `corner` shop"));
    EXPECT_EQ(editor.storedText(), note);
    editor.selectAll();
    editor.copy();
    EXPECT_EQ(EditorTextAdapter::toStored(QApplication::clipboard()->text()), note);
    // The caret steps through hidden marks one character at a time.
    caretTo(7, 0);
    QTextCursor cursor(editor.document()->findBlockByNumber(1));
    cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, 5);
    EXPECT_EQ(cursor.positionInBlock(), 5);
}

TEST_F(Editor, typingStylesTheNewLineAndEmitsTheStoredText) {
    QString lastStored;
    QObject::connect(&editor, &NoteEditor::storedTextChanged, [&](const QString& stored) { lastStored = stored; });
    caretTo(7, 9);
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, QStringLiteral("now **bold**"));
    EXPECT_TRUE(lastStored.endsWith(QStringLiteral("last line\nnow **bold**")));
    QTest::keyClick(&editor, Qt::Key_Up);
    EXPECT_NEAR(xAt(8, 6), xAt(8, 4), 0.5);  // marks hidden once the caret left the line
}

TEST_F(Editor, nothingIsRestyledWhileAnInputMethodComposes) {
    caretTo(7, 9);
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, QStringLiteral("**ab**"));
    QTest::keyClick(&editor, Qt::Key_Up);
    const qreal hiddenX = xAt(8, 2);
    caretTo(8, 6);
    QInputMethodEvent composing(QStringLiteral("ka"), {});
    QApplication::sendEvent(&editor, &composing);
    EXPECT_FALSE(editor.coordinator().edits().isEmpty());  // the edit waits for the commit
    QInputMethodEvent commit;
    commit.setCommitString(QStringLiteral("か"));
    QApplication::sendEvent(&editor, &commit);
    EXPECT_TRUE(editor.coordinator().edits().isEmpty());
    EXPECT_TRUE(editor.storedText().endsWith(QStringLiteral("**ab**か")));
    QTest::keyClick(&editor, Qt::Key_Up);
    EXPECT_NEAR(xAt(8, 2), hiddenX, 0.5);
}

TEST_F(Editor, boxesTickOnClickAndTaskLinesToggle) {
    const QTextBlock line = editor.document()->findBlockByNumber(2);
    QTextCursor at(line);
    const QPoint box = editor.cursorRect(at).center() + QPoint(3, 0);
    QTest::mouseClick(editor.viewport(), Qt::LeftButton, {}, box);
    EXPECT_TRUE(editor.storedText().contains(QStringLiteral("- [x] milk from")));

    caretTo(7, 3);
    editor.toggleTaskLine();
    EXPECT_TRUE(editor.storedText().endsWith(QStringLiteral("- [ ] last line")));
    editor.toggleTaskLine();
    EXPECT_TRUE(editor.storedText().endsWith(QStringLiteral("\nlast line")));
}

TEST_F(Editor, commitRunsTheFilterOnChangedLinesOnly) {
    QStringList seen;
    editor.setCommitFilter([&](const QString& body, const QString& old) {
        seen.append(old);
        return QString(body).replace(QStringLiteral("tomorrow"), QStringLiteral("📅 2026-05-02"));
    });
    caretTo(7, 9);
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, QStringLiteral("- [ ] call Ann tomorrow"));
    EXPECT_EQ(seen.size(), 1);  // the Return left a changed line
    QTest::keyClick(&editor, Qt::Key_Up);
    EXPECT_TRUE(editor.storedText().endsWith(QStringLiteral("- [ ] call Ann 📅 2026-05-02"))) << editor.storedText().toStdString();
    QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);  // the rewrite is one undoable step, and stays undone
    EXPECT_TRUE(editor.storedText().endsWith(QStringLiteral("- [ ] call Ann tomorrow"))) << editor.storedText().toStdString();
    QTest::keyClick(&editor, Qt::Key_Up);
    EXPECT_TRUE(editor.storedText().endsWith(QStringLiteral("- [ ] call Ann tomorrow")));
}

TEST_F(Editor, fileTokensBecomeChipsThatKeepTheirText) {
    caretTo(0, 0);
    // The token's first character carries the chip's width; the rest take none.
    const qreal chip = xAt(6, 1) - xAt(6, 0);
    EXPECT_GT(chip, 60);
    EXPECT_NEAR(xAt(6, 29), xAt(6, 1), 0.5);
}

}  // namespace
