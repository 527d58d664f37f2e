#pragma once

#include "base/Async.h"
#include "base/Calendar.h"
#include "base/Clock.h"
#include "notes/Note.h"
#include "notes/ReminderCenter.h"
#include "notes/TaskDue.h"

#include <QList>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

namespace vuro {

class NoteStore;

// Keeps the reminder center's pending requests equal to the open dated tasks of the notes that
// aren't archived. The store stays the only truth: after each change of the notes (1.5 s after
// the last one, so typing doesn't reschedule at every key; at once on the first pass) the wanted
// reminders are derived again and diffed against the pending ones by identifier. An identifier
// hashes the task's text, its note's title and the fire time, so an unchanged task keeps its
// request and any edit replaces it. Main thread; a pass in flight is cancelled by the next change.
class TaskReminderScheduler : public QObject {
    Q_OBJECT
public:
    struct Settings {
        bool enabled = true;
        int defaultHour = 9;  // when a task without a time reminds
    };

    TaskReminderScheduler(NoteStore* store, std::shared_ptr<ReminderCenter> center, std::function<Settings()> settings,
                          std::function<QDateTime()> now = &Clock::now, Calendar calendar = {}, QObject* parent = nullptr);

    // Runs the first pass now and follows the store from then on.
    void start();
    // Arms the delayed pass (and cancels one in flight).
    void scheduleSoon();

    void setDelay(std::chrono::milliseconds delay) { _pending.setInterval(delay); }
    // Called with the wanted reminders before the center is asked.
    std::function<void(const QList<TaskReminder>&)> willSchedule;

    // Moves the open task with this text to an hour from now (on the next minute divisible by 5),
    // by rewriting its date mark; the ordinary pass then sets the reminder. False when the note or
    // the task is gone.
    bool snooze(const QString& noteID, const QString& taskText);

    static TaskDue snoozedDue(const QDateTime& now, const Calendar& calendar = {});
    static QString identifier(const QString& noteID, const QString& taskText, const QString& noteTitle,
                              const QDateTime& fireDate);
    static QList<TaskReminder> reminders(const QList<Note>& notes, int defaultHour, const QDateTime& now,
                                         const Calendar& calendar = {});

    // The settings as the preferences hold them.
    static Settings settingsFromDefaults();

Q_SIGNALS:
    // A pass reached the end without being cancelled.
    void passFinished();

private:
    void runPass();
    QCoro::Task<> pass(CancelToken token);

    NoteStore* _store;
    std::shared_ptr<ReminderCenter> _center;
    std::function<Settings()> _settings;
    std::function<QDateTime()> _now;
    Calendar _calendar;
    QTimer _pending;
    CancelToken _running;
};

}  // namespace vuro
