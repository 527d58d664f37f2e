#include "notes/TaskBoard.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;
using TaskBoard::DueGroup;

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

const Calendar istanbul(QTimeZone("Europe/Istanbul"));
const QDateTime now = istanbul.at(QDate(2026, 5, 20), QTime(10, 0));

Note note(const char* id, const char* title, const char* body, bool archived = false) {
    Note n;
    n.id = u(id);
    n.title = u(title);
    n.body = u(body);
    n.archived = archived;
    return n;
}

// "group: note/text, …" per section, for compact comparison.
QStringList describe(const QList<TaskBoard::DueSection>& sections) {
    QStringList out;
    for (const auto& section : sections) {
        QStringList entries;
        for (const auto& entry : section.entries) entries << entry.note.id + u'/' + entry.task.text.section(u' ', 0, 0);
        out << QString::number(int(section.group)) + QStringLiteral(": ") + entries.join(QStringLiteral(", "));
    }
    return out;
}

}  // namespace

TEST(TaskBoard, DecidesOverdueByMomentForTimedTasksAndByDayForDateOnly) {
    struct Case {
        const char* line;
        bool overdue;
    } cases[] = {
        {"- [ ] a 📅 2026-05-20 09:59", true},  {"- [ ] a 📅 2026-05-20 10:01", false},
        {"- [ ] a 📅 2026-05-20", false},       {"- [ ] a 📅 2026-05-19", true},
        {"- [ ] a 📅 2026-05-19 23:00", true},  {"- [x] a 📅 2026-05-01", false},
        {"- [ ] a", false},                     {"- [ ] a 📅 2026-02-30", false},
        {"- [ ] a 📅 2026-02-30 09:00", false}, {"☐ a 📅 2025-12-31", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TaskBoard::isOverdue(*TaskLine::parse(u(c.line)), now, istanbul), c.overdue) << c.line;
}

TEST(TaskBoard, SortsTasksIntoDueSections) {
    const QList<Note> notes{
        note("A", "Home",
             "- [ ] later 📅 2026-06-30\n- [ ] passed 📅 2026-05-20 08:00\n- [ ] today 📅 2026-05-20\n"
             "- [ ] undated\n- [x] finished 📅 2026-05-01\n- [ ] week 📅 2026-05-27\n- [ ] tomorrow 📅 2026-05-21"),
        note("B", "Work",
             "- [ ] early 📅 2026-05-22 09:00\n- [ ] allday 📅 2026-05-22\n- [ ] yesterday 📅 2026-05-19\n"
             "- [ ] eight 📅 2026-05-28\n- [ ] nodate"),
        note("C", "Old", "- [ ] archived 📅 2026-05-20", true),
    };
    EXPECT_EQ(describe(TaskBoard::dueSections(notes, QString(), now, istanbul)),
              (QStringList{QStringLiteral("0: B/yesterday, A/passed"), QStringLiteral("1: A/today"), QStringLiteral("2: A/tomorrow"),
                           QStringLiteral("3: B/allday, B/early, A/week"), QStringLiteral("4: B/eight, A/later"), QStringLiteral("5: A/undated, B/nodate")}));
    const auto withDone = TaskBoard::dueSections(notes, QString(), now, istanbul, true);
    ASSERT_EQ(withDone.last().group, DueGroup::done);
    EXPECT_EQ(withDone.last().entries.size(), 1);
}

TEST(TaskBoard, MatchesQueriesFoldedOnNoteTitleOrTaskText) {
    const QList<Note> notes{
        note("A", "İstanbul trip", "- [ ] book hotel\n- [ ] pack"),
        note("B", "Misc", "- [ ] ISPARTA call\n- [ ] Çiçek al\n- [ ] other"),
    };
    struct Case {
        const char* query;
        QStringList expected;
    } cases[] = {
        {"istanbul", {QStringLiteral("5: A/book, A/pack")}},
        {"ISTANBUL", {QStringLiteral("5: A/book, A/pack")}},
        {"ıstanbul", {QStringLiteral("5: A/book, A/pack")}},
        {"isparta", {QStringLiteral("5: B/ISPARTA")}},
        {"cicek", {QStringLiteral("5: B/Çiçek")}},
        {"  ", {QStringLiteral("5: A/book, A/pack, B/ISPARTA, B/Çiçek, B/other")}},
        {"nothing", {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(describe(TaskBoard::dueSections(notes, u(c.query), now, istanbul)), c.expected) << c.query;
}

TEST(TaskBoard, GroupsByNoteWithFinishedNotesLast) {
    const QList<Note> notes{
        note("A", "Done", "- [x] one\n- [x] two"),
        note("B", "Half", "- [x] one\n- [ ] two\nplain"),
        note("C", "None", "just text"),
        note("D", "Open", "☐ three"),
        note("E", "Gone", "- [ ] four", true),
    };
    const auto open = TaskBoard::groups(notes, QString());
    ASSERT_EQ(open.size(), 2);
    EXPECT_EQ(open[0].note.id, QStringLiteral("B"));
    EXPECT_EQ(open[0].tasks.size(), 1);
    EXPECT_EQ(open[0].done, 1);
    EXPECT_EQ(open[0].total, 2);
    EXPECT_EQ(open[1].note.id, QStringLiteral("D"));

    const auto all = TaskBoard::groups(notes, QString(), true);
    QStringList order;
    for (const auto& group : all) order << group.note.id;
    EXPECT_EQ(order, (QStringList{QStringLiteral("B"), QStringLiteral("D"), QStringLiteral("A")}));

    const auto found = TaskBoard::groups(notes, QStringLiteral("TWO"), true);
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].note.id, QStringLiteral("B"));
    EXPECT_EQ(found[0].tasks.size(), 1);
    EXPECT_EQ(found[0].total, 2);
}
