#include "notes/TaskDue.h"

#include "base/TimeText.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace vuro {

namespace {

bool isTidiedAway(QChar c) {
    switch (c.unicode()) {
    case u',': case u';': case u':': case u'\u2013': case u'\u2014':
    case u'\uFF0C': case u'\u3001': case u'\uFF1A': case u'\uFF1B':
        return true;
    default:
        return c.isSpace();
    }
}

QString dayAndMonth(QDate date, bool withYear, const QLocale& locale) {
    const auto language = locale.language();
    if (language == QLocale::Chinese || language == QLocale::Japanese)
        return locale.toString(date, withYear ? QStringLiteral("yyyy\u5E74M\u6708d\u65E5") : QStringLiteral("M\u6708d\u65E5"));
    const QString numeric = locale.dateFormat(QLocale::ShortFormat);
    const bool monthFirst = numeric.indexOf(u'M') < numeric.indexOf(u'd');
    if (monthFirst) return locale.toString(date, withYear ? QStringLiteral("MMM d, yyyy") : QStringLiteral("MMM d"));
    return locale.toString(date, withYear ? QStringLiteral("d MMM yyyy") : QStringLiteral("d MMM"));
}

}  // namespace

TaskDue::TaskDue(const QDateTime& moment, bool includingTime, const Calendar& calendar) {
    const QDateTime local = calendar.inZone(moment);
    const QDate date = local.date();
    if (date.isValid()) {
        year = date.year();
        month = date.month();
        day = date.day();
    }
    if (includingTime && local.time().isValid()) {
        hour = local.time().hour();
        minute = local.time().minute();
    }
}

std::optional<TaskDue::Parsed> TaskDue::parse(QStringView text) {
    static const QRegularExpression markPattern(
        QStringLiteral("\U0001F4C5[ \\t]*(\\d{4})-(\\d{1,2})-(\\d{1,2})(?:[ \\tT]+(\\d{1,2})[:.](\\d{2}))?"));
    if (!text.contains(u"\U0001F4C5")) return std::nullopt;
    const QRegularExpressionMatch match = markPattern.match(text);
    if (!match.hasMatch()) return std::nullopt;
    Parsed parsed;
    parsed.due.year = match.capturedView(1).toInt();
    parsed.due.month = match.capturedView(2).toInt();
    parsed.due.day = match.capturedView(3).toInt();
    if (match.hasCaptured(4)) {
        parsed.due.hour = match.capturedView(4).toInt();
        parsed.due.minute = match.capturedView(5).toInt();
    }
    QString rest = text.toString();
    rest.remove(match.capturedStart(0), match.capturedLength(0));
    parsed.text = tidy(rest);
    return parsed;
}

QString TaskDue::mark() const {
    QString text = QStringLiteral("\U0001F4C5 %1-%2-%3")
                       .arg(year, 4, 10, QLatin1Char('0'))
                       .arg(month, 2, 10, QLatin1Char('0'))
                       .arg(day, 2, 10, QLatin1Char('0'));
    if (hour)
        text += QStringLiteral(" %1:%2").arg(*hour, 2, 10, QLatin1Char('0')).arg(minute.value_or(0), 2, 10, QLatin1Char('0'));
    return text;
}

QString TaskDue::appending(const QString& text) const {
    return text.isEmpty() ? mark() : text + u' ' + mark();
}

std::optional<qint64> TaskDue::daysFromToday(const QDateTime& now, const Calendar& calendar) const {
    const QDate date = calendarDate();
    if (!date.isValid()) return std::nullopt;
    return calendar.dateOf(now).daysTo(date);
}

QDateTime TaskDue::date(const Calendar& calendar) const {
    const QDate date = calendarDate();
    if (!date.isValid()) return {};
    const QTime time = hour ? QTime(*hour, minute.value_or(0)) : QTime(0, 0);
    if (!time.isValid()) return {};
    return calendar.at(date, time);
}

QString TaskDue::label(const QDateTime& now, const Calendar& calendar, const QLocale& locale) const {
    const auto days = daysFromToday(now, calendar);
    const QTime time = hour ? QTime(*hour, minute.value_or(0)) : QTime();
    if (!days || (hour && !time.isValid())) return mark().mid(3);  // the mark without "📅 "
    const QDate date = calendarDate();
    QString text;
    if (*days == -1) text = QCoreApplication::translate("vuro::TaskDue", "Yesterday");
    else if (*days == 0) text = QCoreApplication::translate("vuro::TaskDue", "Today");
    else if (*days == 1) text = QCoreApplication::translate("vuro::TaskDue", "Tomorrow");
    else if (*days >= 2 && *days <= 6) text = locale.dayName(date.dayOfWeek(), QLocale::LongFormat);
    else text = dayAndMonth(date, date.year() != calendar.dateOf(now).year(), locale);
    if (hour) text += u' ' + shortTime(time, locale);
    return text;
}

QString TaskDue::tidy(QStringView text) {
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && isTidiedAway(text[start])) ++start;
    while (end > start && isTidiedAway(text[end - 1])) --end;
    QString result;
    result.reserve(end - start);
    for (qsizetype i = start; i < end; ++i) {
        const QChar c = text[i];
        if ((c == u' ' || c == u'\t') && i + 1 < end && (text[i + 1] == u' ' || text[i + 1] == u'\t')) {
            while (i + 1 < end && (text[i + 1] == u' ' || text[i + 1] == u'\t')) ++i;
            result += u' ';
            continue;
        }
        result += c;
    }
    return result;
}

bool TaskDue::operator<(const TaskDue& other) const {
    const auto key = [](const TaskDue& due) {
        return std::tuple(due.year, due.month, due.day, due.hour.value_or(-1), due.minute.value_or(0));
    };
    return key(*this) < key(other);
}

}  // namespace vuro
