#include "notes/TaskLine.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

}  // namespace

TEST(TaskLine, ParsesBothStylesAndRejectsNearMisses) {
    using S = TaskLine::Style;
    struct Case {
        const char* line;
        bool isTask;
        const char* indent = "";
        const char* text = "";
        bool done = false;
        S style = S::markdown;
    } cases[] = {
        {"- [ ] buy milk", true, "", "buy milk", false},
        {"* [x] done it", true, "", "done it", true},
        {"+ [X] shouty", true, "", "shouty", true},
        {"  \t- [ ]   padded  ", true, "  \t", "padded", false},
        {"-\t[ ]\ttabbed", true, "", "tabbed", false},
        {"* [ ]", true, "", "", false},
        {"- [ ] \t", true, "", "", false},
        {"- [ ] crlf\r", true, "", "crlf", false},
        {"- [ ]\r", true, "", "", false},
        {"- [ ] a 📅 2026-05-02", true, "", "a 📅 2026-05-02", false},
        {"-[ ] x", false},
        {"- [ ]x", false},
        {"- [] x", false},
        {"- [y] x", false},
        {"- [  ] x", false},
        {"1. [ ] x", false},
        {"x - [ ] x", false},
        {"- [ ] a\nb", false},
        {"", false},
        {"   ", false},
        {"☐ open", true, "", "open", false, S::glyph},
        {"\t☑  done  ", true, "\t", "done", true, S::glyph},
        {"☐", true, "", "", false, S::glyph},
        {"☐open\r", true, "", "open", false, S::glyph},
        {"a ☐ b", false},
        {"☒ crossed", false},
    };
    for (const auto& c : cases) {
        const auto task = TaskLine::parse(u(c.line));
        ASSERT_EQ(task.has_value(), c.isTask) << c.line;
        if (!task) continue;
        EXPECT_EQ(task->indent, u(c.indent)) << c.line;
        EXPECT_EQ(task->text, u(c.text)) << c.line;
        EXPECT_EQ(task->isDone, c.done) << c.line;
        EXPECT_EQ(task->style, c.style) << c.line;
    }
}

TEST(TaskLine, ListsTasksWithTheirLineIndexAndCountsProgress) {
    const QString body = u("Shopping\n- [ ] milk\nplain\n☑ eggs\r\n  * [x] bread\n-[ ] not one");
    const QList<TaskLine> tasks = TaskLine::all(body);
    ASSERT_EQ(tasks.size(), 3);
    EXPECT_EQ(tasks[0].lineIndex, 1);
    EXPECT_EQ(tasks[1].lineIndex, 3);
    EXPECT_EQ(tasks[1].text, u("eggs"));
    EXPECT_EQ(tasks[2].lineIndex, 4);
    EXPECT_EQ(TaskLine::progress(body), (TaskLine::Progress{2, 3}));
    EXPECT_EQ(TaskLine::progress(QString()), (TaskLine::Progress{0, 0}));
}

TEST(TaskLine, TogglesKeepBulletIndentAndCarriageReturn) {
    struct Case {
        const char* body;
        bool done;
        int index;
        const char* expected;
    } cases[] = {
        {"+ [X] a", false, 0, "+ [ ] a"},
        {"* [ ] a", true, 0, "* [x] a"},
        {"x\n\t- [ ] a\r\ny", true, 1, "x\n\t- [x] a\r\ny"},
        {"- [ ]\r", true, 0, "- [x]\r"},
        {"☐ a", true, 0, "☑ a"},
        {"  ☑ a\r", false, 0, "  ☐ a\r"},
        // No change: already in that state, out of range, or no task.
        {"- [x] a", true, 0, "- [x] a"},
        {"- [ ] a", false, 0, "- [ ] a"},
        {"- [ ] a", true, 1, "- [ ] a"},
        {"- [ ] a", true, -1, "- [ ] a"},
        {"plain\n- [ ] a", true, 0, "plain\n- [ ] a"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TaskLine::setDone(c.done, c.index, u(c.body)), u(c.expected)) << c.body << " @" << c.index;
}

TEST(TaskLine, SetsTextOfOneLine) {
    const QString body = u("a\n* [ ] call Ann tomorrow\r\n☐ b");
    EXPECT_EQ(TaskLine::setText(u("call Ann 📅 2026-05-02"), 1, false, body),
              u("a\n* [ ] call Ann 📅 2026-05-02\r\n☐ b"));
    EXPECT_EQ(TaskLine::setText(QString(), 2, true, body), u("a\n* [ ] call Ann tomorrow\r\n☑"));
    EXPECT_EQ(TaskLine::setText(u("x"), 0, false, body), body);
    EXPECT_EQ(TaskLine::setText(u("x"), 3, false, body), body);
}
