#include "base/Ids.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

using namespace vuro;

namespace {

// A store of `count` notes with 2 KB bodies, as a user with a long history has.
std::unique_ptr<NoteStore> makeStore(int count, QStringList& ids) {
    auto disk = std::make_shared<InMemoryNotePersistence>();
    const QString body = QString(2048, QLatin1Char('x'));
    for (int i = 0; i < count; ++i) {
        Note note;
        note.id = newId();
        note.body = body;
        note.order = i;
        disk->rows.insert(note.id, note);
        ids << note.id;
    }
    return std::make_unique<NoteStore>(disk);
}

// One keystroke: the editor hands over its whole text, one character longer or shorter than
// before, and the note's save timer restarts. The two texts are made beforehand so that only
// the store's work is measured.
void keystroke(benchmark::State& state) {
    QStringList ids;
    auto store = makeStore(int(state.range(0)), ids);
    const QString id = ids[ids.size() / 2];
    const QString texts[2] = {store->note(id)->body + QLatin1Char('a'), store->note(id)->body};
    int next = 0;
    for (auto _ : state) {
        store->setBody(id, texts[next]);
        next ^= 1;
    }
    state.SetLabel("setBody, debounced");
}
BENCHMARK(keystroke)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

// Typing into different notes in turn: each keystroke finds its note among all of them.
void keystrokeAcrossNotes(benchmark::State& state) {
    QStringList ids;
    auto store = makeStore(int(state.range(0)), ids);
    qsizetype next = 0;
    for (auto _ : state) {
        const QString& id = ids[next];
        next = (next + 7919) % ids.size();
        store->setTitle(id, QString::number(state.iterations()));
    }
    state.SetLabel("setTitle, debounced, note changes each time");
}
BENCHMARK(keystrokeAcrossNotes)->Arg(10000)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);  // the save timers need one
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
