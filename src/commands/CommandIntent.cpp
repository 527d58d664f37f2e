#include "commands/CommandIntent.h"

namespace vuro {

CommandIntent::Action CommandIntent::actionFromRaw(const QString& raw) {
    const QString name = raw.trimmed();
    if (name == QLatin1String("addTask")) return Action::addTask;
    if (name == QLatin1String("createNote")) return Action::createNote;
    if (name == QLatin1String("appendToNote")) return Action::appendToNote;
    if (name == QLatin1String("completeTask")) return Action::completeTask;
    return Action::unknown;
}

}  // namespace vuro
