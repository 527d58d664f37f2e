#include "notes/DueDateParser.h"

#include "base/Text.h"
#include "notes/CjkDateGrammar.h"

#include <QVarLengthArray>
#include <cmath>

namespace vuro {

namespace {

using P = DueDateParser;

struct Keyed {
    QStringView key;
    int value;
};

constexpr Keyed weekdays[] = {
    {u"pazartesi", 2}, {u"sali", 3}, {u"carsamba", 4}, {u"persembe", 5}, {u"cumartesi", 7}, {u"cuma", 6},
    {u"pazar", 1}, {u"monday", 2}, {u"tuesday", 3}, {u"wednesday", 4}, {u"thursday", 5}, {u"friday", 6},
    {u"saturday", 7}, {u"sunday", 1},
};
constexpr QStringView weekdaySuffixes[] = {u"", u"ya", u"ye", u"yi", u"da", u"de", u"ta", u"te"};

constexpr Keyed months[] = {
    {u"january", 1}, {u"jan", 1}, {u"february", 2}, {u"feb", 2}, {u"march", 3}, {u"mar", 3}, {u"april", 4},
    {u"apr", 4}, {u"may", 5}, {u"june", 6}, {u"jun", 6}, {u"july", 7}, {u"jul", 7}, {u"august", 8},
    {u"aug", 8}, {u"september", 9}, {u"sep", 9}, {u"sept", 9}, {u"october", 10}, {u"oct", 10},
    {u"november", 11}, {u"nov", 11}, {u"december", 12}, {u"dec", 12},
};

struct NumberWord {
    QStringView key;
    double value;
};
constexpr NumberWord numberWords[] = {
    {u"bir", 1}, {u"iki", 2}, {u"uc", 3}, {u"dort", 4}, {u"bes", 5}, {u"alti", 6}, {u"yedi", 7}, {u"sekiz", 8},
    {u"dokuz", 9}, {u"on", 10}, {u"yarim", 0.5}, {u"a", 1}, {u"an", 1}, {u"one", 1}, {u"two", 2},
    {u"three", 3}, {u"four", 4}, {u"five", 5}, {u"six", 6}, {u"seven", 7}, {u"eight", 8}, {u"nine", 9},
    {u"ten", 10},
};

struct UnitWord {
    QStringView key;
    P::Unit unit;
};
constexpr UnitWord unitWords[] = {
    {u"dakika", P::Unit::minutes}, {u"dk", P::Unit::minutes}, {u"minute", P::Unit::minutes},
    {u"minutes", P::Unit::minutes}, {u"min", P::Unit::minutes}, {u"mins", P::Unit::minutes},
    {u"saat", P::Unit::hours}, {u"hour", P::Unit::hours}, {u"hours", P::Unit::hours}, {u"hr", P::Unit::hours},
    {u"hrs", P::Unit::hours}, {u"gun", P::Unit::days}, {u"day", P::Unit::days}, {u"days", P::Unit::days},
    {u"hafta", P::Unit::weeks}, {u"week", P::Unit::weeks}, {u"weeks", P::Unit::weeks},
    {u"ay", P::Unit::months}, {u"month", P::Unit::months}, {u"months", P::Unit::months},
};

constexpr QStringView connectors[] = {u"gunu", u"saat", u"bu", u"this", u"at", u"on", u"the", u"in", u"by"};
constexpr QStringView leadIns[] = {u"on", u"at", u"by", u"until"};

// A number right after one of these is a page, a room or a step, not a date or a time.
constexpr QStringView nouns[] = {u"sayfa", u"bolum", u"madde", u"kat", u"no", u"numara", u"oda",
                                            u"sira", u"sinif", u"soru", u"unite", u"adim", u"page",
                                            u"chapter", u"room", u"step", u"no."};
// A number right before one of these is a quantity.
constexpr QStringView quantityUnits[] = {
    u"kg", u"g", u"gr", u"gram", u"kilo", u"lt", u"l", u"litre", u"ml", u"cl", u"cm", u"mm", u"m", u"km", u"metre",
    u"tl", u"lira", u"usd", u"eur", u"euro", u"dolar", u"adet", u"tane", u"paket", u"bardak", u"kasik", u"su",
    u"cay", u"kahve", u"%"};

struct PartWord {
    QStringView stem;
    QStringView endings[5];
    int endingCount;
    P::PartOfDay part;
};
constexpr PartWord partWords[] = {
    {u"sabah", {u"", u"leyin", u"a", u"i", u"in"}, 5, P::PartOfDay::morning},
    {u"ogleyin", {u""}, 1, P::PartOfDay::noon},
    {u"oglen", {u"", u"e", u"de"}, 3, P::PartOfDay::noon},
    {u"ogle", {u"", u"ye", u"de"}, 3, P::PartOfDay::noon},
    {u"aksamustu", {u"", u"ne"}, 2, P::PartOfDay::evening},
    {u"aksam", {u"", u"a", u"i", u"leyin", u"in"}, 5, P::PartOfDay::evening},
    {u"gece", {u"", u"leyin", u"ye", u"si"}, 4, P::PartOfDay::night},
    {u"morning", {u""}, 1, P::PartOfDay::morning},
    {u"afternoon", {u""}, 1, P::PartOfDay::afternoon},
    {u"evening", {u""}, 1, P::PartOfDay::evening},
    {u"night", {u""}, 1, P::PartOfDay::night},
};

template <typename List>
bool contains(const List& list, QStringView word) {
    for (const QStringView entry : list)
        if (entry == word) return true;
    return false;
}

bool isAsciiDigit(QChar c) { return c >= u'0' && c <= u'9'; }

// The value of a run of at most maxLength ASCII digits making up all of text.
std::optional<int> digitsValue(QStringView text, int maxLength) {
    if (text.isEmpty() || text.size() > maxLength) return std::nullopt;
    int value = 0;
    for (const QChar c : text) {
        if (!isAsciiDigit(c)) return std::nullopt;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value;
}

bool separatesWords(QChar c) {
    switch (c.unicode()) {
    case u',': case u';': case u'!': case u'?': case u'(': case u')': case u'[': case u']': case u'{': case u'}':
    case u'"': case u'\u201C': case u'\u201D': case u'\u00AB': case u'\u00BB':
        return true;
    default:
        return c.isSpace();
    }
}

bool droppedAtWordEnd(QChar c) {
    return c == u'.' || c == u':' || c == u'-' || c == u'\'' || c == u'\u2019';
}

// The words of a text, folded into one shared buffer so that a line costs few allocations.
class Words {
public:
    explicit Words(QStringView text) {
        _buffer.reserve(text.size() + 8);
        qsizetype at = 0;
        while (at < text.size()) {
            while (at < text.size() && separatesWords(text[at])) ++at;
            const qsizetype start = at;
            while (at < text.size() && !separatesWords(text[at])) ++at;
            qsizetype end = at;
            while (end > start && droppedAtWordEnd(text[end - 1])) --end;
            // The dropped ending still belongs to the word's range: cutting "7:30 p.m." leaves no dot.
            if (end > start) add(text, start, end, at);
        }
    }

    int size() const { return int(_words.size()); }
    qsizetype start(int i) const { return _words[i].start; }
    qsizetype end(int i) const { return _words[i].end; }
    // Out of range gives an empty word, so matchers can look ahead without checks.
    QStringView folded(int i) const { return view(i, &Word::folded, &Word::foldedLength); }
    QStringView stem(int i) const { return view(i, &Word::folded, &Word::stemLength); }
    QStringView suffix(int i) const {
        if (i < 0 || i >= size()) return {};
        const Word& w = _words[i];
        if (w.stemLength == w.foldedLength) return {};
        return QStringView(_buffer).mid(w.folded + w.stemLength + 1, w.foldedLength - w.stemLength - 1);
    }
    // The folded word without its first apostrophe: "5'te" reads as "5te".
    QStringView joined(int i) const { return view(i, &Word::joined, &Word::joinedLength); }

private:
    struct Word {
        qsizetype start, end;
        qsizetype folded, foldedLength, stemLength;
        qsizetype joined, joinedLength;
    };

    QStringView view(int i, qsizetype Word::*offset, qsizetype Word::*length) const {
        if (i < 0 || i >= size()) return {};
        return QStringView(_buffer).mid(_words[i].*offset, _words[i].*length);
    }

    void add(QStringView text, qsizetype start, qsizetype end, qsizetype rangeEnd) {
        const QStringView raw = text.mid(start, end - start);
        Word word{start, rangeEnd, _buffer.size(), 0, 0, 0, 0};
        bool ascii = true;
        for (const QChar c : raw)
            if (c.unicode() >= 0x80) {
                ascii = false;
                break;
            }
        if (ascii) {
            for (const QChar c : raw) _buffer += (c >= u'A' && c <= u'Z') ? QChar(c.unicode() + 32) : c;
        } else {
            QString folded = Text::fold(raw.toString());
            folded.replace(u'\u2019', u'\'').replace(u'\u2018', u'\'');
            _buffer += folded;
        }
        word.foldedLength = _buffer.size() - word.folded;
        const QStringView folded = QStringView(_buffer).mid(word.folded, word.foldedLength);
        const qsizetype apostrophe = folded.indexOf(u'\'');
        word.stemLength = apostrophe < 0 ? word.foldedLength : apostrophe;
        if (apostrophe < 0) {
            word.joined = word.folded;
            word.joinedLength = word.foldedLength;
        } else {
            word.joined = _buffer.size();
            const QString joined = folded.left(apostrophe).toString() + folded.mid(apostrophe + 1).toString();
            _buffer += joined;
            word.joinedLength = joined.size();
        }
        _words.append(word);
    }

    QString _buffer;
    QVarLengthArray<Word, 24> _words;
};

// Atoms found at one place in the text, over words [start, end).
struct Match {
    int start = 0;
    int end = 0;
    QVarLengthArray<P::Atom, 2> atoms;
};

// The Turkish and English grammar over the words of one text.
class Grammar {
public:
    Grammar(const Words& words, const QDateTime& now) : _w(words), _now(now) {}

    QList<Match> matches() const {
        QList<Match> found;
        int i = 0;
        while (i < _w.size()) {
            Match match;
            match.start = i;
            if (relativeAmount(i, match) || dayWords(i, match) || partOfDay(i, match) || weekWords(i, match) || weekday(i, match) ||
                dayAndMonth(i, match) || clockWords(i, match) || numeric(i, match)) {
                i = match.end;
                found.append(std::move(match));
            } else {
                ++i;
            }
        }
        return found;
    }

    bool isConnector(int i) const { return contains(connectors, _w.folded(i)); }

private:
    std::optional<double> number(int i) const {
        const QStringView word = _w.folded(i);
        for (const auto& entry : numberWords)
            if (entry.key == word) return entry.value;
        if (const auto value = digitsValue(word, 6)) return *value;
        return std::nullopt;
    }

    std::optional<P::Unit> unit(int i) const {
        const QStringView word = _w.folded(i);
        for (const auto& entry : unitWords)
            if (entry.key == word) return entry.unit;
        return std::nullopt;
    }

    // A number that stands after a page-like noun or before a quantity unit is no date or time.
    bool guarded(int i) const {
        return contains(nouns, _w.folded(i - 1)) || contains(nouns, _w.stem(i - 1)) ||
               contains(quantityUnits, _w.stem(i + 1));
    }

    bool relativeAmount(int i, Match& match) const {
        std::optional<double> amount;
        std::optional<P::Unit> which;
        if (_w.folded(i + 2) == u"sonra") {
            amount = number(i);
            which = unit(i + 1);
        } else if (_w.folded(i) == u"in") {
            amount = number(i + 1);
            which = unit(i + 2);
        }
        if (!amount || !which) return false;
        const double n = *amount;
        switch (*which) {
        case P::Unit::minutes:
        case P::Unit::hours:
            match.atoms.append(P::Moment{_now.addSecs(std::llround(n * (*which == P::Unit::minutes ? 60 : 3600)))});
            break;
        case P::Unit::days:
        case P::Unit::weeks:
        case P::Unit::months:
            if (n < 1) return false;
            if (*which == P::Unit::months) match.atoms.append(P::MonthOffset{int(n)});
            else match.atoms.append(P::DayOffset{int(n) * (*which == P::Unit::weeks ? 7 : 1)});
            break;
        }
        match.end = i + 3;
        return true;
    }

    bool dayWords(int i, Match& match) const {
        const QStringView word = _w.stem(i);
        int end = i + 1;
        if (word == u"bugun" || word == u"today") {
            match.atoms.append(P::DayOffset{0});
        } else if (word == u"yarin" || word == u"yarina" || word == u"tomorrow") {
            match.atoms.append(P::DayOffset{1});
        } else if (word == u"oburgun") {
            match.atoms.append(P::DayOffset{2});
        } else if (word == u"obur" && _w.folded(i + 1).startsWith(u"gun")) {
            match.atoms.append(P::DayOffset{2});
            end = i + 2;
        } else if (word == u"day" && _w.folded(i + 1) == u"after" && _w.stem(i + 2) == u"tomorrow") {
            match.atoms.append(P::DayOffset{2});
            end = i + 3;
        } else if (word == u"tonight") {
            match.atoms.append(P::Part{P::PartOfDay::night, true});
        } else {
            return false;
        }
        match.end = end;
        return true;
    }

    bool isWeekWord(int i) const { return _w.folded(i).startsWith(u"hafta") || _w.folded(i) == u"week"; }

    bool weekWords(int i, Match& match) const {
        const QStringView word = _w.folded(i);
        if (_w.stem(i) == u"haftaya") {
            match.atoms.append(P::NextWeek{true});
            match.end = i + 1;
            return true;
        }
        const bool next = word == u"gelecek" || word == u"next";
        const bool current = word == u"bu" || word == u"this";
        if (!next && !current) return false;
        if (isWeekWord(i + 1)) {
            match.atoms.append(next ? P::Atom(P::NextWeek{false}) : P::Atom(P::ThisWeek{}));
            match.end = i + 2;
            return true;
        }
        // "this friday", "bu pazar", "next friday": the weekday is meant, even the market one.
        Match day;
        if (!weekday(i + 1, day)) return false;
        match.atoms.append(next ? P::Atom(P::NextWeek{false}) : P::Atom(P::ThisWeek{}));
        auto named = std::get<P::Weekday>(day.atoms.front());
        named.weak = false;
        match.atoms.append(named);
        match.end = day.end;
        return true;
    }

    bool weekday(int i, Match& match) const {
        const QStringView word = _w.joined(i);
        for (const auto& entry : weekdays) {
            if (!word.startsWith(entry.key)) continue;
            const QStringView rest = word.mid(entry.key.size());
            if (!contains(weekdaySuffixes, rest)) continue;
            const bool withDayWord = _w.folded(i + 1).startsWith(u"gunu");
            const bool weak = entry.value == 1 && entry.key == u"pazar" && rest.isEmpty() && !withDayWord;
            match.atoms.append(P::Weekday{entry.value, weak});
            match.end = withDayWord ? i + 2 : i + 1;
            return true;
        }
        return false;
    }

    std::optional<int> month(int i) const {
        const QStringView word = _w.folded(i);
        for (const auto& entry : months)
            if (entry.key == word) return entry.value;
        return std::nullopt;
    }

    // 1 to 31, also as "5th" or "5'inde".
    std::optional<int> dayNumber(int i) const {
        if (guarded(i)) return std::nullopt;
        QStringView word = _w.stem(i);
        if (word.size() > 2 && (word.endsWith(u"st") || word.endsWith(u"nd") || word.endsWith(u"rd") || word.endsWith(u"th")))
            word.chop(2);
        const auto day = digitsValue(word, 2);
        if (!day || *day < 1 || *day > 31) return std::nullopt;
        return day;
    }

    bool dayAndMonth(int i, Match& match) const {
        std::optional<int> day;
        std::optional<int> which;
        if ((day = dayNumber(i)) && (which = month(i + 1))) {
        } else if ((which = month(i)) && (day = dayNumber(i + 1))) {
        } else if (_w.folded(i) == u"ayin" && (day = dayNumber(i + 1))) {
            match.atoms.append(P::MonthDay{*day});
            match.end = i + 2;
            return true;
        } else {
            return false;
        }
        const auto year = digitsValue(_w.stem(i + 2), 4);
        const bool withYear = year && _w.stem(i + 2).size() == 4;
        match.atoms.append(P::Date{withYear ? year : std::nullopt, *which, *day});
        match.end = withYear ? i + 3 : i + 2;
        return true;
    }

    bool clockWords(int i, Match& match) const {
        const QStringView word = _w.folded(i);
        if (word == u"noon" || word == u"midday") {
            match.atoms.append(P::Time{12, 0, std::nullopt, false});
            match.end = i + 1;
            return true;
        }
        if (word != u"saat" && word != u"at") return false;
        return time(i + 1, true, match);
    }

    static std::optional<P::Meridiem> meridiemWord(QStringView word) {
        if (word == u"am" || word == u"a.m") return P::Meridiem::am;
        if (word == u"pm" || word == u"p.m") return P::Meridiem::pm;
        return std::nullopt;
    }

    // (\d{1,2})(?:([:.])(\d{2}))?(am|pm|a\.m|p\.m|da|de|ta|te)? over the whole word.
    bool time(int i, bool afterClockWord, Match& match) const {
        if (guarded(i)) return false;
        const QStringView word = _w.joined(i);
        qsizetype at = 0;
        while (at < word.size() && at < 2 && isAsciiDigit(word[at])) ++at;
        if (at == 0) return false;
        const int hour = digitsValue(word.left(at), 2).value_or(99);
        const bool explicit24 = at == 2 && word[0] == u'0';
        int minute = 0;
        bool withMinutes = false;
        if (at + 2 < word.size() && (word[at] == u':' || word[at] == u'.') && isAsciiDigit(word[at + 1]) &&
            isAsciiDigit(word[at + 2])) {
            minute = (word[at + 1].unicode() - u'0') * 10 + (word[at + 2].unicode() - u'0');
            withMinutes = true;
            at += 3;
        }
        const QStringView ending = word.mid(at);
        std::optional<P::Meridiem> meridiem;
        if (!ending.isEmpty()) {
            if (auto m = meridiemWord(ending)) meridiem = m;
            else if (!(ending == u"da" || ending == u"de" || ending == u"ta" || ending == u"te")) return false;
        }
        if (hour >= 25 || minute >= 60) return false;
        int end = i + 1;
        if (!meridiem && ending.isEmpty()) {
            if (const auto spoken = meridiemWord(_w.folded(i + 1))) {
                meridiem = spoken;
                end = i + 2;
            } else if (!withMinutes && !afterClockWord) {
                return false;
            }
        }
        match.atoms.append(P::Time{hour, minute, meridiem, explicit24});
        match.end = end;
        return true;
    }

    bool numeric(int i, Match& match) const {
        if (!isAsciiDigit(_w.folded(i).isEmpty() ? QChar() : _w.folded(i)[0]) || guarded(i)) return false;
        const QStringView word = _w.folded(i);
        // (\d{4})-(\d{1,2})-(\d{1,2})
        if (word.size() >= 8 && word[4] == u'-') {
            const auto parts = word.split(u'-');
            if (parts.size() == 3 && parts[0].size() == 4) {
                const auto year = digitsValue(parts[0], 4);
                const auto month = digitsValue(parts[1], 2);
                const auto day = digitsValue(parts[2], 2);
                if (year && month && day) {
                    match.atoms.append(P::Date{year, *month, *day});
                    match.end = i + 1;
                    return true;
                }
            }
        }
        if (dayFirstDate(i, match)) return true;
        return time(i, false, match);
    }

    // (\d{1,2})([.\/])(\d{1,2})(?:[.\/](\d{4}|\d{2}))? over the whole word, day first.
    bool dayFirstDate(int i, Match& match) const {
        const QStringView word = _w.folded(i);
        const auto isSeparator = [](QChar c) { return c == u'.' || c == u'/'; };
        qsizetype at = 0;
        const auto digitRun = [&](int most) {
            const qsizetype from = at;
            while (at < word.size() && at - from < most && isAsciiDigit(word[at])) ++at;
            return word.mid(from, at - from);
        };
        const QStringView day = digitRun(2);
        if (day.isEmpty() || at >= word.size() || !isSeparator(word[at])) return false;
        const QChar separator = word[at++];
        const QStringView month = digitRun(2);
        if (month.isEmpty()) return false;
        std::optional<int> year;
        if (at < word.size()) {
            if (!isSeparator(word[at++])) return false;
            const QStringView digits = digitRun(4);
            if (at != word.size() || (digits.size() != 4 && digits.size() != 2)) return false;
            year = digitsValue(digits, 4).value() + (digits.size() == 2 ? 2000 : 0);
        }
        if (separator == u'.' && !year && _w.folded(i - 1) == u"saat") return false;
        const int d = digitsValue(day, 2).value();
        const int m = digitsValue(month, 2).value();
        if (d < 1 || d > 31 || m < 1 || m > 12) return false;
        match.atoms.append(P::Date{year, m, d});
        match.end = i + 1;
        return true;
    }

    bool partOfDay(int i, Match& match) const;

    const Words& _w;
    QDateTime _now;
};

// Parts of the day count with the day words: "yarın sabah", "sabah 5'te" chain a day, a part and a time.
bool Grammar::partOfDay(int i, Match& match) const {
    const QStringView word = _w.joined(i);
    if (word == u"ogleden" && _w.folded(i + 1) == u"sonra") {
        match.atoms.append(P::Part{P::PartOfDay::afternoon, false});
        match.end = i + 2;
        return true;
    }
    for (const auto& entry : partWords) {
        if (!word.startsWith(entry.stem)) continue;
        const QStringView rest = word.mid(entry.stem.size());
        for (int e = 0; e < entry.endingCount; ++e)
            if (entry.endings[e] == rest) {
                match.atoms.append(P::Part{entry.part, false});
                match.end = i + 1;
                return true;
            }
    }
    return false;
}


// The default hour of a part of the day named without a time.
int defaultHour(P::PartOfDay part) {
    switch (part) {
    case P::PartOfDay::morning: return 9;
    case P::PartOfDay::noon: return 12;
    case P::PartOfDay::afternoon: return 15;
    case P::PartOfDay::evening: return 19;
    case P::PartOfDay::night: return 22;
    }
    return 9;
}

// The 24-hour hour of a written hour, read with its meridiem or else the part of the day.
int clockHour(const P::Time& time, const std::optional<P::Part>& part) {
    int h = time.hour;
    if (time.meridiem == P::Meridiem::pm) return h < 12 ? h + 12 : h;
    if (time.meridiem == P::Meridiem::am) return h == 12 ? 0 : h;
    if (part) {
        switch (part->part) {
        case P::PartOfDay::morning: return h;
        case P::PartOfDay::noon: return h >= 1 && h <= 6 ? h + 12 : h;
        case P::PartOfDay::afternoon:
        case P::PartOfDay::evening: return h < 12 ? h + 12 : h;
        case P::PartOfDay::night: return h >= 6 && h <= 11 ? h + 12 : h == 12 ? 0 : h;
        }
    }
    // Nobody means five in the morning by a bare "5".
    if (!time.explicit24 && h >= 1 && h <= 6) return h + 12;
    return h;
}

// Weekdays numbered from 1 for Sunday.
int weekdayOf(QDate date) { return date.dayOfWeek() % 7 + 1; }

}  // namespace

std::optional<TaskDue> DueDateParser::resolve(const QList<Atom>& atoms, const QDateTime& now, const Calendar& calendar) {
    std::optional<DayOffset> dayOffset;
    std::optional<MonthOffset> monthOffset;
    std::optional<Weekday> weekday;
    bool weekdayThisWeek = false;
    std::optional<NextWeek> nextWeek;
    std::optional<Date> date;
    std::optional<MonthDay> monthDay;
    std::optional<Time> time;
    std::optional<Part> part;
    std::optional<Moment> moment;
    bool marked = false;
    for (const Atom& atom : atoms) {
        if (std::holds_alternative<ThisWeek>(atom)) {
            marked = true;
            continue;
        }
        std::visit(
            [&](const auto& a) {
                using A = std::decay_t<decltype(a)>;
                const auto first = [&a](auto& slot) {
                    if (!slot) slot = a;
                };
                if constexpr (std::is_same_v<A, DayOffset>) first(dayOffset);
                else if constexpr (std::is_same_v<A, MonthOffset>) first(monthOffset);
                else if constexpr (std::is_same_v<A, Weekday>) {
                    if (!weekday) weekdayThisWeek = marked;
                    first(weekday);
                } else if constexpr (std::is_same_v<A, NextWeek>) first(nextWeek);
                else if constexpr (std::is_same_v<A, Date>) first(date);
                else if constexpr (std::is_same_v<A, MonthDay>) first(monthDay);
                else if constexpr (std::is_same_v<A, Time>) first(time);
                else if constexpr (std::is_same_v<A, Part>) first(part);
                else if constexpr (std::is_same_v<A, Moment>) first(moment);
            },
            atom);
        marked = false;
    }
    if (moment) {
        if (!moment->at.isValid()) return std::nullopt;
        return TaskDue(moment->at, true, calendar);
    }

    std::optional<QTime> clock;
    if (time) clock = QTime(clockHour(*time, part) % 24, time->minute);
    else if (part) clock = QTime(defaultHour(part->part), 0);
    const bool nextDayByClock = time && clockHour(*time, part) >= 24;  // "24:30" is half past midnight

    const QDate today = calendar.dateOf(now);
    QDate day;
    if (date) {
        day = QDate(date->year.value_or(today.year()), date->month, date->day);
        if (!day.isValid()) return std::nullopt;
        if (!date->year && day < today) day = QDate(today.year() + 1, date->month, date->day);
    } else if (dayOffset) {
        day = today.addDays(dayOffset->days);
    } else if (weekday || nextWeek) {
        const int todayWeekday = weekdayOf(today);
        int ahead = 0;
        if (nextWeek) {
            // The coming Monday starts next week; "haftaya" alone means a week from today.
            const int toMonday = (9 - todayWeekday) % 7;
            if (weekday) ahead = (toMonday == 0 ? 7 : toMonday) + (weekday->day + 5) % 7;
            else ahead = nextWeek->sameDay ? 7 : (toMonday == 0 ? 7 : toMonday);
        } else {
            ahead = (weekday->day - todayWeekday + 7) % 7;
            // Today's own weekday name means the one a week ahead ("friday" on a Friday), unless
            // it says "this friday".
            if (ahead == 0 && !weekdayThisWeek) ahead = 7;
        }
        day = today.addDays(ahead);
    } else if (monthDay) {
        day = QDate(today.year(), today.month(), 1).addDays(monthDay->day - 1);
    } else if (monthOffset) {
        day = today.addMonths(monthOffset->months);
    } else if (clock) {
        day = today.addDays(nextDayByClock ? 1 : 0);
        if (calendar.at(day, *clock) <= now && !(part && part->today)) day = day.addDays(1);
    } else {
        return std::nullopt;
    }
    if (nextDayByClock && (date || dayOffset || weekday || nextWeek || monthDay || monthOffset)) day = day.addDays(1);
    if (!day.isValid() || day.year() < 1 || day.year() > 9999) return std::nullopt;
    if (!clock) return TaskDue(day.year(), day.month(), day.day());
    return TaskDue(day.year(), day.month(), day.day(), clock->hour(), clock->minute());
}

std::optional<DueDateParser::Found> DueDateParser::find(QStringView text, const QDateTime& now, const Calendar& calendar) {
    if (text.contains(u"\U0001F4C5")) return std::nullopt;
    bool readable = false;
    bool cjk = false;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x80) {
            if ((u >= u'0' && u <= u'9') || ((u | 0x20) >= u'a' && (u | 0x20) <= u'z')) readable = true;
        } else if (CjkDateGrammar::isCjk(c)) {
            readable = cjk = true;
        } else if (c.isLetterOrNumber()) {
            readable = true;
        }
    }
    if (!readable) return std::nullopt;
    if (cjk) {
        for (const Chain& chain : CjkDateGrammar::chains(text, now, calendar)) {
            if (auto due = resolve(chain.atoms, now, calendar)) return Found{chain.start, chain.end - chain.start, *due};
        }
    }

