#include "notes/TaskReminderScheduler.h"

#include "base/Log.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/InMemoryReminderCenter.h"
#include "notes/NoteStore.h"

#include "support/Printers.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

const Calendar istanbul(QTimeZone("Europe/Istanbul"));

QDateTime at(int y, int m, int d, int h, int min, int s = 0) { return istanbul.at(QDate(y, m, d), QTime(h, min, s)); }

struct Fixture {
    std::shared_ptr<InMemoryNotePersistence> disk = std::make_shared<InMemoryNotePersistence>();
    std::shared_ptr<InMemoryReminderCenter> center = std::make_shared<InMemoryReminderCenter>();
    NoteStore store{disk, 10ms};
    TaskReminderScheduler::Settings settings;
    QDateTime now = at(2026, 5, 20, 10, 0);
    TaskReminderScheduler scheduler{&store, center, [this] { return settings; }, [this] { return now; }, istanbul};

    QStringList fireTimes() const {
        QStringList times;
        for (const TaskReminder& r : center->pending)
            if (r.id.startsWith(QStringLiteral("task."))) times << istanbul.inZone(r.fireDate).toString(QStringLiteral("MM-dd HH:mm")) + u' ' + r.title;
        times.sort();
        return times;
    }
};

}  // namespace

TEST(TaskReminderScheduler, NamesRequestsByNoteAndFnvHashOfTextTitleAndTime) {
    EXPECT_EQ(TaskReminderScheduler::identifier(QStringLiteral("N1"), u("call Ann 📅 2026-05-21 10:00"), QStringLiteral("Errands"), at(2026, 5, 21, 10, 0)),
              QStringLiteral("task.N1.60DDFE7855E0002A"));
}

TEST(TaskReminderScheduler, FirstPassRemindsOfOpenFutureTasksAtOnce) {
    Fixture f;
    f.settings.defaultHour = 8;
    f.store.create(QStringLiteral("Errands"), u("- [ ] call Ann 📅 2026-05-21 10:00\n- [ ] rent 📅 2026-05-22\n"
                                 "- [x] done 📅 2026-05-23 09:00\n- [ ] past 📅 2026-05-20 09:00\n"
                                 "- [ ] today 📅 2026-05-20\n- [ ] later today 📅 2026-05-20 18:30\n"
                                 "- [ ] broken 📅 2026-02-30\n- [ ] undated"));
    const Note archived = f.store.create(QStringLiteral("Old"), u("- [ ] old 📅 2026-06-01"));
    f.store.setArchived(archived.id, true);
    f.center->pending.insert(QStringLiteral("other.kind"), {});
    QList<TaskReminder> announced;
    f.scheduler.willSchedule = [&announced](const QList<TaskReminder>& list) { announced = list; };

    QSignalSpy passes(&f.scheduler, &TaskReminderScheduler::passFinished);
    f.scheduler.start();
    EXPECT_EQ(passes.count(), 1);  // no delay on the first pass
    EXPECT_EQ(f.fireTimes(), (QStringList{QStringLiteral("05-20 18:30 later today"), QStringLiteral("05-21 10:00 call Ann"), QStringLiteral("05-22 08:00 rent")}));
    EXPECT_EQ(announced.size(), 3);
    EXPECT_TRUE(f.center->pending.contains(QStringLiteral("other.kind")));
    const TaskReminder call = f.center->pending.value(
        TaskReminderScheduler::identifier(f.store.notes()[0].id, u("call Ann 📅 2026-05-21 10:00"), QStringLiteral("Errands"),
                                          at(2026, 5, 21, 10, 0)));
    EXPECT_EQ(call.noteTitle, QStringLiteral("Errands"));
    EXPECT_EQ(call.taskText, u("call Ann 📅 2026-05-21 10:00"));
}

