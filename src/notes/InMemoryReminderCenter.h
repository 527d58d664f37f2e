#pragma once

#include "base/Error.h"
#include "notes/ReminderCenter.h"

#include <QMap>
#include <optional>

namespace vuro {

// Pending reminders in a map: the center of a test host and of tests that watch what the
// scheduler asks for. addCount and removeCount count the calls; failAdd makes every add throw.
class InMemoryReminderCenter : public ReminderCenter {
public:
    QMap<QString, TaskReminder> pending;
    int addCount = 0;
    int removeCount = 0;
    std::optional<Error> failAdd;

    QCoro::Task<QStringList> pendingIdentifiers() override;
    QCoro::Task<> remove(QStringList identifiers) override;
    QCoro::Task<> add(TaskReminder reminder) override;
};

}  // namespace vuro
