#include "notes/CjkDateGrammar.h"

#include <QVarLengthArray>

namespace vuro {

namespace {

using P = DueDateParser;

struct Token {
    qsizetype start = 0;
    qsizetype end = 0;
    QVarLengthArray<P::Atom, 2> atoms;
};

struct Number {
    int value = 0;
    qsizetype end = 0;
};

int digitOf(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9') return u - u'0';
    if (u >= 0xFF10 && u <= 0xFF19) return u - 0xFF10;  // full-width digits
    return -1;
}

int numeralOf(QChar c) {
    switch (c.unicode()) {
    case u'\u96F6': case u'\u3007': return 0;  // 零 〇
    case u'\u4E00': return 1;                  // 一
    case u'\u4E8C': case u'\u4E24': case u'\u5169': return 2;  // 二 两 兩
    case u'\u4E09': return 3;
    case u'\u56DB': return 4;
    case u'\u4E94': return 5;
    case u'\u516D': return 6;
    case u'\u4E03': return 7;
    case u'\u516B': return 8;
    case u'\u4E5D': return 9;
    default: return -1;
    }
}

constexpr char16_t ten = u'\u5341';  // 十

// Digits (up to four) or a numeral below 100 written with 十; never the tail of a longer number.
std::optional<Number> numberAt(QStringView t, qsizetype p) {
    if (p >= t.size()) return std::nullopt;
    if (p > 0 && (digitOf(t[p - 1]) >= 0 || numeralOf(t[p - 1]) >= 0 || t[p - 1] == ten)) return std::nullopt;
    if (digitOf(t[p]) >= 0) {
        Number n;
        qsizetype q = p;
        while (q < t.size() && q - p < 4 && digitOf(t[q]) >= 0) n.value = n.value * 10 + digitOf(t[q++]);
        if (q < t.size() && digitOf(t[q]) >= 0) return std::nullopt;
        n.end = q;
        return n;
    }
    Number n;
    qsizetype q = p;
    int tens = -1;
    int units = numeralOf(t[q]);
    if (units >= 0) ++q;
    if (q < t.size() && t[q] == ten) {
        tens = units < 0 ? 1 : units;
        units = 0;
        ++q;
        if (q < t.size() && numeralOf(t[q]) > 0) units = numeralOf(t[q++]);
    }
    if (q == p) return std::nullopt;
    n.value = (tens < 0 ? 0 : tens * 10) + units;
    n.end = q;
    return n;
}

// The first of words that text has at p; returns its end, or -1.
qsizetype takeAny(QStringView t, qsizetype p, std::initializer_list<QStringView> words) {
    for (const QStringView word : words)
        if (t.mid(p).startsWith(word)) return p + word.size();
    return -1;
}

int weekdayOfNumeral(QChar c) {  // Chinese: 一 Monday … 六 Saturday, 日/天 Sunday; 1 is Sunday
    switch (c.unicode()) {
    case u'\u65E5': case u'\u5929': return 1;  // 日 天
    default: {
        const int n = numeralOf(c);
        return n >= 1 && n <= 6 ? n + 1 : -1;
    }
    }
}

int weekdayOfJapanese(QChar c) {  // 日月火水木金土 + 曜
    switch (c.unicode()) {
    case u'\u65E5': return 1;
    case u'\u6708': return 2;
    case u'\u706B': return 3;
    case u'\u6C34': return 4;
    case u'\u6728': return 5;
    case u'\u91D1': return 6;
    case u'\u571F': return 7;
    default: return -1;
    }
}

int weekdayOf(QDate date) { return date.dayOfWeek() % 7 + 1; }

class Scanner {
public:
    Scanner(QStringView text, const QDateTime& now, const Calendar& calendar)
        : _t(text), _now(now), _today(calendar.dateOf(now)) {}

