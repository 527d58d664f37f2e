// Throughput of the date-phrase parser over task lines as people write them: most have no date,
// some have English, Turkish, numeric or Chinese and Japanese phrases.
#include "notes/DueDateParser.h"
#include "notes/TaskLine.h"

#include <benchmark/benchmark.h>

using namespace vuro;

namespace {

const QStringList& lines() {
    static const QStringList all = [] {
        const char* const texts[] = {
            "buy milk", "call Ann tomorrow at 10", "finish the quarterly report", "pay rent on monday",
            "read page 12 of the contract", "buy 2 kg apples and 1 lt milk", "dentist 15/6 at 9am",
            "yarın sabah Ali'yi ara", "faturayı öde", "Pazartesi'ye kadar sunumu bitir", "saat 5'te toplantı",
            "3 adet yumurta al", "water the plants", "review PR #4821 before merging", "in 2 hours check the oven",
            "send invoice to ACME Corp.", "gelecek hafta cuma raporu gönder", "明天下午三点开会", "買牛奶",
            "来週の月曜日に電話", "book flights for the conference in Berlin", "fix the login bug",
            "renew passport", "meeting notes → share with team", "update dependencies to version 1.2.3",
            "ask Bo about the budget next week", "call 0532 123 45 67", "prepare slides", "gym tonight",
            "kitap oku, sayfa 50'ye kadar", "2026-06-01 deadline", "clean the kitchen", "email the landlord",
            "akşam 7de yemek", "organise photos from the trip", "submit expense report by friday",
            "think about the Q3 roadmap", "tidy desk", "haftaya salı doktor", "order new keyboard",
        };
        QStringList list;
        for (const char* text : texts) list.append(QString::fromUtf8(text));
        return list;
    }();
    return all;
}

void findInTaskLines(benchmark::State& state) {
    const Calendar calendar(QTimeZone("Europe/Istanbul"));
    const QDateTime now = calendar.at(QDate(2026, 5, 20), QTime(10, 0));
    const QStringList& texts = lines();
    qsizetype found = 0;
    for (auto _ : state)
        for (const QString& text : texts) {
            const auto phrase = DueDateParser::find(text, now, calendar);
            found += phrase.has_value();
            benchmark::DoNotOptimize(phrase);
        }
    state.SetItemsProcessed(state.iterations() * texts.size());
    state.counters["withDate"] = double(found) / double(state.iterations());
}
BENCHMARK(findInTaskLines);

// The commit path of the editor: a 200-line body in which one new line is a task with a date.
void applyDueDatesToABody(benchmark::State& state) {
    const Calendar calendar(QTimeZone("Europe/Istanbul"));
    const QDateTime now = calendar.at(QDate(2026, 5, 20), QTime(10, 0));
    QString old;
    for (int i = 0; i < 200; ++i) old += QStringLiteral("- [ ] ") + lines()[i % lines().size()] + u'\n';
    const QString edited = old + QStringLiteral("- [ ] call Ann tomorrow at 10");
    for (auto _ : state) benchmark::DoNotOptimize(TaskLine::applyDueDates(edited, old, now, calendar));
}
BENCHMARK(applyDueDatesToABody);

}  // namespace

BENCHMARK_MAIN();
