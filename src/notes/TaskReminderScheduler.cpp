#include "notes/TaskReminderScheduler.h"

#include "base/Defaults.h"
#include "base/Error.h"
#include "base/Log.h"
#include "notes/NoteStore.h"
#include "notes/TaskLine.h"

#include <QPointer>
#include <QSet>

namespace vuro {

namespace {

const QString reminderPrefix = QStringLiteral("task.");

quint64 fnv1a(const QByteArray& bytes) {
    quint64 hash = 0xcbf29ce484222325ULL;
    for (const char byte : bytes) {
        hash ^= quint8(byte);
        hash *= 0x100000001b3ULL;
    }
    return hash;
}

}  // namespace

TaskReminderScheduler::TaskReminderScheduler(NoteStore* store, std::shared_ptr<ReminderCenter> center,
                                             std::function<Settings()> settings, std::function<QDateTime()> now,
                                             Calendar calendar, QObject* parent)
    : QObject(parent), _store(store), _center(std::move(center)), _settings(std::move(settings)), _now(std::move(now)),
      _calendar(std::move(calendar)) {
    _pending.setSingleShot(true);
    _pending.setInterval(std::chrono::milliseconds(1500));
    connect(&_pending, &QTimer::timeout, this, &TaskReminderScheduler::runPass);
}

void TaskReminderScheduler::start() {
    connect(_store, &NoteStore::notesChanged, this, &TaskReminderScheduler::scheduleSoon, Qt::UniqueConnection);
    runPass();
}

void TaskReminderScheduler::scheduleSoon() {
    _running.cancel();
    _pending.start();
}

void TaskReminderScheduler::runPass() {
    _running.cancel();
    _running = CancelToken();
    pass(_running);  // runs on by itself; it catches everything it throws
}

QCoro::Task<> TaskReminderScheduler::pass(CancelToken token) {
    const QPointer<TaskReminderScheduler> self(this);
    const std::shared_ptr<ReminderCenter> center = _center;
    try {
        const Settings settings = _settings();
        QList<TaskReminder> wanted;
        if (settings.enabled) {
            wanted = reminders(_store->notes(), settings.defaultHour, _now(), _calendar);
            if (willSchedule) willSchedule(wanted);
        }
        QSet<QString> wantedIDs;
        for (const TaskReminder& reminder : wanted) wantedIDs.insert(reminder.id);

        const QStringList pending = co_await center->pendingIdentifiers();
        if (!stillWanted(self, token)) co_return;
        QStringList stale;
        for (const QString& id : pending)
            if (id.startsWith(reminderPrefix) && !wantedIDs.contains(id)) stale.append(id);
        if (!stale.isEmpty()) {
            co_await center->remove(stale);
            if (!stillWanted(self, token)) co_return;
        }
        const QSet<QString> present(pending.begin(), pending.end());
        for (qsizetype i = 0; i < wanted.size(); ++i) {
            const TaskReminder reminder = wanted[i];
            if (present.contains(reminder.id)) continue;
            try {
                co_await center->add(reminder);
            } catch (const Error& error) {
                log(QStringLiteral("hatırlatma kurulamadı — ") + error.message());
            }
            if (!stillWanted(self, token)) co_return;
        }
        Q_EMIT self->passFinished();
    } catch (const std::exception& error) {
        log(QStringLiteral("hatırlatma kurulamadı — ") + QString::fromUtf8(error.what()));
    }
}

QList<TaskReminder> TaskReminderScheduler::reminders(const QList<Note>& notes, int defaultHour, const QDateTime& now,
                                                     const Calendar& calendar) {
    QList<TaskReminder> list;
    for (const Note& note : notes) {
        if (note.archived) continue;
        const QString noteTitle = note.displayTitle();
        for (const TaskLine& task : TaskLine::all(note.body)) {
            if (task.isDone) continue;
            const auto parsed = TaskDue::parse(task.text);
            if (!parsed) continue;
            TaskDue due = parsed->due;
            if (!due.hour) {
                due.hour = defaultHour;
                due.minute = 0;
            }
            const QDateTime fire = due.date(calendar);
            if (!fire.isValid() || fire <= now) continue;
            TaskReminder reminder;
            reminder.noteID = note.id;
            reminder.taskText = task.text;
            reminder.title = parsed->text;
            reminder.noteTitle = noteTitle;
            reminder.fireDate = fire;
            reminder.id = identifier(note.id, task.text, noteTitle, fire);
            list.append(std::move(reminder));
        }
    }
    return list;
}

QString TaskReminderScheduler::identifier(const QString& noteID, const QString& taskText, const QString& noteTitle,
                                          const QDateTime& fireDate) {
    const QString key = taskText + u'|' + noteTitle + u'|' + QString::number(fireDate.toSecsSinceEpoch());
    return reminderPrefix + noteID + u'.' + QString::number(fnv1a(key.toUtf8()), 16).toUpper();
}

TaskDue TaskReminderScheduler::snoozedDue(const QDateTime& now, const Calendar& calendar) {
    const QDateTime inAnHour = calendar.inZone(now.addSecs(3600));
    const int minute = inAnHour.time().minute();
    const QTime onTheMinute(inAnHour.time().hour(), minute);
    const QDateTime rounded = calendar.at(inAnHour.date(), onTheMinute).addSecs(qint64((5 - minute % 5) % 5) * 60);
    return TaskDue(rounded, true, calendar);
}

bool TaskReminderScheduler::snooze(const QString& noteID, const QString& taskText) {
    const auto note = _store->note(noteID);
    if (!note) return false;
    for (const TaskLine& task : TaskLine::all(note->body)) {
        if (task.isDone || task.text != taskText) continue;
        const auto parsed = TaskDue::parse(task.text);
        const QString text = snoozedDue(_now(), _calendar).appending(parsed ? parsed->text : task.text);
        _store->setBody(noteID, TaskLine::setText(text, task.lineIndex, false, note->body), false);
        return true;
    }
    return false;
}

TaskReminderScheduler::Settings TaskReminderScheduler::settingsFromDefaults() {
    const Defaults& defaults = Defaults::standard();
    return {defaults.boolValue(QStringLiteral("taskReminders"), true),
            qBound(0, defaults.intValue(QStringLiteral("taskReminderHour"), 9), 23)};
}

}  // namespace vuro