    std::optional<Token> tokenAt(qsizetype p, bool afterToken) const {
        Token token;
        token.start = p;
        if (relative(p, token) || dayWord(p, token) || week(p, token) || weekday(p, token) || date(p, token) ||
            part(p, token) || time(p, afterToken, token))
            return token;
        return std::nullopt;
    }

private:
    bool relative(qsizetype p, Token& token) const {
        qsizetype q;
        double amount;
        if (_t.mid(p).startsWith(u"\u534A")) {  // 半 (half an hour)
            amount = 0.5;
            q = p + 1;
        } else {
            const auto n = numberAt(_t, p);
            if (!n) return false;
            amount = n->value;
            q = n->end;
        }
        qsizetype r;
        P::Unit unit;
        qsizetype c = takeAny(_t, q, {u"\u4E2A", u"\u500B", u"\u304B", u"\u30F6", u"\u30AB"});  // 个 個 か ヶ カ
        if (c < 0) c = q;
        if ((r = takeAny(_t, q, {u"\u5929", u"\u65E5"})) >= 0) unit = P::Unit::days;  // 天 日
        else if ((r = takeAny(_t, c, {u"\u661F\u671F", u"\u79AE\u62DC", u"\u793C\u62DC", u"\u5468", u"\u9031\u9593", u"\u9031"})) >= 0)
            unit = P::Unit::weeks;  // 星期 禮拜 礼拜 周 週間 週
        else if ((r = takeAny(_t, c, {u"\u6708"})) >= 0 && c != q) unit = P::Unit::months;  // (个)月
        else if ((r = takeAny(_t, c, {u"\u5C0F\u65F6", u"\u5C0F\u6642", u"\u9418\u982D", u"\u949F\u5934", u"\u6642\u9593"})) >= 0)
            unit = P::Unit::hours;  // 小时 小時 鐘頭 钟头 時間
        else if ((r = takeAny(_t, q, {u"\u5206\u949F", u"\u5206\u9418", u"\u5206\u9593", u"\u5206"})) >= 0)
            unit = P::Unit::minutes;  // 分钟 分鐘 分間 分
        else
            return false;
        const qsizetype later = takeAny(_t, r, {u"\u4EE5\u540E", u"\u4EE5\u5F8C", u"\u540E", u"\u5F8C"});  // 以后 以後 后 後
        if (later < 0) return false;
        if (unit == P::Unit::minutes || unit == P::Unit::hours) {
            token.atoms.append(P::Moment{_now.addSecs(qint64(amount * (unit == P::Unit::minutes ? 60 : 3600)))});
        } else {
            if (amount < 1) return false;
            if (unit == P::Unit::months) token.atoms.append(P::MonthOffset{int(amount)});
            else token.atoms.append(P::DayOffset{int(amount) * (unit == P::Unit::weeks ? 7 : 1)});
        }
        token.end = later;
        return true;
    }

    bool dayWord(qsizetype p, Token& token) const {
        struct Word {
            QStringView text;
            int days;
        };
        static constexpr Word words[] = {
            {u"\u5927\u540E\u5929", 3}, {u"\u5927\u5F8C\u5929", 3},  // 大后天 大後天
            {u"\u660E\u5F8C\u65E5", 2}, {u"\u3042\u3055\u3063\u3066", 2},  // 明後日 あさって
            {u"\u540E\u5929", 2}, {u"\u5F8C\u5929", 2},  // 后天 後天
            {u"\u660E\u5929", 1}, {u"\u660E\u65E5", 1}, {u"\u3042\u3057\u305F", 1}, {u"\u3042\u3059", 1},  // 明天 明日 あした あす
            {u"\u4ECA\u5929", 0}, {u"\u4ECA\u65E5", 0}, {u"\u304D\u3087\u3046", 0},  // 今天 今日 きょう
        };
        for (const Word& word : words)
            if (_t.mid(p).startsWith(word.text)) {
                token.atoms.append(P::DayOffset{word.days});
                token.end = p + word.text.size();
                return true;
            }
        // 今晚 今晩 今夜: tonight, even when it is late
        const qsizetype q = takeAny(_t, p, {u"\u4ECA\u665A", u"\u4ECA\u6669", u"\u4ECA\u591C"});
        if (q < 0) return false;
        token.atoms.append(P::Part{P::PartOfDay::night, true});
        token.end = q;
        return true;
    }

    // The weekday that follows a week word at p: 三, 日, 天, or 月曜日 and the like.
    int weekdayAfterWeekWord(qsizetype p, qsizetype& end) const {
        if (p < _t.size() && weekdayOfNumeral(_t[p]) > 0 && !(p + 1 < _t.size() && _t[p + 1] == ten)) {
            end = p + 1;
            return weekdayOfNumeral(_t[p]);
        }
        qsizetype q = takeAny(_t, p, {u"\u306E"});  // の
        if (q < 0) q = p;
        return japaneseWeekday(q, end);
    }

    int japaneseWeekday(qsizetype p, qsizetype& end) const {
        if (p + 1 >= _t.size() || _t[p + 1] != u'\u66DC') return -1;  // 曜
        const int day = weekdayOfJapanese(_t[p]);
        if (day < 0) return -1;
        end = p + 2;
        if (end < _t.size() && _t[end] == u'\u65E5') ++end;  // 日
        return day;
    }

    // Days from today to a weekday of the week that is weeksAhead weeks from this one; weeks
    // start on Monday.
    int daysTo(int day, int weeksAhead) const {
        const int fromMonday = (weekdayOf(_today) + 5) % 7;
        const int targetFromMonday = (day + 5) % 7;
        return weeksAhead * 7 + targetFromMonday - fromMonday;
    }

