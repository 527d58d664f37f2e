#include "notes/TaskDue.h"
#include "notes/TaskLine.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace vuro;

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

const Calendar istanbul(QTimeZone("Europe/Istanbul"));

QDateTime at(int y, int m, int d, int h, int min) { return istanbul.at(QDate(y, m, d), QTime(h, min)); }

}  // namespace

TEST(TaskDue, ReadsTheFirstMarkAndTidiesWhatIsLeft) {
    struct Case {
        const char* text;
        bool found;
        TaskDue due;
        const char* rest;
    } cases[] = {
        {"call Ann 📅 2026-05-02", true, {2026, 5, 2}, "call Ann"},
        {"📅2026-3-7T9.05 water plants", true, {2026, 3, 7, 9, 5}, "water plants"},
        {"pay  rent 📅\t2026-12-31 18:30, now", true, {2026, 12, 31, 18, 30}, "pay rent , now"},
        {"a 📅 2026-01-02 b 📅 2027-01-01", true, {2026, 1, 2}, "a b 📅 2027-01-01"},
        {"x 📅 2026-02-30", true, {2026, 2, 30}, "x"},
        {"📅 2026-05-02 7:5", true, {2026, 5, 2}, "7:5"},
        {"— 📅 2026-05-02 ；", true, {2026, 5, 2}, ""},
        {"📅 26-05-02", false, {}, ""},
        {"no mark 2026-05-02", false, {}, ""},
    };
    for (const auto& c : cases) {
        const auto parsed = TaskDue::parse(u(c.text));
        ASSERT_EQ(parsed.has_value(), c.found) << c.text;
        if (!parsed) continue;
        EXPECT_EQ(parsed->due, c.due) << c.text;
        EXPECT_EQ(parsed->text, u(c.rest)) << c.text;
    }
}

TEST(TaskDue, WritesMarksThatReadBack) {
    EXPECT_EQ(TaskDue(2026, 5, 2).mark(), u("📅 2026-05-02"));
    EXPECT_EQ(TaskDue(2026, 5, 2, 9, std::nullopt).mark(), u("📅 2026-05-02 09:00"));
    EXPECT_EQ(TaskDue(2026, 5, 2, 14, 5).appending(u("call Ann")), u("call Ann 📅 2026-05-02 14:05"));
    EXPECT_EQ(TaskDue(2026, 5, 2).appending(QString()), u("📅 2026-05-02"));
    for (const TaskDue& due : {TaskDue(2026, 1, 9), TaskDue(999, 12, 31, 23, 59)})
        EXPECT_EQ(TaskDue::parse(due.appending(u("t")))->due, due);
}

TEST(TaskDue, OrdersAllDayBeforeTimedTasksOfTheSameDay) {
    std::vector<TaskDue> dues{{2026, 5, 2, 9, 0}, {2026, 5, 1, 23, 0}, {2026, 5, 2}, {2026, 5, 2, 0, 0},
                              {2025, 12, 31}, {2026, 5, 2, 9, 30}};
    std::sort(dues.begin(), dues.end());
    const std::vector<TaskDue> expected{{2025, 12, 31}, {2026, 5, 1, 23, 0}, {2026, 5, 2}, {2026, 5, 2, 0, 0},
                                        {2026, 5, 2, 9, 0}, {2026, 5, 2, 9, 30}};
    EXPECT_EQ(dues, expected);
    EXPECT_FALSE(TaskDue(2026, 5, 2, 9, std::nullopt) < TaskDue(2026, 5, 2, 9, 0));
}

TEST(TaskDue, CountsCalendarDaysAndMakesInstants) {
    const QDateTime lateEvening = at(2026, 5, 20, 23, 59);
    EXPECT_EQ(TaskDue(2026, 5, 21).daysFromToday(lateEvening, istanbul), 1);
    EXPECT_EQ(TaskDue(2026, 5, 20).daysFromToday(lateEvening, istanbul), 0);
    EXPECT_EQ(TaskDue(2025, 5, 20).daysFromToday(lateEvening, istanbul), -365);
    EXPECT_EQ(TaskDue(2026, 2, 30).daysFromToday(lateEvening, istanbul), std::nullopt);
    // The same instant is already the 21st in Istanbul but still the 20th in New York.
    const Calendar newYork(QTimeZone("America/New_York"));
    EXPECT_EQ(TaskDue(2026, 5, 21).daysFromToday(lateEvening, newYork), 1);

    EXPECT_EQ(TaskDue(2026, 5, 2, 14, 30).date(istanbul), QDateTime(QDate(2026, 5, 2), QTime(11, 30), Qt::UTC));
    EXPECT_EQ(TaskDue(2026, 5, 2).date(istanbul), QDateTime(QDate(2026, 5, 1), QTime(21, 0), Qt::UTC));
    EXPECT_FALSE(TaskDue(2026, 2, 30).date(istanbul).isValid());
    EXPECT_FALSE(TaskDue(2026, 2, 3, 25, 0).date(istanbul).isValid());

    EXPECT_EQ(TaskDue(at(2026, 5, 2, 14, 30), true, istanbul), TaskDue(2026, 5, 2, 14, 30));
    EXPECT_EQ(TaskDue(at(2026, 5, 2, 14, 30), false, istanbul), TaskDue(2026, 5, 2));
}

