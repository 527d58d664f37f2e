#include "library/LibraryModel.h"

#include "base/Clock.h"
#include "notes/NoteStore.h"

namespace vuro {

LibraryModel::LibraryModel(NoteStore& store, QObject* parent)
    : QObject(parent), _store(store), _undoWindow(store.undoWindow()) {
    _notify.setSingleShot(true);
    _notify.setInterval(0);
    connect(&_notify, &QTimer::timeout, this, &LibraryModel::changed);
    _removalTimer.setSingleShot(true);
    connect(&_removalTimer, &QTimer::timeout, this, &LibraryModel::finishRemoval);
    connect(&_store, &NoteStore::notesChanged, this, &LibraryModel::invalidate);
    connect(&_store, &NoteStore::foldersChanged, this, &LibraryModel::invalidate);
    connect(&_store, &NoteStore::pendingUndoChanged, this, &LibraryModel::undoChanged);
}

LibraryModel::~LibraryModel() { finishRemoval(); }

void LibraryModel::invalidate() {
    _dirty = true;
    if (!_notify.isActive()) _notify.start();
}

void LibraryModel::setSection(const NotesSection& section) {
    if (section == _section) return;
    _section = section;
    invalidate();
}

void LibraryModel::setQuery(const QString& query) {
    if (query == _query) return;
    _query = query;
    _search = NoteFilter::parse(query);
    invalidate();
}

void LibraryModel::setFilter(const NoteFilter& filter) {
    if (filter == _filter) return;
    _filter = filter;
    invalidate();
}

const QList<Note>& LibraryModel::shown() {
    if (_dirty) refresh();
    return _shown;
}

const QStringList& LibraryModel::shownIDs() {
    if (_dirty) refresh();
    return _shownIDs;
}

const LibraryModel::Counts& LibraryModel::counts() {
    if (_dirty) refresh();
    return _counts;
}

void LibraryModel::refresh() {
    _dirty = false;
    const QDateTime now = Clock::now();
    const QList<Note>& notes = _store.notes();
    if (_facts.size() > notes.size() + 256) _facts.prune(notes);
    QList<Note> passing;
    Counts counts;
    for (const Note& note : notes) {
        if (_pendingRemoval.contains(note.id)) continue;
        const NoteFacts& facts = _facts.facts(note);
        if (note.archived) {
            ++counts.archive;
        } else {
            ++counts.all;
            if (facts.hasTasks) ++counts.tasks;
            if (facts.agentID) ++counts.agents;
            if (note.folderID) ++counts.folders[*note.folderID];
            for (const QString& tag : note.tags) ++counts.tags[tag];
        }
        if (NoteFilter::matches(note, facts, _section, _search, _filter, now)) passing.append(note);
    }
    _shown = NoteFilter::sorted(std::move(passing), _filter.sort, _facts);
    _shownIDs.clear();
    _shownIDs.reserve(_shown.size());
    for (const Note& note : _shown) _shownIDs.append(note.id);
    _counts = std::move(counts);
    _selection.retain(_shownIDs);
}

void LibraryModel::click(const QString& id) {
    _selection.click(id);
    invalidate();
}

void LibraryModel::shiftClick(const QString& id) {
    _selection.shiftClick(id, shownIDs());
    invalidate();
}

void LibraryModel::controlClick(const QString& id) {
    _selection.controlClick(id, shownIDs());
    invalidate();
}

void LibraryModel::selectAll() {
    _selection.selectAll(shownIDs());
    invalidate();
}

void LibraryModel::clearSelection() {
    _selection.clear();
    invalidate();
}

QStringList LibraryModel::selectedIDs() { return _selection.selectedInOrder(shownIDs()); }

void LibraryModel::archive(const QStringList& ids) {
    for (const QString& id : ids) _store.setArchived(id, true);
}

void LibraryModel::unarchive(const QStringList& ids) {
    // In reverse, so that the first of the list ends on top of the Shelf.
    for (auto id = ids.crbegin(); id != ids.crend(); ++id) _store.setArchived(*id, false);
}

void LibraryModel::remove(const QStringList& ids) {
    finishRemoval();
    _singleRemoval.reset();
    if (ids.size() == 1) {
        _store.remove(ids.first());
        _singleRemoval = ids.first();
    } else if (!ids.isEmpty()) {
        _pendingRemoval = ids;
        _removalTimer.start(_undoWindow);
        invalidate();
    }
    Q_EMIT undoChanged();
}

bool LibraryModel::canUndoRemove() const {
    if (!_pendingRemoval.isEmpty()) return true;
    // The store's undo, as long as it is still the one for our deletion.
    const auto& pending = _store.pendingUndo();
    return pending && _singleRemoval && pending->note.id == *_singleRemoval;
}

int LibraryModel::pendingRemovalCount() const {
    if (!_pendingRemoval.isEmpty()) return int(_pendingRemoval.size());
    return canUndoRemove() ? 1 : 0;
}

void LibraryModel::undoRemove() {
    if (!_pendingRemoval.isEmpty()) {
        _removalTimer.stop();
        _pendingRemoval.clear();
        invalidate();
        Q_EMIT undoChanged();
    } else if (canUndoRemove()) {
        _singleRemoval.reset();
        _store.undoDelete();
    }
}

void LibraryModel::finishRemoval() {
    if (_pendingRemoval.isEmpty()) return;
    _removalTimer.stop();
    const QStringList ids = std::exchange(_pendingRemoval, {});
    for (const QString& id : ids) _store.remove(id);
    invalidate();
    Q_EMIT undoChanged();
}

void LibraryModel::moveToFolder(const QStringList& ids, const std::optional<QString>& folderID) {
    for (const QString& id : ids) _store.setFolder(id, folderID);
}

void LibraryModel::addTags(const QStringList& ids, const QStringList& tags) {
    for (const QString& id : ids) _store.addTags(id, tags);
}

void LibraryModel::removeTags(const QStringList& ids, const QStringList& tags) {
    for (const QString& id : ids) _store.removeTags(id, tags);
}

void LibraryModel::setColor(const QStringList& ids, NoteColor color) {
    for (const QString& id : ids) _store.setColor(id, color);
}

}  // namespace vuro
