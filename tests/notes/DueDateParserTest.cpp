#include "notes/DueDateParser.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;

namespace {

const Calendar berlin(QTimeZone("Europe/Berlin"));

QDateTime at(const char* local) {
    return berlin.at(QDate::fromString(QString::fromLatin1(local).left(10), Qt::ISODate),
                     QTime::fromString(QString::fromLatin1(local).mid(11), QStringLiteral("HH:mm")));
}

// Reference moments: a Wednesday morning, the same Wednesday late at night, the evening before
// clocks go forward, the last days of a year.
const char* const wednesday = "2026-05-20 10:00";
const char* const lateNight = "2026-05-20 23:30";
const char* const beforeDst = "2026-03-28 23:30";
const char* const yearEnd = "2026-12-30 10:00";

struct Case {
    const char* now;
    const char* text;
    const char* due;        // "yyyy-MM-dd[ HH:mm]", or "" for no date
    const char* remainder;  // the text without the phrase, when the range matters
};

QString describe(const TaskDue& due) { return due.mark().mid(3); }

void check(const Case& c) {
    const QString text = QString::fromUtf8(c.text);
    const auto found = DueDateParser::find(text, at(c.now), berlin);
    if (!*c.due) {
        EXPECT_FALSE(found) << c.text << " gave " << (found ? describe(found->due).toStdString() : "");
        return;
    }
    ASSERT_TRUE(found) << c.text;
    EXPECT_EQ(describe(found->due), QString::fromUtf8(c.due)) << c.text << " at " << c.now;
    if (c.remainder) {
        EXPECT_EQ(found->remainder(text), QString::fromUtf8(c.remainder)) << c.text;
    }
}

}  // namespace