    bool week(qsizetype p, Token& token) const {
        // 下周 下週 下星期 下个星期 下個星期 下礼拜 下禮拜 来週 來週 / 这周 這週 本周 本週 这个星期 這個星期 今週
        qsizetype q = takeAny(_t, p, {u"\u4E0B\u4E2A\u661F\u671F", u"\u4E0B\u500B\u661F\u671F", u"\u4E0B\u661F\u671F",
                                      u"\u4E0B\u5468", u"\u4E0B\u9031", u"\u4E0B\u793C\u62DC", u"\u4E0B\u79AE\u62DC",
                                      u"\u6765\u9031", u"\u4F86\u9031"});
        int weeksAhead = 1;
        if (q < 0) {
            q = takeAny(_t, p, {u"\u8FD9\u4E2A\u661F\u671F", u"\u9019\u500B\u661F\u671F", u"\u8FD9\u5468", u"\u9019\u9031",
                                u"\u672C\u5468", u"\u672C\u9031", u"\u4ECA\u9031"});
            weeksAhead = 0;
        }
        if (q < 0) return false;
        qsizetype end = q;
        const int day = weekdayAfterWeekWord(q, end);
        if (day > 0) {
            token.atoms.append(P::DayOffset{daysTo(day, weeksAhead)});
            token.end = end;
            return true;
        }
        token.atoms.append(weeksAhead ? P::Atom(P::NextWeek{false}) : P::Atom(P::ThisWeek{}));
        token.end = q;
        return true;
    }

    bool weekday(qsizetype p, Token& token) const {
        // 周X 週X 星期X 礼拜X 禮拜X, or 月曜(日)
        const qsizetype q = takeAny(_t, p, {u"\u661F\u671F", u"\u793C\u62DC", u"\u79AE\u62DC", u"\u5468", u"\u9031"});
        qsizetype end = 0;
        int day = -1;
        if (q >= 0 && q < _t.size() && weekdayOfNumeral(_t[q]) > 0 && !(q + 1 < _t.size() && _t[q + 1] == ten)) {
            day = weekdayOfNumeral(_t[q]);
            end = q + 1;
        } else {
            day = japaneseWeekday(p, end);
        }
        if (day < 0) return false;
        token.atoms.append(P::Weekday{day, false});
        token.end = end;
        return true;
    }

    bool date(qsizetype p, Token& token) const {
        auto n = numberAt(_t, p);
        if (!n) return false;
        std::optional<int> year;
        if (n->end - p == 4 && n->end < _t.size() && _t[n->end] == u'\u5E74') {  // 年
            year = n->value;
            n = numberAt(_t, n->end + 1);
            if (!n) return false;
        }
        qsizetype q = n->end;
        if (q < _t.size() && _t[q] == u'\u6708') {  // 月
            const auto day = numberAt(_t, q + 1);
            if (!day || n->value < 1 || n->value > 12 || day->value < 1 || day->value > 31) return false;
            const qsizetype end = takeAny(_t, day->end, {u"\u65E5", u"\u53F7", u"\u865F"});  // 日 号 號
            if (end < 0) return false;
            token.atoms.append(P::Date{year, n->value, day->value});
            token.end = end;
            return true;
        }
        // 15号: a day of this month, but not 3号线 (line 3) or 5号楼 (building 5)
        if (year || n->value < 1 || n->value > 31) return false;
        const qsizetype end = takeAny(_t, q, {u"\u53F7", u"\u865F"});
        if (end < 0) return false;
        static constexpr QStringView places = u"\u7EBF\u7DDA\u697C\u6A13\u623F\u5BA4\u95E8\u9580\u8F66\u8ECA\u5E8A\u673A\u6A5F\u4F4D";
        if (end < _t.size() && places.contains(_t[end])) return false;
        token.atoms.append(P::MonthDay{n->value});
        token.end = end;
        return true;
    }

