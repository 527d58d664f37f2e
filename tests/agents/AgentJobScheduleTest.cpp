#include "agents/AgentJob.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace vuro {
namespace {

JobCalendar calendarOf(const char* zone) {
    JobCalendar calendar;
    calendar.zone = QTimeZone(QByteArray(zone));
    return calendar;
}

const JobCalendar berlin = calendarOf("Europe/Berlin");      // clocks jump on 29 March and 25 October 2026
const JobCalendar istanbul = calendarOf("Europe/Istanbul");  // no daylight saving

// A wall-clock time in a calendar's zone.
QDateTime local(const JobCalendar& calendar, const char* text) {
    QDateTime naive = QDateTime::fromString(QLatin1String(text), Qt::ISODate);
    return QDateTime(naive.date(), naive.time(), calendar.zone);
}

QDateTime utc(const char* text) { return QDateTime::fromString(QLatin1String(text), Qt::ISODate); }

AgentJob repeating(Recurrence recurrence, QDateTime createdAt) {
    AgentJob job;
    job.trigger = {AgentJob::Trigger::Repeating{std::move(recurrence)}};
    job.createdAt = std::move(createdAt);
    return job;
}

AgentJob once(QDateTime date, QDateTime createdAt) {
    AgentJob job;
    job.trigger = {AgentJob::Trigger::Once{std::move(date)}};
    job.createdAt = std::move(createdAt);
    return job;
}

TEST(AgentJobScheduleTest, SanityOfTheZones) {
    ASSERT_TRUE(berlin.zone.isValid());
    ASSERT_TRUE(istanbul.zone.isValid());
    EXPECT_EQ(berlin.zone.offsetFromUtc(utc("2026-03-29T00:59:59Z")), 3600);
    EXPECT_EQ(berlin.zone.offsetFromUtc(utc("2026-03-29T01:00:00Z")), 7200);
    EXPECT_EQ(istanbul.zone.offsetFromUtc(utc("2026-03-29T01:00:00Z")), 10800);
}

TEST(AgentJobScheduleTest, AOneTimeJobIsDueForADayAfterItsDate) {
    for (const JobCalendar& calendar : {berlin, istanbul}) {
        const QDateTime now = local(calendar, "2026-03-29T12:00:00");
        const QDateTime created = now.addDays(-3);
        const AgentJob recent = once(now.addSecs(-23 * 3600), created);
        EXPECT_EQ(recent.nextRun(now, calendar), now.addSecs(-23 * 3600));
        EXPECT_EQ(AgentJob::dueJobs({recent}, now, calendar).size(), 1);
        EXPECT_EQ(once(now.addSecs(-86400), created).nextRun(now, calendar), now.addSecs(-86400)) << "a day exactly";
        EXPECT_EQ(once(now.addSecs(-25 * 3600), created).nextRun(now, calendar), std::nullopt);
        EXPECT_EQ(once(now.addSecs(3600), created).nextRun(now, calendar), now.addSecs(3600));
        EXPECT_TRUE(AgentJob::dueJobs({once(now.addSecs(3600), created)}, now, calendar).isEmpty());
    }
}

TEST(AgentJobScheduleTest, OneTimeJobsRetireButRepeatingOnesGoOn) {
    const QDateTime now = local(berlin, "2026-05-04T12:00:00");
    AgentJob ran = once(now.addSecs(-600), now.addDays(-1));
    ran.lastRun = now.addSecs(-500);
    EXPECT_EQ(ran.nextRun(now, berlin), std::nullopt);
    AgentJob missed = once(now.addSecs(-600), now.addDays(-1));
    missed.lastStatus = AgentJob::Status::missed;
    EXPECT_EQ(missed.nextRun(now, berlin), std::nullopt);
    AgentJob failed = once(now.addSecs(-600), now.addDays(-1));
    failed.lastStatus = AgentJob::Status::failed;
    EXPECT_EQ(failed.nextRun(now, berlin), now.addSecs(-600)) << "only missed retires an unrun job";

    AgentJob immediate;
    immediate.createdAt = now.addSecs(-5);
    EXPECT_EQ(immediate.nextRun(now, berlin), now.addSecs(-5));
    immediate.lastRun = now;
    EXPECT_EQ(immediate.nextRun(now, berlin), std::nullopt);

    AgentJob daily = repeating({Recurrence::Daily{9, 0}}, now.addDays(-10));
    daily.lastStatus = AgentJob::Status::missed;
    daily.lastRun = local(berlin, "2026-05-03T09:00:00");
    EXPECT_EQ(daily.nextRun(now, berlin), local(berlin, "2026-05-04T09:00:00"));
    daily.enabled = false;
    EXPECT_EQ(daily.nextRun(now, berlin), std::nullopt);
}

TEST(AgentJobScheduleTest, WeeklySearchesStrictlyAfterTheLastRun) {
    // Monday 23 March 09:00 is winter time in Berlin, Monday 30 March 09:00 summer time.
    for (const JobCalendar& calendar : {berlin, istanbul}) {
        AgentJob job = repeating({Recurrence::Weekly{2, 9, 0}}, local(calendar, "2026-03-01T10:00:00"));
        job.lastRun = local(calendar, "2026-03-23T09:00:00");
        const QDateTime now = local(calendar, "2026-03-30T09:00:00");
        EXPECT_EQ(job.nextRun(now, calendar), now);
        EXPECT_EQ(AgentJob::dueJobs({job}, now, calendar).size(), 1);
        EXPECT_EQ(AgentJob::dueJobs({job}, now.addMSecs(-1), calendar).size(), 0);
        job.lastRun = now;
        EXPECT_EQ(job.nextRun(now, calendar), local(calendar, "2026-04-06T09:00:00"));
    }
    const Recurrence saturday{Recurrence::Weekly{7, 18, 45}};
    EXPECT_EQ(saturday.next(local(berlin, "2026-03-25T00:00:00"), berlin), local(berlin, "2026-03-28T18:45:00"));
    const Recurrence sunday{Recurrence::Weekly{1, 0, 0}};
    EXPECT_EQ(sunday.next(local(istanbul, "2026-03-29T00:00:00"), istanbul), local(istanbul, "2026-04-05T00:00:00"));
}

TEST(AgentJobScheduleTest, EveryHoursCountsElapsedTime) {
    const QDateTime created = utc("2026-03-29T00:30:00Z");  // 01:30 in Berlin, half an hour before the jump
    for (int count : {0, -3, 1}) {
        const AgentJob job = repeating({Recurrence::EveryHours{count}}, created);
        EXPECT_EQ(job.nextRun(created.addSecs(60), berlin), created.addSecs(3600)) << count;
        EXPECT_EQ(job.nextRun(created.addSecs(60), berlin)->toTimeZone(berlin.zone).time(), QTime(3, 30))
            << "the clock face jumps, the period doesn't";
    }
    EXPECT_EQ(Recurrence{Recurrence::EveryHours{5}}.next(created, istanbul), created.addSecs(5 * 3600));
}

TEST(AgentJobScheduleTest, WeekdaysSkipTheWeekend) {
    const Recurrence weekdays{Recurrence::Weekdays{9, 0}};
    for (const JobCalendar& calendar : {berlin, istanbul}) {
        for (const char* after : {"2026-03-27T10:00:00", "2026-03-28T08:00:00", "2026-03-29T23:59:00"})
            EXPECT_EQ(weekdays.next(local(calendar, after), calendar), local(calendar, "2026-03-30T09:00:00")) << after;
        EXPECT_EQ(weekdays.next(local(calendar, "2026-03-26T10:00:00"), calendar),
                  local(calendar, "2026-03-27T09:00:00"));
    }
    JobCalendar sundayToThursday = istanbul;
    sundayToThursday.workDays = {Qt::Sunday, Qt::Monday, Qt::Tuesday, Qt::Wednesday, Qt::Thursday};
    EXPECT_EQ(weekdays.next(local(istanbul, "2026-03-26T10:00:00"), sundayToThursday),
              local(istanbul, "2026-03-29T09:00:00"));
    JobCalendar noWorkDays = berlin;
    noWorkDays.workDays.clear();
    EXPECT_EQ(weekdays.next(local(berlin, "2026-03-26T10:00:00"), noWorkDays), std::nullopt);
}

TEST(AgentJobScheduleTest, ADailyJobAcrossTheClockJumps) {
    const Recurrence nine{Recurrence::Daily{9, 0}};
    // Saturday 09:00 to Sunday 09:00 is 23 hours in Berlin that weekend, 24 in Istanbul.
    EXPECT_EQ(nine.next(local(berlin, "2026-03-28T09:00:00"), berlin), utc("2026-03-29T07:00:00Z"));
    EXPECT_EQ(nine.next(local(istanbul, "2026-03-28T09:00:00"), istanbul), utc("2026-03-29T06:00:00Z"));

    // 02:30 doesn't exist in Berlin on 29 March: the next time that does is 03:00.
    const Recurrence gap{Recurrence::Daily{2, 30}};
    EXPECT_EQ(gap.next(local(berlin, "2026-03-28T12:00:00"), berlin), utc("2026-03-29T01:00:00Z"));
    EXPECT_EQ(gap.next(utc("2026-03-29T01:00:00Z"), berlin), local(berlin, "2026-03-30T02:30:00"));
    EXPECT_EQ(gap.next(local(istanbul, "2026-03-28T12:00:00"), istanbul), utc("2026-03-28T23:30:00Z"));

    // 02:30 happens twice in Berlin on 25 October: the first counts, the second is passed over.
    EXPECT_EQ(gap.next(local(berlin, "2026-10-24T12:00:00"), berlin), utc("2026-10-25T00:30:00Z"));
    EXPECT_EQ(gap.next(utc("2026-10-25T00:45:00Z"), berlin), utc("2026-10-26T01:30:00Z"));

    // A job that slept through the jump runs for the first occurrence in the last day.
    AgentJob job = repeating(nine, local(berlin, "2026-03-01T12:00:00"));
    job.lastRun = local(berlin, "2026-03-25T09:00:00");
    EXPECT_EQ(job.nextRun(local(berlin, "2026-03-29T12:00:00"), berlin), utc("2026-03-29T07:00:00Z"));
    EXPECT_EQ(job.nextRun(local(berlin, "2026-03-29T08:00:00"), berlin), utc("2026-03-28T08:00:00Z"));
}

TEST(AgentJobScheduleTest, ImpossibleRulesNeverFallDue) {
    const QDateTime after = local(berlin, "2026-05-01T00:00:00");
    for (const Recurrence& rule : {Recurrence{Recurrence::Daily{24, 0}}, Recurrence{Recurrence::Daily{9, 60}},
                                   Recurrence{Recurrence::Weekdays{-1, 0}}, Recurrence{Recurrence::Weekly{0, 9, 0}},
                                   Recurrence{Recurrence::Weekly{8, 9, 0}}})
        EXPECT_EQ(rule.next(after, berlin), std::nullopt);
}

TEST(AgentJobScheduleTest, DueJobsComeEarliestFirst) {
    const QDateTime now = local(istanbul, "2026-05-06T12:00:00");
    AgentJob late = once(now.addSecs(-60), now.addDays(-2));
    late.title = QStringLiteral("late");
    AgentJob early = once(now.addSecs(-7200), now.addDays(-2));
    early.title = QStringLiteral("early");
    AgentJob future = once(now.addSecs(60), now.addDays(-2));
    AgentJob exact = repeating({Recurrence::Daily{12, 0}}, now.addDays(-2));
    exact.title = QStringLiteral("exact");
    AgentJob immediate;
    immediate.createdAt = now.addSecs(-3600);
    immediate.title = QStringLiteral("immediate");
    QStringList order;
    for (const AgentJob& job : AgentJob::dueJobs({late, future, exact, early, immediate}, now, istanbul))
        order << job.title;
    EXPECT_EQ(order, (QStringList{"early", "immediate", "late", "exact"}));
}

}  // namespace
}  // namespace vuro