TEST(DueDateParser, English) {
    const Case cases[] = {
        {wednesday, "call Ann tomorrow", "2026-05-21", "call Ann"},
        {wednesday, "call Ann tomorrow at 10", "2026-05-21 10:00", "call Ann"},
        {wednesday, "Call Ann TOMORROW at 10", "2026-05-21 10:00", "Call Ann"},
        {wednesday, "tomorrow", "2026-05-21", "tomorrow"},
        {wednesday, "today", "2026-05-20", nullptr},
        {wednesday, "finish today!", "2026-05-20", nullptr},
        {wednesday, "tomorrow's review", "2026-05-21", "review"},
        {wednesday, "day after tomorrow", "2026-05-22", nullptr},
        {wednesday, "ship it the day after tomorrow", "2026-05-22", "ship it the"},
        {wednesday, "meet at 5pm", "2026-05-20 17:00", "meet"},
        {wednesday, "meet at 5 pm", "2026-05-20 17:00", "meet"},
        {wednesday, "meet 5pm", "2026-05-20 17:00", "meet"},
        {wednesday, "dinner at 7:30 p.m. with Bo", "2026-05-20 19:30", "dinner with Bo"},
        {wednesday, "dinner 7:30pm", "2026-05-20 19:30", nullptr},
        {wednesday, "call at 9am", "2026-05-21 09:00", "call"},
        {wednesday, "call at 11am", "2026-05-20 11:00", "call"},
        {wednesday, "call at 12am", "2026-05-21 00:00", nullptr},
        {wednesday, "call at 12pm", "2026-05-20 12:00", nullptr},
        {wednesday, "call at 10", "2026-05-21 10:00", nullptr},
        {wednesday, "call at 4", "2026-05-20 16:00", nullptr},
        {wednesday, "call at 7", "2026-05-21 07:00", nullptr},
        {wednesday, "standup at 09", "2026-05-21 09:00", nullptr},
        {wednesday, "report by friday", "2026-05-22", "report"},
        {wednesday, "pay rent on monday", "2026-05-25", "pay rent"},
        {wednesday, "tuesday", "2026-05-26", nullptr},
        {wednesday, "wednesday", "2026-05-27", nullptr},
        {wednesday, "this wednesday", "2026-05-20", nullptr},
        {wednesday, "thursday", "2026-05-21", nullptr},
        {wednesday, "saturday", "2026-05-23", nullptr},
        {wednesday, "sunday", "2026-05-24", nullptr},
        {wednesday, "this friday", "2026-05-22", nullptr},
        {wednesday, "next friday", "2026-05-29", nullptr},
        {wednesday, "next week", "2026-05-25", nullptr},
        {wednesday, "plan next week", "2026-05-25", "plan"},
        {wednesday, "next week friday", "2026-05-29", nullptr},
        {wednesday, "friday at 3", "2026-05-22 15:00", nullptr},
        {wednesday, "friday 10:30", "2026-05-22 10:30", nullptr},
        {wednesday, "on friday at 8pm", "2026-05-22 20:00", nullptr},
        {wednesday, "in 2 hours", "2026-05-20 12:00", nullptr},
        {wednesday, "in 30 minutes", "2026-05-20 10:30", nullptr},
        {wednesday, "in 45 mins", "2026-05-20 10:45", nullptr},
        {wednesday, "in an hour", "2026-05-20 11:00", nullptr},
        {wednesday, "in a week", "2026-05-27", nullptr},
        {wednesday, "in two weeks", "2026-06-03", nullptr},
        {wednesday, "in 3 days", "2026-05-23", nullptr},
        {wednesday, "in 2 months", "2026-07-20", nullptr},
        {wednesday, "renew in ten days please", "2026-05-30", "renew please"},
        {wednesday, "tonight", "2026-05-20 22:00", nullptr},
        {wednesday, "tonight at 11", "2026-05-20 23:00", nullptr},
        {wednesday, "tomorrow morning", "2026-05-21 09:00", nullptr},
        {wednesday, "tomorrow afternoon", "2026-05-21 15:00", nullptr},
        {wednesday, "tomorrow evening", "2026-05-21 19:00", nullptr},
        {wednesday, "tomorrow night", "2026-05-21 22:00", nullptr},
        {wednesday, "tomorrow morning at 7", "2026-05-21 07:00", nullptr},
        {wednesday, "tomorrow evening at 8", "2026-05-21 20:00", nullptr},
        {wednesday, "evening", "2026-05-20 19:00", nullptr},
        {wednesday, "morning", "2026-05-21 09:00", nullptr},
        {wednesday, "noon", "2026-05-20 12:00", nullptr},
        {wednesday, "lunch at noon tomorrow", "2026-05-21 12:00", "lunch"},
        {wednesday, "midday", "2026-05-20 12:00", nullptr},
        {wednesday, "March 5", "2027-03-05", nullptr},
        {wednesday, "on July 4th", "2026-07-04", "on July 4th"},
        {wednesday, "party july 4th", "2026-07-04", "party"},
        {wednesday, "5 june", "2026-06-05", nullptr},
        {wednesday, "until 10 June", "2026-06-10", nullptr},
        {wednesday, "Dec 25 2026", "2026-12-25", nullptr},
        {wednesday, "Sept 1st, 2027", "2027-09-01", nullptr},
        {wednesday, "may 20", "2026-05-20", nullptr},
        {wednesday, "may 19", "2027-05-19", nullptr},
        {wednesday, "may 25 at 9am", "2026-05-25 09:00", nullptr},
        {wednesday, "feb 30", "", nullptr},
        {wednesday, "(call Ann tomorrow)", "2026-05-21", nullptr},
        {wednesday, "\"tomorrow\"", "2026-05-21", nullptr},
        {wednesday, "email Bob tomorrow, about it", "2026-05-21", nullptr},
        {wednesday, "review: tomorrow", "2026-05-21", "review"},
        {wednesday, "tomorrow — ask Ann", "2026-05-21", "ask Ann"},
        {lateNight, "tonight", "2026-05-20 22:00", nullptr},
        {lateNight, "at 10", "2026-05-21 10:00", nullptr},
        {lateNight, "morning", "2026-05-21 09:00", nullptr},
        {lateNight, "in 45 minutes", "2026-05-21 00:15", nullptr},
        {lateNight, "tomorrow", "2026-05-21", nullptr},
        {yearEnd, "tomorrow", "2026-12-31", nullptr},
        {yearEnd, "day after tomorrow", "2027-01-01", nullptr},
        {yearEnd, "next week", "2027-01-04", nullptr},
        {yearEnd, "5 Jan", "2027-01-05", nullptr},
        {yearEnd, "in 1 month", "2027-01-30", nullptr},
        {yearEnd, "in 2 weeks", "2027-01-13", nullptr},
    };
    for (const Case& c : cases) check(c);
}