TEST(TaskDue, LabelsRelativeDaysWeekdaysAndDates) {
    const QDateTime now = at(2026, 5, 20, 10, 0);  // a Wednesday
    const QLocale english(QLocale::English, QLocale::UnitedKingdom);
    const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    struct Case {
        TaskDue due;
        const QLocale& locale;
        const char* label;
    } cases[] = {
        {{2026, 5, 19}, english, "Yesterday"},
        {{2026, 5, 20}, english, "Today"},
        {{2026, 5, 21, 9, 5}, english, "Tomorrow 09:05"},
        {{2026, 5, 22}, english, "Friday"},
        {{2026, 5, 26}, english, "Tuesday"},
        {{2026, 5, 27}, english, "27 May"},
        {{2026, 5, 18}, english, "18 May"},
        {{2027, 1, 3}, english, "3 Jan 2027"},
        {{2026, 5, 22}, turkish, "Cuma"},
        {{2026, 6, 1}, turkish, "1 Haz"},
        {{2026, 2, 30, 8, 0}, english, "2026-02-30 08:00"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.due.label(now, istanbul, c.locale), u(c.label)) << c.label;
    const QLocale american(QLocale::English, QLocale::UnitedStates);
    EXPECT_EQ(TaskDue(2026, 5, 27).label(now, istanbul, american), u("May 27"));
}

TEST(TaskDue, TidiesBlanksAndStrayPunctuation) {
    struct Case {
        const char* text;
        const char* tidied;
    } cases[] = {
        {"call  Ann \t now", "call Ann now"}, {" , call Ann ;", "call Ann"}, {"– a —", "a"},
        {"，、a：；", "a"},                   {"a,b", "a,b"},               {"  ", ""},
        {"a !", "a !"},
    };
    for (const auto& c : cases) EXPECT_EQ(TaskDue::tidy(u(c.text)), u(c.tidied)) << c.text;
}

TEST(TaskDue, MaterialisesDatesOnlyInChangedOpenTaskLines) {
    const QDateTime now = at(2026, 5, 1, 9, 0);  // a Friday
    struct Case {
        const char* body;
        const char* old;  // nullptr: no earlier body
        const char* expected;
    } cases[] = {
        {"- [ ] call Ann tomorrow", nullptr, "- [ ] call Ann 📅 2026-05-02"},
        {"- [ ] call Ann tomorrow", "", "- [ ] call Ann 📅 2026-05-02"},
        {"- [ ] tomorrow", nullptr, "- [ ] tomorrow 📅 2026-05-02"},
        {"  * [ ] yarın sabah koş\r\nnot", nullptr, "  * [ ] koş 📅 2026-05-02 09:00\r\nnot"},
        {"☐ pay rent on monday", nullptr, "☐ pay rent 📅 2026-05-04"},
        {"- [x] call Ann tomorrow", nullptr, "- [x] call Ann tomorrow"},
        {"- [ ] call Ann tomorrow 📅 2026-06-01", nullptr, "- [ ] call Ann tomorrow 📅 2026-06-01"},
        {"call Ann tomorrow", nullptr, "call Ann tomorrow"},
        {"- [ ] read page 5", nullptr, "- [ ] read page 5"},
        // The first line was already there with its phrase: only the new second line changes.
        {"- [ ] water plants tomorrow\n- [ ] ask Bo on friday", "- [ ] water plants tomorrow",
         "- [ ] water plants tomorrow\n- [ ] ask Bo 📅 2026-05-08"},
    };
    for (const auto& c : cases) {
        const std::optional<QString> old = c.old ? std::optional(u(c.old)) : std::nullopt;
        EXPECT_EQ(TaskLine::applyDueDates(u(c.body), old, now, istanbul), u(c.expected)) << c.body;
    }
}