    const Words words(text);
    const Grammar grammar(words, now);
    const QList<Match> matches = grammar.matches();
    for (qsizetype first = 0; first < matches.size();) {
        // A chain: matches with nothing but connectors between them.
        qsizetype last = first;
        while (last + 1 < matches.size()) {
            bool joined = true;
            for (int w = matches[last].end; w < matches[last + 1].start && joined; ++w) joined = grammar.isConnector(w);
            if (!joined) break;
            ++last;
        }
        QList<Atom> atoms;
        bool allWeak = true;
        for (qsizetype m = first; m <= last; ++m)
            for (const Atom& atom : matches[m].atoms) {
                atoms.append(atom);
                const auto* day = std::get_if<Weekday>(&atom);
                if (!day || !day->weak) allWeak = false;
            }
        if (!allWeak) {
            if (const auto due = resolve(atoms, now, calendar)) {
                int startWord = matches[first].start;
                int endWord = matches[last].end;
                if (contains(leadIns, words.folded(startWord - 1))) --startWord;
                if (words.folded(endWord) == u"kadar") ++endWord;
                const qsizetype start = words.start(startWord);
                return Found{start, words.end(endWord - 1) - start, *due};
            }
        }
        first = last + 1;
    }
    return std::nullopt;
}

QString DueDateParser::Found::remainder(QStringView text) const {
    QString rest = text.left(start).toString() + text.mid(start + length).toString();
    rest = TaskDue::tidy(rest);
    return rest.isEmpty() ? TaskDue::tidy(text) : rest;
}

}  // namespace vuro