TEST(DueDateParser, TurkishWithAndWithoutDiacriticsAndApostrophes) {
    const Case cases[] = {
        {wednesday, "yarın", "2026-05-21", nullptr},
        {wednesday, "yarin", "2026-05-21", nullptr},
        {wednesday, "YARIN", "2026-05-21", nullptr},
        {wednesday, "Ali'yi yarın ara", "2026-05-21", "Ali'yi ara"},
        {wednesday, "yarına kadar bitir", "2026-05-21", "bitir"},
        {wednesday, "yarın'a kadar bitir", "2026-05-21", "bitir"},
        {wednesday, "bugün", "2026-05-20", nullptr},
        {wednesday, "bugun aksam", "2026-05-20 19:00", nullptr},
        {wednesday, "bu akşam", "2026-05-20 19:00", nullptr},
        {wednesday, "Yarın sabah", "2026-05-21 09:00", nullptr},
        {wednesday, "yarın sabah 7de", "2026-05-21 07:00", nullptr},
        {wednesday, "yarin aksam 7de", "2026-05-21 19:00", nullptr},
        {wednesday, "yarın akşam 7'de", "2026-05-21 19:00", nullptr},
        {wednesday, "yarın öğleden sonra", "2026-05-21 15:00", nullptr},
        {wednesday, "yarin ogleden sonra 2de", "2026-05-21 14:00", nullptr},
        {wednesday, "öğlen 1de", "2026-05-20 13:00", nullptr},
        {wednesday, "öğleyin", "2026-05-20 12:00", nullptr},
        {wednesday, "öğlede", "2026-05-20 12:00", nullptr},
        {wednesday, "akşamüstü", "2026-05-20 19:00", nullptr},
        {wednesday, "akşamleyin", "2026-05-20 19:00", nullptr},
        {wednesday, "gece 11de", "2026-05-20 23:00", nullptr},
        {wednesday, "gece 2de", "2026-05-21 02:00", nullptr},
        {wednesday, "gece 12de", "2026-05-21 00:00", nullptr},
        {wednesday, "geceleyin", "2026-05-20 22:00", nullptr},
        {wednesday, "sabahleyin", "2026-05-21 09:00", nullptr},
        {wednesday, "saat 5'te", "2026-05-20 17:00", "saat 5'te"},
        {wednesday, "saat 5te", "2026-05-20 17:00", nullptr},
        {wednesday, "5'te", "2026-05-20 17:00", nullptr},
        {wednesday, "sabah 5'te", "2026-05-21 05:00", nullptr},
        {wednesday, "sabah 11'de", "2026-05-20 11:00", nullptr},
        {wednesday, "saat 14:30", "2026-05-20 14:30", nullptr},
        {wednesday, "14.30'da toplantı", "2026-05-20 14:30", "toplantı"},
        {wednesday, "saat 1.50", "2026-05-20 13:50", nullptr},
        {wednesday, "saat 9", "2026-05-21 09:00", nullptr},
        {wednesday, "yarım saat sonra", "2026-05-20 10:30", "yarım saat sonra"},
        {wednesday, "yarim saat sonra", "2026-05-20 10:30", nullptr},
        {wednesday, "2 saat sonra", "2026-05-20 12:00", nullptr},
        {wednesday, "iki saat sonra", "2026-05-20 12:00", nullptr},
        {wednesday, "20 dakika sonra", "2026-05-20 10:20", nullptr},
        {wednesday, "on dk sonra", "2026-05-20 10:10", nullptr},
        {wednesday, "3 gün sonra", "2026-05-23", nullptr},
        {wednesday, "üç gün sonra", "2026-05-23", nullptr},
        {wednesday, "iki hafta sonra", "2026-06-03", nullptr},
        {wednesday, "bir ay sonra", "2026-06-20", nullptr},
        {wednesday, "yarım gün sonra", "", nullptr},
        {wednesday, "pazartesi", "2026-05-25", nullptr},
        {wednesday, "Pazartesi'ye", "2026-05-25", nullptr},
        {wednesday, "raporu pazartesiye kadar bitir", "2026-05-25", "raporu bitir"},
        {wednesday, "PAZARTESİ", "2026-05-25", nullptr},
        {wednesday, "salı", "2026-05-26", nullptr},
        {wednesday, "sali", "2026-05-26", nullptr},
        {wednesday, "Salı'ya", "2026-05-26", nullptr},
        {wednesday, "çarşamba", "2026-05-27", nullptr},
        {wednesday, "carsamba", "2026-05-27", nullptr},
        {wednesday, "perşembe", "2026-05-21", nullptr},
        {wednesday, "persembeye", "2026-05-21", nullptr},
        {wednesday, "cuma", "2026-05-22", nullptr},
        {wednesday, "cumaya", "2026-05-22", nullptr},
        {wednesday, "Cuma günü saat 3te", "2026-05-22 15:00", nullptr},
        {wednesday, "cumartesi", "2026-05-23", nullptr},
        {wednesday, "Cumartesi'de", "2026-05-23", nullptr},
        {wednesday, "pazar günü", "2026-05-24", "pazar günü"},
        {wednesday, "Pazar günü annemi ara", "2026-05-24", "annemi ara"},
        {wednesday, "pazarda", "2026-05-24", nullptr},
        {wednesday, "pazarlık yap", "", nullptr},
        {wednesday, "pazara git", "", nullptr},
        {wednesday, "call Ann at the pazar", "", nullptr},
        {wednesday, "pazardan ekmek al", "", nullptr},
        {wednesday, "bu pazar", "2026-05-24", nullptr},
        {wednesday, "bu cuma", "2026-05-22", nullptr},
        {wednesday, "haftaya", "2026-05-27", nullptr},
        {wednesday, "haftaya salı", "2026-05-26", nullptr},
        {wednesday, "haftaya cuma", "2026-05-29", nullptr},
        {wednesday, "gelecek hafta", "2026-05-25", nullptr},
        {wednesday, "gelecek hafta cuma", "2026-05-29", nullptr},
        {wednesday, "gelecek haftaya", "2026-05-25", nullptr},
        {wednesday, "bu hafta", "", nullptr},
        {wednesday, "öbür gün", "2026-05-22", nullptr},
        {wednesday, "obur gun", "2026-05-22", nullptr},
        {wednesday, "öbürgün", "2026-05-22", nullptr},
        {wednesday, "ayın 25'i", "2026-05-25", nullptr},
        {wednesday, "ayın 25'inde", "2026-05-25", nullptr},
        {wednesday, "ayin 3'u", "2026-05-03", nullptr},
        {wednesday, "faturayı yarın öde, lütfen", "2026-05-21", "faturayı öde, lütfen"},
        {wednesday, "raporu pazartesi saat 10'da gönder", "2026-05-25 10:00", "raporu gönder"},
        {lateNight, "yarın", "2026-05-21", nullptr},
        {lateNight, "akşam", "2026-05-21 19:00", nullptr},
        {lateNight, "sabah", "2026-05-21 09:00", nullptr},
        {yearEnd, "yarın", "2026-12-31", nullptr},
        {yearEnd, "haftaya", "2027-01-06", nullptr},
    };
    for (const Case& c : cases) check(c);
}

