#pragma once

#include "notes/TaskReminder.h"

#include <QStringList>
#include <qcoro/qcorotask.h>

namespace vuro {

// Where reminders wait until they fire: the desktop's notification service, or a twin in memory.
// Calls are awaited on the main thread. add throws an Error whose message says why a reminder
// could not be set; the caller logs it and goes on with the others.
class ReminderCenter {
public:
    virtual ~ReminderCenter() = default;
    virtual QCoro::Task<QStringList> pendingIdentifiers() = 0;
    virtual QCoro::Task<> remove(QStringList identifiers) = 0;
    virtual QCoro::Task<> add(TaskReminder reminder) = 0;
};

}  // namespace vuro