    bool part(qsizetype p, Token& token) const {
        struct Word {
            QStringView text;
            P::PartOfDay part;
            bool needsTime;  // a single character that also means other things
        };
        static constexpr Word words[] = {
            {u"\u51CC\u6668", P::PartOfDay::morning, false},  // 凌晨
            {u"\u65E9\u4E0A", P::PartOfDay::morning, false}, {u"\u65E9\u6668", P::PartOfDay::morning, false},  // 早上 早晨
            {u"\u4E0A\u5348", P::PartOfDay::morning, false}, {u"\u5348\u524D", P::PartOfDay::morning, false},  // 上午 午前
            {u"\u4E2D\u5348", P::PartOfDay::noon, false}, {u"\u6B63\u5348", P::PartOfDay::noon, false},  // 中午 正午
            {u"\u4E0B\u5348", P::PartOfDay::afternoon, false}, {u"\u5348\u5F8C", P::PartOfDay::afternoon, false},  // 下午 午後
            {u"\u508D\u665A", P::PartOfDay::evening, false}, {u"\u5915\u65B9", P::PartOfDay::evening, false},  // 傍晚 夕方
            {u"\u665A\u4E0A", P::PartOfDay::evening, false},  // 晚上
            {u"\u591C\u91CC", P::PartOfDay::night, false}, {u"\u591C\u88E1", P::PartOfDay::night, false},  // 夜里 夜裡
            {u"\u671D", P::PartOfDay::morning, true}, {u"\u663C", P::PartOfDay::noon, true},  // 朝 昼
            {u"\u665A", P::PartOfDay::evening, true}, {u"\u591C", P::PartOfDay::night, true},  // 晚 夜
        };
        for (const Word& word : words) {
            if (!_t.mid(p).startsWith(word.text)) continue;
            const qsizetype end = p + word.text.size();
            Token probe;
            if (word.needsTime && !time(end, true, probe)) return false;
            // 午前 and 上午 read their hours as written, 午後 and 下午 as afternoon ones.
            token.atoms.append(P::Part{word.part, false});
            token.end = end;
            return true;
        }
        return false;
    }

    bool time(qsizetype p, bool afterToken, Token& token) const {
        const auto n = numberAt(_t, p);
        if (!n || n->value > 24) return false;
        qsizetype q = n->end;
        int minute = 0;
        bool more = false;
        if (q < _t.size() && (_t[q] == u':' || _t[q] == u'\uFF1A')) {
            const auto m = numberAt(_t, q + 1);
            if (!m || m->end - (q + 1) != 2 || digitOf(_t[q + 1]) < 0 || m->value > 59) return false;
            minute = m->value;
            q = m->end;
            more = true;
        } else {
            q = takeAny(_t, q, {u"\u70B9", u"\u9EDE", u"\u6642", u"\u65F6"});  // 点 點 時 时
            if (q < 0) return false;
            if (q < _t.size() && _t[q] == u'\u9593') return false;  // 時間 is a duration
            if (q < _t.size() && _t[q] == u'\u534A') {  // 半
                minute = 30;
                ++q;
                more = true;
            } else if (const qsizetype whole = takeAny(_t, q, {u"\u949F", u"\u9418", u"\u6574"}); whole >= 0) {  // 钟 鐘 整
                q = whole;
                more = true;
            } else if (const auto m = numberAt(_t, q); m && m->value < 60) {
                minute = m->value;
                q = m->end;
                const qsizetype unit = takeAny(_t, q, {u"\u5206"});  // 分
                if (unit >= 0) q = unit;
                more = true;
            }
        }
        // 一点 alone also means "a little", and 三点 "three points": spelled hours need company.
        const bool spelled = digitOf(_t[p]) < 0;
        if (spelled && !more && !afterToken) return false;
        token.atoms.append(P::Time{n->value, minute, std::nullopt, false});
        token.end = q;
        return true;
    }

    QStringView _t;
    QDateTime _now;
    QDate _today;
};

bool isConnector(QChar c) {
    return c.isSpace() || c == u'\u7684' || c == u'\u306E';  // 的 の
}

}  // namespace

QList<DueDateParser::Chain> CjkDateGrammar::chains(QStringView text, const QDateTime& now, const Calendar& calendar) {
    const Scanner scanner(text, now, calendar);
    QList<DueDateParser::Chain> chains;
    qsizetype p = 0;
    while (p < text.size()) {
        auto token = scanner.tokenAt(p, false);
        if (!token) {
            ++p;
            continue;
        }
        DueDateParser::Chain chain;
        chain.start = token->start;
        qsizetype end = token->end;
        for (const auto& atom : token->atoms) chain.atoms.append(atom);
        while (true) {
            qsizetype q = end;
            while (q < text.size() && isConnector(text[q])) ++q;
            auto next = scanner.tokenAt(q, true);
            if (!next) break;
            for (const auto& atom : next->atoms) chain.atoms.append(atom);
            end = next->end;
        }
        // 在 before, and 之前 以前 前 まで(に) に after, go with the phrase.
        if (chain.start > 0 && text[chain.start - 1] == u'\u5728') --chain.start;
        const qsizetype trailing = takeAny(text, end, {u"\u4E4B\u524D", u"\u4EE5\u524D", u"\u307E\u3067\u306B",
                                                       u"\u307E\u3067", u"\u524D", u"\u306B"});
        chain.end = trailing >= 0 ? trailing : end;
        chains.append(std::move(chain));
        p = end;
    }
    return chains;
}

}  // namespace vuro