TEST(DueDateParser, NumericForms) {
    const Case cases[] = {
        {wednesday, "2026-06-01", "2026-06-01", nullptr},
        {wednesday, "due 2026-6-1", "2026-06-01", "due"},
        {wednesday, "2025-01-01", "2025-01-01", nullptr},
        {wednesday, "2026-02-30", "", nullptr},
        {wednesday, "3/4", "2027-04-03", nullptr},
        {wednesday, "3.4", "2027-04-03", nullptr},
        {wednesday, "1.5", "2027-05-01", nullptr},
        {wednesday, "15/6", "2026-06-15", nullptr},
        {wednesday, "15.06", "2026-06-15", nullptr},
        {wednesday, "20.05", "2026-05-20", nullptr},
        {wednesday, "15.06.2026", "2026-06-15", nullptr},
        {wednesday, "15/6/27", "2027-06-15", nullptr},
        {wednesday, "1.1.2020", "2020-01-01", nullptr},
        {wednesday, "31/2", "", nullptr},
        {wednesday, "32/1", "", nullptr},
        {wednesday, "12/13", "", nullptr},
        {wednesday, "15/6 at 9am", "2026-06-15 09:00", nullptr},
        {wednesday, "10:30", "2026-05-20 10:30", nullptr},
        {wednesday, "10:00", "2026-05-21 10:00", nullptr},
        {wednesday, "09:00", "2026-05-21 09:00", nullptr},
        {wednesday, "5:30", "2026-05-20 17:30", nullptr},
        {wednesday, "05:30", "2026-05-21 05:30", nullptr},
        {wednesday, "18:45", "2026-05-20 18:45", nullptr},
        {wednesday, "0:15", "2026-05-21 00:15", nullptr},
        {wednesday, "23:59", "2026-05-20 23:59", nullptr},
        {wednesday, "24:30", "2026-05-21 00:30", nullptr},
        {wednesday, "25:00", "", nullptr},
        {wednesday, "12:60", "", nullptr},
        {wednesday, "3pm", "2026-05-20 15:00", nullptr},
        {wednesday, "11am", "2026-05-20 11:00", nullptr},
        {wednesday, "7a.m", "2026-05-21 07:00", nullptr},
        {wednesday, "3:15pm", "2026-05-20 15:15", nullptr},
        {wednesday, "8 p.m.", "2026-05-20 20:00", nullptr},
        {wednesday, "5de", "2026-05-20 17:00", nullptr},
        {wednesday, "tomorrow 14:00", "2026-05-21 14:00", nullptr},
        {wednesday, "ＡＢＣ tomorrow １４:００", "2026-05-21 14:00", nullptr},
    };
    for (const Case& c : cases) check(c);
}

