#include "library/NotesSelection.h"

namespace vuro::NotesSelection {

void State::click(const QString& id) {
    selected = {id};
    anchor = id;
    primary = id;
}

void State::shiftClick(const QString& id, const QStringList& ordered) {
    const qsizetype to = ordered.indexOf(id);
    const qsizetype from = anchor ? ordered.indexOf(*anchor) : -1;
    if (to < 0 || from < 0) return click(id);
    selected.clear();
    for (qsizetype i = std::min(from, to); i <= std::max(from, to); ++i) selected.insert(ordered[i]);
    primary = id;
}

void State::controlClick(const QString& id, const QStringList& ordered) {
    anchor = id;
    if (!selected.contains(id)) {
        selected.insert(id);
        primary = id;
        return;
    }
    selected.remove(id);
    if (primary != id) return;
    primary.reset();
    const qsizetype at = ordered.indexOf(id);
    for (qsizetype i = at + 1; at >= 0 && i < ordered.size() && !primary; ++i)
        if (selected.contains(ordered[i])) primary = ordered[i];
    for (qsizetype i = at - 1; i >= 0 && !primary; --i)
        if (selected.contains(ordered[i])) primary = ordered[i];
}

void State::selectAll(const QStringList& ordered) {
    selected = QSet<QString>(ordered.cbegin(), ordered.cend());
    if (primary && !selected.contains(*primary)) primary.reset();
    if (!primary && !ordered.isEmpty()) primary = ordered.first();
    if (!anchor && primary) anchor = primary;
}

void State::clear() { *this = State{}; }

void State::retain(const QStringList& ordered) {
    const QSet<QString> shown(ordered.cbegin(), ordered.cend());
    selected.intersect(shown);
    if (anchor && !shown.contains(*anchor)) anchor.reset();
    if (primary && !selected.contains(*primary)) primary.reset();
    if (!primary)
        for (const QString& id : ordered)
            if (selected.contains(id)) {
                primary = id;
                break;
            }
}

QStringList State::selectedInOrder(const QStringList& ordered) const {
    QStringList result;
    for (const QString& id : ordered)
        if (selected.contains(id)) result.append(id);
    return result;
}

}  // namespace vuro::NotesSelection
