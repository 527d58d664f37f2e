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

QList<Note> makeNotes(int count) {
    static const QStringList words{
        QStringLiteral("project"), QStringLiteral("plan"), QStringLiteral("review"), QStringLiteral("İstanbul"),
        QStringLiteral("meeting"), QStringLiteral("draft"), QStringLiteral("Café"), QStringLiteral("budget"),
        QStringLiteral("kapı"), QStringLiteral("call"), QStringLiteral("Ann"), QStringLiteral("tomorrow"),
        QStringLiteral("groceries"), QStringLiteral("release"), QStringLiteral("notes"), QStringLiteral("idea")};
    static const QStringList tags{QStringLiteral("work"), QStringLiteral("home"), QStringLiteral("travel"),
                                  QStringLiteral("ideas"), QStringLiteral("work-items")};
    QRandomGenerator random(42);
    QList<Note> notes;
    notes.reserve(count);
    for (int i = 0; i < count; ++i) {
        Note note;
        note.id = QStringLiteral("N%1").arg(i);
        note.title = words[random.bounded(words.size())] + QLatin1Char(' ') + words[random.bounded(words.size())];
        QString body;
        while (body.size() < 2000) {
            if (random.bounded(8) == 0) body += QStringLiteral("- [ ] ");
            for (int w = 0; w < 10; ++w) body += words[random.bounded(words.size())] + QLatin1Char(' ');
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
    int found = 0;
    for (auto _ : state) {
        found = searchOnce(notes, cache, query, sort);
        benchmark::DoNotOptimize(found);
    }
    state.counters["found"] = found;
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
    for (auto _ : state) {
        NoteFactsCache cache;
        benchmark::DoNotOptimize(searchOnce(notes, cache, QStringLiteral("kapi"), NoteFilter::Sort::edited));
    }
}

}  // namespace

BENCHMARK(BM_EmptySearchByEdit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EmptySearchByTitle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuerySyntaxByEdit)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneWordByTitle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NoMatch)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ColdFirstSearch)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK_MAIN();
