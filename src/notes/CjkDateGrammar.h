#pragma once

#include "base/Calendar.h"
#include "notes/DueDateParser.h"

#include <QDateTime>
#include <QList>
#include <QStringView>

namespace vuro {

// Chinese and Japanese date phrases inside a task line: 明天下午三点, 下周三, 3月5日,
// 来週の月曜日, 午後3時半, 2小时后. Such text has no blanks between words, so the grammar
// reads tokens straight off the characters; tokens that touch, or stand apart only by a blank,
// 的 or の, form one chain. docs/DATES-CJK.md lists the rules. Pure; any thread.
class CjkDateGrammar {
public:
    // Han ideographs and kana: a text with any of them is tried with this grammar first.
    static bool isCjk(QChar c) {
        const char16_t u = c.unicode();
        return (u >= 0x3040 && u <= 0x30FF) || (u >= 0x3400 && u <= 0x4DBF) || (u >= 0x4E00 && u <= 0x9FFF) ||
               (u >= 0xF900 && u <= 0xFAFF);
    }

    // Every chain in the text, in order, with ranges that include lead-in and trailing words.
    static QList<DueDateParser::Chain> chains(QStringView text, const QDateTime& now, const Calendar& calendar);
};

}  // namespace vuro
