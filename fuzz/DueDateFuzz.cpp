// Feeds arbitrary text to the task-line grammar, the date mark reader and the date-phrase parser.
// The first byte moves the reference moment through a year so that rollovers and month ends vary.
#include "notes/DueDateParser.h"
#include "notes/TaskDue.h"
#include "notes/TaskLine.h"

#include <cstdint>
#include <cstdlib>

using namespace vuro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    static const Calendar calendar(QTimeZone("Europe/Berlin"));
    static const QDateTime base = calendar.at(QDate(2026, 1, 1), QTime(0, 0));
    const QDateTime now = base.addSecs(qint64(data[0]) * 137 * 3600 + data[0] * 61);
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));

    if (const auto found = DueDateParser::find(text, now, calendar)) {
        if (found->start < 0 || found->length <= 0 || found->start + found->length > text.size()) std::abort();
        const QString marked = found->due.appending(found->remainder(text));
        const auto back = TaskDue::parse(marked);
        if (!back || !(back->due == found->due)) std::abort();  // what is written reads back
        (void)found->due.label(now, calendar);
    }
    for (const TaskLine& task : TaskLine::all(text)) {
        const QString toggled = TaskLine::setDone(!task.isDone, task.lineIndex, text);
        const auto again = TaskLine::all(toggled);
        if (again.size() != TaskLine::all(text).size()) std::abort();
    }
    (void)TaskLine::applyDueDates(text, std::nullopt, now, calendar);
    if (const auto parsed = TaskDue::parse(text)) (void)parsed->due.daysFromToday(now, calendar);
    return 0;
}