TEST(DueDateParser, LeavesPagesQuantitiesAndPhoneNumbersAlone) {
    const Case cases[] = {
        {wednesday, "sayfa 5", "", nullptr},
        {wednesday, "sayfa 12'yi oku", "", nullptr},
        {wednesday, "read page 5", "", nullptr},
        {wednesday, "read page 12.5", "", nullptr},
        {wednesday, "chapter 3", "", nullptr},
        {wednesday, "room 10:30", "", nullptr},
        {wednesday, "step 2 at 5", "2026-05-20 17:00", nullptr},
        {wednesday, "kat 3", "", nullptr},
        {wednesday, "oda 12.30", "", nullptr},
        {wednesday, "no. 5", "", nullptr},
        {wednesday, "soru 4.2", "", nullptr},
        {wednesday, "madde 3.1", "", nullptr},
        {wednesday, "5 kg", "", nullptr},
        {wednesday, "buy 2 kg apples", "", nullptr},
        {wednesday, "2.5 kg un", "", nullptr},
        {wednesday, "1.5 lt süt", "", nullptr},
        {wednesday, "3 adet yumurta", "", nullptr},
        {wednesday, "10 tane kalem", "", nullptr},
        {wednesday, "2 çay 1 kahve", "", nullptr},
        {wednesday, "5 tl", "", nullptr},
        {wednesday, "12.50 tl ver", "", nullptr},
        {wednesday, "at 5 kg", "", nullptr},
        {wednesday, "saat 5 kg", "", nullptr},
        {wednesday, "call 555-1234", "", nullptr},
        {wednesday, "0532 123 45 67", "", nullptr},
        {wednesday, "+90 532 123 4567", "", nullptr},
        {wednesday, "tel 0212 555 12 34", "", nullptr},
        {wednesday, "buy 3 apples", "", nullptr},
        {wednesday, "top 10 list", "", nullptr},
        {wednesday, "version 1.2.3", "", nullptr},
        {wednesday, "12345", "", nullptr},
        {wednesday, "3 days", "", nullptr},
        {wednesday, "20 dakika", "", nullptr},
        {wednesday, "may I help", "", nullptr},
        {wednesday, "at home", "", nullptr},
        {wednesday, "this week", "", nullptr},
        {wednesday, "in a minute", "2026-05-20 10:01", nullptr},
        {wednesday, "📅 2026-05-01 tomorrow", "", nullptr},
        {wednesday, "tomorrow 📅2026-05-01", "", nullptr},
        {wednesday, "", "", nullptr},
        {wednesday, "   ", "", nullptr},
        {wednesday, "!!! ???", "", nullptr},
        {wednesday, "- - -", "", nullptr},
        {wednesday, "buy milk", "", nullptr},
        {wednesday, "Ankara'ya git", "", nullptr},
        {wednesday, "in 0 days", "", nullptr},
        {wednesday, "in 999999 months", "", nullptr},
    };
    for (const Case& c : cases) check(c);
}

