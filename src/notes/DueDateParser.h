#pragma once

#include "base/Calendar.h"
#include "notes/TaskDue.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringView>
#include <optional>
#include <variant>

namespace vuro {

// Finds a date phrase in the text of a task line ("call Ann tomorrow at 10", "yarın sabah",
// "pazartesi'ye", "3/4", "明天下午三点") and says which range of the text it took, so that the
// caller can cut it out and write a date mark instead. Turkish and English words are matched
// regardless of case, diacritics and apostrophes; Chinese and Japanese forms have a grammar of
// their own (CjkDateGrammar). A pure function of text, now and calendar: any thread, no
// exceptions; anything it can't read is simply no date.
class DueDateParser {
public:
    enum class PartOfDay { morning, noon, afternoon, evening, night };
    enum class Unit { minutes, hours, days, weeks, months };
    enum class Meridiem { am, pm };

    // What the grammars recognise, before it is resolved against now.
    struct DayOffset { int days; };
    struct MonthOffset { int months; };
    struct Weekday { int day; bool weak; };  // 1 is Sunday; weak when the word may mean something else
    struct NextWeek { bool sameDay; };
    struct Date { std::optional<int> year; int month; int day; };
    struct MonthDay { int day; };
    struct Time { int hour; int minute; std::optional<Meridiem> meridiem; bool explicit24; };
    struct Part { PartOfDay part; bool today; };
    struct Moment { QDateTime at; };
    struct ThisWeek {};
    using Atom = std::variant<DayOffset, MonthOffset, Weekday, NextWeek, Date, MonthDay, Time, Part, Moment, ThisWeek>;

    // Atoms that stand together in the text, with the range they cover.
    struct Chain {
        qsizetype start = 0;
        qsizetype end = 0;
        QList<Atom> atoms;
    };

    struct Found {
        qsizetype start = 0;   // the phrase's range in the text
        qsizetype length = 0;
        TaskDue due;

        // text without the phrase, tidied; text itself, tidied, when nothing else is left.
        QString remainder(QStringView text) const;
    };

    static std::optional<Found> find(QStringView text, const QDateTime& now, const Calendar& calendar = {});

    // The date a chain stands for, or none when it names no day or time, or a day that doesn't exist.
    static std::optional<TaskDue> resolve(const QList<Atom>& atoms, const QDateTime& now, const Calendar& calendar);
};

}  // namespace vuro
