#include "notes/EmptyNoteSweeper.h"

#include "notes/NoteStore.h"

#include <QTimer>

namespace vuro {

EmptyNoteSweeper::EmptyNoteSweeper(std::function<NoteStore*()> storeLookup, QObject* parent)
    : QObject(parent), store(std::move(storeLookup)) {}

void EmptyNoteSweeper::open(const QString& id) { ++openCounts[id]; }

void EmptyNoteSweeper::close(const QString& id) {
    const int remaining = openCounts.value(id) - 1;
    if (remaining > 0) {
        openCounts.insert(id, remaining);
        return;
    }
    openCounts.remove(id);
    QTimer::singleShot(delay, this, [this, id] {
        if (openCounts.contains(id) || (isBusy && isBusy(id))) return;
        if (NoteStore* notes = store ? store() : nullptr) notes->discardIfEmpty(id);
    });
}

}  // namespace vuro