TEST(DueDateParser, ChineseAndJapanese) {
    const Case cases[] = {
        {wednesday, "明天", "2026-05-21", nullptr},
        {wednesday, "今天", "2026-05-20", nullptr},
        {wednesday, "后天", "2026-05-22", nullptr},
        {wednesday, "後天", "2026-05-22", nullptr},
        {wednesday, "大后天", "2026-05-23", nullptr},
        {wednesday, "明天给妈妈打电话", "2026-05-21", "给妈妈打电话"},
        {wednesday, "明天下午三点开会", "2026-05-21 15:00", "开会"},
        {wednesday, "明天上午9点", "2026-05-21 09:00", nullptr},
        {wednesday, "明天 上午 9点", "2026-05-21 09:00", nullptr},
        {wednesday, "今天晚上8点", "2026-05-20 20:00", nullptr},
        {wednesday, "今晚", "2026-05-20 22:00", nullptr},
        {wednesday, "今晚十点", "2026-05-20 22:00", nullptr},
        {wednesday, "下午3点半", "2026-05-20 15:30", nullptr},
        {wednesday, "下午三点半", "2026-05-20 15:30", nullptr},
        {wednesday, "晚上9點", "2026-05-20 21:00", nullptr},
        {wednesday, "上午11点", "2026-05-20 11:00", nullptr},
        {wednesday, "上午10点", "2026-05-21 10:00", nullptr},
        {wednesday, "中午12点", "2026-05-20 12:00", nullptr},
        {wednesday, "下午3時", "2026-05-20 15:00", nullptr},
        {wednesday, "3点", "2026-05-20 15:00", nullptr},
        {wednesday, "14点30分", "2026-05-20 14:30", nullptr},
        {wednesday, "十二点十五分", "2026-05-20 12:15", nullptr},
        {wednesday, "明天10:30", "2026-05-21 10:30", nullptr},
        {wednesday, "下周三", "2026-05-27", nullptr},
        {wednesday, "下週五", "2026-05-29", nullptr},
        {wednesday, "下星期一", "2026-05-25", nullptr},
        {wednesday, "下周日", "2026-05-31", nullptr},
        {wednesday, "下周", "2026-05-25", nullptr},
        {wednesday, "下周三下午两点", "2026-05-27 14:00", nullptr},
        {wednesday, "这周五", "2026-05-22", nullptr},
        {wednesday, "周一", "2026-05-25", nullptr},
        {wednesday, "周五", "2026-05-22", nullptr},
        {wednesday, "週五", "2026-05-22", nullptr},
        {wednesday, "星期天", "2026-05-24", nullptr},
        {wednesday, "星期日", "2026-05-24", nullptr},
        {wednesday, "星期三", "2026-05-27", nullptr},
        {wednesday, "礼拜六", "2026-05-23", nullptr},
        {wednesday, "周一前交报告", "2026-05-25", "交报告"},
        {wednesday, "在周五之前完成", "2026-05-22", "完成"},
        {wednesday, "3月5日", "2027-03-05", nullptr},
        {wednesday, "6月1日", "2026-06-01", nullptr},
        {wednesday, "6月1号", "2026-06-01", nullptr},
        {wednesday, "2026年7月4日", "2026-07-04", nullptr},
        {wednesday, "６月１日", "2026-06-01", nullptr},
        {wednesday, "十月一日", "2026-10-01", nullptr},
        {wednesday, "2月30日", "", nullptr},
        {wednesday, "13月1日", "", nullptr},
        {wednesday, "25号", "2026-05-25", nullptr},
        {wednesday, "2小时后", "2026-05-20 12:00", nullptr},
        {wednesday, "半小时后", "2026-05-20 10:30", nullptr},
        {wednesday, "3天后", "2026-05-23", nullptr},
        {wednesday, "两周后", "2026-06-03", nullptr},
        {wednesday, "一个月后", "2026-06-20", nullptr},
        {wednesday, "今日", "2026-05-20", nullptr},
        {wednesday, "明日", "2026-05-21", nullptr},
        {wednesday, "明後日", "2026-05-22", nullptr},
        {wednesday, "来週", "2026-05-25", nullptr},
        {wednesday, "来週の月曜日", "2026-05-25", nullptr},
        {wednesday, "来週金曜日", "2026-05-29", nullptr},
        {wednesday, "金曜日", "2026-05-22", nullptr},
        {wednesday, "土曜", "2026-05-23", nullptr},
        {wednesday, "今週の金曜日", "2026-05-22", nullptr},
        {wednesday, "午後3時", "2026-05-20 15:00", nullptr},
        {wednesday, "午前9時30分", "2026-05-21 09:30", nullptr},
        {wednesday, "午前11時", "2026-05-20 11:00", nullptr},
        {wednesday, "明日の午後2時に電話", "2026-05-21 14:00", "電話"},
        {wednesday, "3日後", "2026-05-23", nullptr},
        {wednesday, "2時間後", "2026-05-20 12:00", nullptr},
        {wednesday, "3か月後", "2026-08-20", nullptr},
        {wednesday, "注意三点", "", nullptr},
        {wednesday, "买一点水", "", nullptr},
        {wednesday, "坐3号线", "", nullptr},
        {wednesday, "房间1203号", "", nullptr},
        {wednesday, "周末愉快", "", nullptr},
        {wednesday, "买牛奶", "", nullptr},
        {wednesday, "会議の準備", "", nullptr},
        {wednesday, "买牛奶 tomorrow", "2026-05-21", "买牛奶"},
        {lateNight, "今晚", "2026-05-20 22:00", nullptr},
        {lateNight, "早上", "2026-05-21 09:00", nullptr},
    };
    for (const Case& c : cases) check(c);
}

