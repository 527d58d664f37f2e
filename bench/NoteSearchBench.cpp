// Parse + match + sort over 10,000 notes with 2 KB bodies, as the Notes window does on each
// keystroke in its search line. The facts cache is warm, as it is after the window's first pass;
// the cold pass (folding every body) is measured separately.
#include "library/NoteFacts.h"
#include "library/NoteFilter.h"

#include <QRandomGenerator>
#include <benchmark/benchmark.h>

using namespace vuro;

namespace {

const QDateTime now = QDateTime::fromSecsSinceEpoch(1'780'000'000);

// Notes as people write them: mostly everyday words, each topic word in a minority of the notes,
// so that every query below keeps some notes and drops others. (With a handful of words repeated
// over 2 KB every note held every word, and an exclusion left nothing to sort.)
QList<Note> makeNotes(int count) {
    static const QStringList everyday{
        QStringLiteral("the"),     QStringLiteral("and"),    QStringLiteral("to"),      QStringLiteral("of"),
        QStringLiteral("we"),      QStringLiteral("should"), QStringLiteral("check"),   QStringLiteral("with"),
        QStringLiteral("team"),    QStringLiteral("about"),  QStringLiteral("next"),    QStringLiteral("week"),
        QStringLiteral("call"),    QStringLiteral("Ann"),    QStringLiteral("notes"),   QStringLiteral("idea"),
        QStringLiteral("meeting"), QStringLiteral("review"), QStringLiteral("Monday"),  QStringLiteral("list"),
        QStringLiteral("send"),    QStringLiteral("update"), QStringLiteral("question"), QStringLiteral("maybe"),
        QStringLiteral("later"),   QStringLiteral("today"),  QStringLiteral("email"),   QStringLiteral("order"),
        QStringLiteral("book"),    QStringLiteral("garden"), QStringLiteral("budget"),  QStringLiteral("release")};
    // Rare words: each line holds one with a small chance, so a note holds each in about a third.
    static const QStringList topical{QStringLiteral("project"), QStringLiteral("plan"),  QStringLiteral("İstanbul"),
                                     QStringLiteral("draft"),   QStringLiteral("Café"),  QStringLiteral("kapı"),
                                     QStringLiteral("ferry"),   QStringLiteral("invoice")};
    static const QStringList tags{QStringLiteral("work"), QStringLiteral("home"), QStringLiteral("travel"),
                                  QStringLiteral("ideas"), QStringLiteral("work-items")};
    QRandomGenerator random(42);
    QList<Note> notes;
    notes.reserve(count);
    for (int i = 0; i < count; ++i) {
        Note note;
        note.id = QStringLiteral("N%1").arg(i);
        note.title = everyday[random.bounded(everyday.size())] + QLatin1Char(' ') + topical[random.bounded(topical.size())];
        QString body;
        while (body.size() < 2000) {
            if (random.bounded(8) == 0) body += QStringLiteral("- [ ] ");
            for (int w = 0; w < 10; ++w) body += everyday[random.bounded(everyday.size())] + QLatin1Char(' ');
            if (random.bounded(40) == 0) body += QStringLiteral("project plan ");
            if (random.bounded(24) == 0) body += topical[random.bounded(topical.size())] + QLatin1Char(' ');
            body += QLatin1Char('\n');
        }
        note.body = body;
        note.color = noteColorMasked(i);
        note.created = now.addSecs(-qint64(random.bounded(90 * 86400)));
        note.modified = note.created.addSecs(random.bounded(86400));
        note.order = i;
        note.tags = {tags[random.bounded(tags.size())]};
        if (i % 7 == 0) note.origin = NoteOrigin::agent(QStringLiteral("A1"), note.id, QStringLiteral("Scout"));
        notes.append(note);
    }
    return notes;
}

int searchOnce(const QList<Note>& notes, NoteFactsCache& cache, const QString& query, NoteFilter::Sort sort) {
    NoteFilter filter;
    filter.sort = sort;
    const NoteFilter::Search search = NoteFilter::parse(query);
    QList<Note> found;
    for (const Note& note : notes)
        if (NoteFilter::matches(note, cache.facts(note), NotesSection::all(), search, filter, now)) found.append(note);
    return int(NoteFilter::sorted(std::move(found), sort, cache).size());
}

void warmSearch(benchmark::State& state, const QString& query, NoteFilter::Sort sort) {
    const QList<Note> notes = makeNotes(10000);
    NoteFactsCache cache;
    searchOnce(notes, cache, {}, NoteFilter::Sort::title);
    for (auto _ : state) benchmark::DoNotOptimize(searchOnce(notes, cache, query, sort));
    // How many notes the search lets through: a figure only means something for a query that
    // keeps some notes and drops others.
    state.counters["found"] = searchOnce(notes, cache, query, sort);
    state.counters["notes"] = double(notes.size());
}

void BM_EmptySearchByEdit(benchmark::State& state) { warmSearch(state, {}, NoteFilter::Sort::edited); }
void BM_EmptySearchByTitle(benchmark::State& state) { warmSearch(state, {}, NoteFilter::Sort::title); }
void BM_QuerySyntaxByEdit(benchmark::State& state) {
    warmSearch(state, QStringLiteral("\"project plan\" ISTANBUL #work -draft"), NoteFilter::Sort::edited);
}
void BM_OneWordByTitle(benchmark::State& state) { warmSearch(state, QStringLiteral("kapi"), NoteFilter::Sort::title); }
void BM_NoMatch(benchmark::State& state) { warmSearch(state, QStringLiteral("zebra"), NoteFilter::Sort::edited); }

// The first search after the window opens: every note's facts are computed.
void BM_ColdFirstSearch(benchmark::State& state) {
    const QList<Note> notes = makeNotes(10000);
    int found = 0;
    for (auto _ : state) {
        NoteFactsCache cache;
        found = searchOnce(notes, cache, QStringLiteral("kapi"), NoteFilter::Sort::edited);
        benchmark::DoNotOptimize(found);
    }
    state.counters["found"] = found;
}

}  // namespace

BENCHMARK(BM_EmptySearchByEdit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EmptySearchByTitle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuerySyntaxByEdit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneWordByTitle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NoMatch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ColdFirstSearch)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();
