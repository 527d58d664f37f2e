#include "notes/InMemoryReminderCenter.h"

namespace vuro {

QCoro::Task<QStringList> InMemoryReminderCenter::pendingIdentifiers() { co_return pending.keys(); }

QCoro::Task<> InMemoryReminderCenter::remove(QStringList identifiers) {
    ++removeCount;
    for (const QString& id : identifiers) pending.remove(id);
    co_return;
}

QCoro::Task<> InMemoryReminderCenter::add(TaskReminder reminder) {
    if (failAdd) throw *failAdd;
    ++addCount;
    pending.insert(reminder.id, reminder);
    co_return;
}

}  // namespace vuro