TEST(DueDateParser, KeepsWallClockTimeAcrossAChangeToSummerTime) {
    const QDateTime now = at(beforeDst);
    const auto found = DueDateParser::find(u"call Ann tomorrow at 10", now, berlin);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->due, TaskDue(2026, 3, 29, 10, 0));
    // 10:00 summer time is 08:00 UTC, though only 9.5 hours after a 23:30 winter-time evening.
    EXPECT_EQ(found->due.date(berlin).toUTC(), QDateTime(QDate(2026, 3, 29), QTime(8, 0), Qt::UTC));
    EXPECT_EQ(now.secsTo(found->due.date(berlin)), 9 * 3600 + 30 * 60);

    // A relative amount counts real time: two hours from 01:30 winter time is 04:30 summer time.
    const auto later = DueDateParser::find(u"in 2 hours", at("2026-03-29 01:30"), berlin);
    ASSERT_TRUE(later);
    EXPECT_EQ(later->due, TaskDue(2026, 3, 29, 4, 30));
}

TEST(DueDateParser, ReadsLocalTimeWhenNoZoneIsGiven) {
    qputenv("TZ", "America/New_York");
    tzset();
    const QDateTime now(QDate(2026, 5, 20), QTime(23, 30));  // local time
    const auto found = DueDateParser::find(u"tomorrow at 9am", now);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->due, TaskDue(2026, 5, 21, 9, 0));
    EXPECT_EQ(found->due.date().toUTC(), QDateTime(QDate(2026, 5, 21), QTime(13, 0), Qt::UTC));
}