TEST(TaskReminderScheduler, ReschedulesOnceAfterQuickChangesAndOnlyWhatChanged) {
    Fixture f;
    const Note errands = f.store.create(QStringLiteral("Errands"), u("- [ ] call Ann 📅 2026-05-21 10:00\n- [ ] rent 📅 2026-05-22 12:00"));
    const Note work = f.store.create(QStringLiteral("Work"), u("- [ ] report 📅 2026-05-25 09:00"));
    f.scheduler.setDelay(150ms);
    f.scheduler.start();
    ASSERT_EQ(f.center->pending.size(), 3);
    const QString rent = TaskReminderScheduler::identifier(errands.id, u("rent 📅 2026-05-22 12:00"),
                                                           QStringLiteral("Errands"), at(2026, 5, 22, 12, 0));
    ASSERT_TRUE(f.center->pending.contains(rent));
    const int adds = f.center->addCount;

    QSignalSpy passes(&f.scheduler, &TaskReminderScheduler::passFinished);
    f.store.setBody(errands.id, u("- [ ] call Ann and Bo 📅 2026-05-21 10:00\n- [ ] rent 📅 2026-05-22 12:00"));
    QTest::qWait(50);
    f.store.setBody(errands.id, u("- [ ] call Ann and Bob 📅 2026-05-21 10:00\n- [ ] rent 📅 2026-05-22 12:00"));
    EXPECT_EQ(passes.count(), 0);
    ASSERT_TRUE(passes.wait(1000));
    QTest::qWait(300);
    EXPECT_EQ(passes.count(), 1);
    EXPECT_EQ(f.center->addCount, adds + 1);  // only the edited task
    EXPECT_TRUE(f.center->pending.contains(rent));
    EXPECT_EQ(f.fireTimes(), (QStringList{QStringLiteral("05-21 10:00 call Ann and Bob"), QStringLiteral("05-22 12:00 rent"), QStringLiteral("05-25 09:00 report")}));

    // The work note's request survives an edit elsewhere in that note; a done task loses its own.
    const QString report = f.center->pending.keys().filter(work.id).value(0);
    f.store.setBody(work.id, u("intro\n- [ ] report 📅 2026-05-25 09:00"));
    ASSERT_TRUE(passes.wait(1000));
    EXPECT_TRUE(f.center->pending.contains(report));
    f.store.setBody(errands.id, u("- [x] call Ann and Bob 📅 2026-05-21 10:00\n- [ ] rent 📅 2026-05-22 12:00"));
    ASSERT_TRUE(passes.wait(1000));
    EXPECT_EQ(f.fireTimes(), (QStringList{QStringLiteral("05-22 12:00 rent"), QStringLiteral("05-25 09:00 report")}));
}

TEST(TaskReminderScheduler, TurnedOffRemovesEveryTaskReminder) {
    Fixture f;
    f.store.create(QStringLiteral("Errands"), u("- [ ] call Ann 📅 2026-05-21 10:00"));
    f.scheduler.setDelay(10ms);
    f.scheduler.start();
    ASSERT_EQ(f.center->pending.size(), 1);
    f.center->pending.insert(QStringLiteral("other.kind"), {});
    f.settings.enabled = false;
    QSignalSpy passes(&f.scheduler, &TaskReminderScheduler::passFinished);
    f.scheduler.scheduleSoon();
    ASSERT_TRUE(passes.wait(1000));
    EXPECT_EQ(f.center->pending.keys(), QStringList{QStringLiteral("other.kind")});
}

TEST(TaskReminderScheduler, LogsARequestThatCannotBeSetAndGoesOn) {
    Fixture f;
    f.store.create(QStringLiteral("Errands"), u("- [ ] a 📅 2026-05-21 10:00\n- [ ] b 📅 2026-05-21 11:00"));
    f.center->failAdd = Error(QStringLiteral("The notification service is not running."));
    QStringList lines;
    setLogSink([&lines](const QString& line) { lines << line; });
    QSignalSpy passes(&f.scheduler, &TaskReminderScheduler::passFinished);
    f.scheduler.start();
    setLogSink({});
    EXPECT_EQ(passes.count(), 1);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].endsWith(u("hatırlatma kurulamadı — The notification service is not running."))) << lines[0].toStdString();
}

TEST(TaskReminderScheduler, SnoozesToTheNextFiveMinutesAnHourAhead) {
    struct Case {
        QDateTime now;
        TaskDue due;
    } cases[] = {
        {at(2026, 5, 20, 10, 58), {2026, 5, 20, 12, 0}},    {at(2026, 5, 20, 10, 55), {2026, 5, 20, 11, 55}},
        {at(2026, 5, 20, 10, 55, 40), {2026, 5, 20, 11, 55}}, {at(2026, 5, 20, 10, 17), {2026, 5, 20, 11, 20}},
        {at(2026, 5, 20, 23, 58), {2026, 5, 21, 1, 0}},     {at(2026, 12, 31, 23, 1), {2027, 1, 1, 0, 5}},
    };
    for (const auto& c : cases) EXPECT_EQ(TaskReminderScheduler::snoozedDue(c.now, istanbul), c.due) << c.now.toString().toStdString();

    Fixture f;
    f.now = at(2026, 5, 21, 10, 58);
    const Note note = f.store.create(QStringLiteral("Errands"), u("x\r\n- [ ] call Ann 📅 2026-05-21 10:00\r\n- [ ] other"));
    f.scheduler.start();
    EXPECT_TRUE(f.scheduler.snooze(note.id, u("call Ann 📅 2026-05-21 10:00")));
    EXPECT_EQ(f.store.note(note.id)->body, u("x\r\n- [ ] call Ann 📅 2026-05-21 12:00\r\n- [ ] other"));
    EXPECT_FALSE(f.scheduler.snooze(note.id, u("call Ann 📅 2026-05-21 10:00")));
    EXPECT_FALSE(f.scheduler.snooze(QStringLiteral("missing"), QStringLiteral("other")));
}
