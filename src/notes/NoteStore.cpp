#include "notes/NoteStore.h"

#include "base/Clock.h"
#include "base/Error.h"
#include "base/Ids.h"
#include "base/Log.h"
#include "base/Text.h"
#include "notes/NoteTokens.h"
#include "notes/TaskLine.h"

#include <QCollator>
#include <algorithm>

namespace vuro {
namespace {

// Runs one persistence call; the sentence of its failure, or none.
template <typename Call>
std::optional<QString> attempt(Call&& call) {
    try {
        call();
        return std::nullopt;
    } catch (const Error& error) {
        return error.message();
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
}

using IDsOfBody = QSet<QString> (*)(const QString&);

// Deletes the given stored ids; a failure costs only disk space, so it is logged and left.
void deleteStored(NoteImageFiles& files, const QSet<QString>& ids) {
    if (ids.isEmpty()) return;
    if (const auto failure = attempt([&] { files.deleteIDs(QStringList(ids.cbegin(), ids.cend())); }))
        log(QStringLiteral("could not remove unused files: ") + *failure);
}

QSet<QString> referencedIDs(const QList<Note>& notes, IDsOfBody idsOf) {
    QSet<QString> ids;
    for (const Note& n : notes) ids.unite(idsOf(n.body));
    return ids;
}

bool sameTag(const QString& a, const QString& b) { return Text::fold(a) == Text::fold(b); }

qsizetype tagIndex(const QStringList& tags, const QString& tag) {
    for (qsizetype i = 0; i < tags.size(); ++i)
        if (sameTag(tags[i], tag)) return i;
    return -1;
}

QStringList normalizedTags(const QStringList& tags) {
    QStringList result;
    for (const QString& tag : tags) {
        const QString normalized = Note::normalizedTag(tag);
        if (!normalized.isEmpty() && tagIndex(result, normalized) < 0) result.append(normalized);
    }
    return result;
}

}  // namespace

NoteStore::NoteStore(std::shared_ptr<NotePersistence> persistence, std::chrono::milliseconds saveDelay,
                     std::chrono::milliseconds undoWindow, std::shared_ptr<NoteImageFiles> images,
                     std::shared_ptr<NoteImageFiles> files, QObject* parent)
    : QObject(parent), _persistence(std::move(persistence)), _saveDelay(saveDelay), _undoWindow(undoWindow),
      _images(std::move(images)), _files(std::move(files)) {
    _undoExpiry.setSingleShot(true);
    _undoExpiry.setTimerType(Qt::PreciseTimer);
    connect(&_undoExpiry, &QTimer::timeout, this, [this] {
        purgePending();
        _pendingUndo.reset();
        Q_EMIT pendingUndoChanged();
    });

    std::optional<QString> failure = attempt([this] {
        _notes = _persistence->loadNotes();
        _indexValid = false;
    });
    if (!failure) {
        failure = attempt([this] { _folders = _persistence->loadFolders(); });
        sortFolders();
    }
    if (failure) {
        _isWritable = false;
        _lastError = failure;
        return;
    }
    sweepOrphans();
}

void NoteStore::sweepOrphans() {
    const std::pair<NoteImageFiles*, IDsOfBody> stores[] = {{_images.get(), &NoteTokens::imageIDs},
                                                            {_files.get(), &NoteTokens::fileIDs}};
    for (const auto& store : stores) {
        NoteImageFiles* files = store.first;
        const IDsOfBody idsOf = store.second;
        if (!files) continue;
        QStringList stored;
        if (const auto failure = attempt([&] { stored = files->allIDs(); })) {
            log(QStringLiteral("could not list stored files: ") + *failure);
            continue;
        }
        const QSet<QString> referenced = referencedIDs(_notes, idsOf);
        QSet<QString> orphans;
        for (const QString& id : stored)
            if (!referenced.contains(id)) orphans.insert(id);
        deleteStored(*files, orphans);
    }
}

NoteStore::~NoteStore() = default;

bool NoteStore::folderLessThan(const NoteFolder& a, const NoteFolder& b) {
    static const QCollator collator = [] {
        QCollator c;
        c.setCaseSensitivity(Qt::CaseInsensitive);
        c.setNumericMode(true);
        return c;
    }();
    const int byName = collator.compare(a.name, b.name);
    return byName != 0 ? byName < 0 : a.id < b.id;
}

void NoteStore::sortFolders() { std::stable_sort(_folders.begin(), _folders.end(), folderLessThan); }

// MARK: reads

qsizetype NoteStore::indexOf(const QString& id) const {
    if (!_indexValid) {
        _index.clear();
        _index.reserve(_notes.size());
        // Walk backwards so that the first of two notes with one id wins, as a linear search would.
        for (qsizetype i = _notes.size() - 1; i >= 0; --i) _index.insert(_notes[i].id, i);
        _indexValid = true;
    }
    return _index.value(id, -1);
}

std::optional<Note> NoteStore::note(const QString& id) const {
    const qsizetype index = indexOf(id);
    return index < 0 ? std::nullopt : std::optional<Note>(_notes[index]);
}

std::optional<NoteFolder> NoteStore::folder(const QString& id) const {
    for (const NoteFolder& f : _folders)
        if (f.id == id) return f;
    return std::nullopt;
}

QList<Note> NoteStore::visibleNotes() const {
    QList<Note> visible;
    visible.reserve(_notes.size());
    for (const Note& n : _notes)
        if (!n.archived) visible.append(n);
    std::stable_sort(visible.begin(), visible.end(), [](const Note& a, const Note& b) { return a.order < b.order; });
    return visible;
}

std::optional<Note> NoteStore::noteForOriginID(const QString& originID) const {
    for (const Note& n : _notes)
        if (!n.origin.isLocal() && n.origin.originID() == originID) return n;
    return std::nullopt;
}

QStringList NoteStore::allTags() const {
    QStringList tags;
    for (const Note& n : _notes)
        for (const QString& tag : n.tags)
            if (tagIndex(tags, tag) < 0) tags.append(tag);
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(tags.begin(), tags.end(), collator);
    return tags;
}

double NoteStore::topOrder() const {
    bool any = false;
    double smallest = 0;
    for (const Note& n : _notes) {
        if (n.archived) continue;
        smallest = any ? std::min(smallest, n.order) : n.order;
        any = true;
    }
    return any ? smallest - 1.0 : -1.0;
}

// MARK: bookkeeping

void NoteStore::appendNote(const Note& note) {
    _notes.append(note);
    if (_indexValid && !_index.contains(note.id)) _index.insert(note.id, _notes.size() - 1);
}

void NoteStore::removeNoteAt(qsizetype index) {
    _notes.removeAt(index);
    _indexValid = false;
}

void NoteStore::setLastError(std::optional<QString> error) {
    if (_lastError == error) return;
    _lastError = std::move(error);
    Q_EMIT lastErrorChanged();
}

void NoteStore::setUnsaved(const QString& id, bool unsaved) {
    const bool changed = unsaved ? !_unsavedIDs.contains(id) : _unsavedIDs.contains(id);
    if (!changed) return;
    if (unsaved)
        _unsavedIDs.insert(id);
    else
        _unsavedIDs.remove(id);
    Q_EMIT unsavedIDsChanged();
}

void NoteStore::cancelPendingSave(const QString& id) {
    if (QTimer* timer = _pendingSaves.take(id)) {
        timer->stop();
        timer->deleteLater();  // it may be the timer whose timeout is running right now
    }
}

void NoteStore::scheduleSave(const QString& id) {
    setUnsaved(id, true);
    QTimer*& timer = _pendingSaves[id];
    if (!timer) {
        timer = new QTimer(this);
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, [this, id] {
            if (!_unsavedIDs.contains(id)) {
                cancelPendingSave(id);
                return;
            }
            if (const auto current = note(id))
                saveNow(*current);
            else
                cancelPendingSave(id);
        });
    }
    timer->start(_saveDelay);
}

bool NoteStore::saveNow(const Note& note) {
    cancelPendingSave(note.id);
    if (const auto failure = attempt([&] { _persistence->save(note); })) {
        setUnsaved(note.id, true);
        setLastError(failure);
        return false;
    }
    setUnsaved(note.id, false);
    if (_unsavedIDs.isEmpty()) setLastError(std::nullopt);
    return true;
}

bool NoteStore::mutate(const QString& id, bool debounced, bool touch, const std::function<bool(Note&)>& edit) {
    if (!_isWritable) return false;
    const qsizetype index = indexOf(id);
    if (index < 0) return false;
    Note& target = _notes[index];
    if (!edit(target)) return false;
    if (touch) target.modified = Clock::now();
    if (debounced)
        scheduleSave(id);
    else
        saveNow(target);
    Q_EMIT notesChanged();
    return true;
}

void NoteStore::editNotes(const std::function<bool(Note&)>& edit) {
    if (!_isWritable) return;
    bool changed = false;
    for (Note& n : _notes) {
        if (!edit(n)) continue;
        n.modified = Clock::now();
        saveNow(n);
        changed = true;
    }
    if (changed) Q_EMIT notesChanged();
}

// MARK: changes

Note NoteStore::create(const QString& title, const QString& body, std::optional<NoteColor> color,
                       const NoteOrigin& origin) {
    Note n;
    n.id = newId();
    n.title = title;
    n.body = body;
    n.color = color.value_or(noteColorMasked(_notes.size()));
    n.created = Clock::now();
    n.modified = n.created;
    n.order = topOrder();
    n.origin = origin;
    if (_isWritable) {
        appendNote(n);
        saveNow(n);
        Q_EMIT notesChanged();
    }
    return n;
}

void NoteStore::setBody(const QString& id, const QString& body, bool debounced, bool touch) {
    mutate(id, debounced, touch, [&](Note& n) {
        if (n.body == body) return false;
        n.body = body;
        return true;
    });
}

void NoteStore::setTitle(const QString& id, const QString& title, bool debounced, bool touch) {
    mutate(id, debounced, touch, [&](Note& n) {
        if (n.title == title) return false;
        n.title = title;
        return true;
    });
}

void NoteStore::setColor(const QString& id, NoteColor color, bool debounced, bool touch) {
    mutate(id, debounced, touch, [&](Note& n) {
        if (n.color == color) return false;
        n.color = color;
        return true;
    });
}

void NoteStore::cycleColor(const QString& id, bool debounced, bool touch) {
    mutate(id, debounced, touch, [](Note& n) {
        n.color = noteColorMasked(rawValue(n.color) + 1);
        return true;
    });
}

void NoteStore::togglePin(const QString& id, bool debounced, bool touch) {
    mutate(id, debounced, touch, [](Note& n) {
        n.pinned = !n.pinned;
        return true;
    });
}

void NoteStore::setArchived(const QString& id, bool archived) {
    const double top = topOrder();
    mutate(id, false, true, [&](Note& n) {
        if (n.archived == archived) return false;
        n.archived = archived;
        if (!archived) n.order = top;
        return true;
    });
}

void NoteStore::move(const QString& id, int delta) {
    if (!_isWritable || delta == 0) return;
    QList<Note> list = visibleNotes();
    const auto found = std::find_if(list.cbegin(), list.cend(), [&](const Note& n) { return n.id == id; });
    if (found == list.cend()) return;
    const qsizetype index = found - list.cbegin();
    const qsizetype target = std::clamp<qsizetype>(index + qsizetype(delta), 0, list.size() - 1);
    if (target == index) return;
    list.move(index, target);
    bool changed = false;
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (list[i].order == double(i)) continue;
        Note& stored = _notes[indexOf(list[i].id)];
        stored.order = double(i);
        saveNow(stored);
        changed = true;
    }
    if (changed) Q_EMIT notesChanged();
}

void NoteStore::remove(const QString& id) {
    if (!_isWritable) return;
    const qsizetype index = indexOf(id);
    if (index < 0) return;
    if (const auto failure = attempt([&] { _persistence->remove(id); })) {
        setLastError(failure);
        return;
    }
    purgePending();
    cancelPendingSave(id);
    setUnsaved(id, false);
    const Note removed = _notes[index];
    removeNoteAt(index);
    const qint64 wholeSeconds = std::chrono::duration_cast<std::chrono::seconds>(_undoWindow).count();
    _pendingUndo = PendingDelete{removed, Clock::now().addSecs(wholeSeconds)};
    _undoExpiry.start(_undoWindow);
    Q_EMIT notesChanged();
    Q_EMIT pendingUndoChanged();
}

void NoteStore::purgePending() {
    if (!_pendingUndo) return;
    const std::pair<NoteImageFiles*, IDsOfBody> stores[] = {{_images.get(), &NoteTokens::imageIDs},
                                                            {_files.get(), &NoteTokens::fileIDs}};
    for (const auto& store : stores) {
        NoteImageFiles* files = store.first;
        const IDsOfBody idsOf = store.second;
        if (!files) continue;
        QSet<QString> unused = idsOf(_pendingUndo->note.body);
        if (unused.isEmpty()) continue;
        unused.subtract(referencedIDs(_notes, idsOf));
        deleteStored(*files, unused);
    }
}

void NoteStore::undoDelete() {
    if (!_isWritable || !_pendingUndo) return;
    _undoExpiry.stop();
    const Note restored = _pendingUndo->note;
    _pendingUndo.reset();
    appendNote(restored);
    saveNow(restored);
    Q_EMIT notesChanged();
    Q_EMIT pendingUndoChanged();
}

bool NoteStore::discardIfEmpty(const QString& id) {
    if (!_isWritable) return false;
    const qsizetype index = indexOf(id);
    if (index < 0 || !_notes[index].isEmpty() || !_notes[index].origin.isLocal()) return false;
    if (const auto failure = attempt([&] { _persistence->remove(id); })) {
        setLastError(failure);
        return false;
    }
    cancelPendingSave(id);
    setUnsaved(id, false);
    removeNoteAt(index);
    Q_EMIT notesChanged();
    return true;
}

void NoteStore::setTaskDone(bool done, int index, const QString& id) {
    const auto current = note(id);
    if (!_isWritable || !current) return;
    setBody(id, TaskLine::setDone(done, index, current->body), false, true);
}

int NoteStore::sweepEmptyNotes() {
    QStringList blank;
    for (const Note& n : _notes)
        if (n.isEmpty() && n.origin.isLocal()) blank.append(n.id);
    int removed = 0;
    for (const QString& id : blank)
        if (discardIfEmpty(id)) ++removed;
    return removed;
}

int NoteStore::importNotes(QList<Note> incoming) {
    if (!_isWritable) return 0;
    double base = 0;
    if (!_notes.isEmpty()) {
        base = std::min_element(_notes.cbegin(), _notes.cend(), [](const Note& a, const Note& b) {
                   return a.order < b.order;
               })->order;
    }
    base -= double(incoming.size());
    std::stable_sort(incoming.begin(), incoming.end(), [](const Note& a, const Note& b) { return a.order < b.order; });
    int saved = 0;
    for (Note& n : incoming) {
        if (n.id.isEmpty() || indexOf(n.id) >= 0) n.id = newId();
        if (n.folderID) {
            std::optional<NoteFolder> target;
            if (n.folderID->startsWith(QLatin1String("name:")))
                target = createFolder(n.folderID->mid(5));
            else
                target = folder(*n.folderID);
            n.folderID = target ? std::optional<QString>(target->id) : std::nullopt;
        }
        n.order = base;
        base += 1.0;
        appendNote(n);
        if (saveNow(n)) ++saved;
    }
    if (!incoming.isEmpty()) Q_EMIT notesChanged();
    return saved;
}

bool NoteStore::flush() {
    const QSet<QString> snapshot = _unsavedIDs;
    for (const QString& id : snapshot)
        if (const auto current = note(id)) saveNow(*current);
    return _unsavedIDs.isEmpty();
}

// MARK: tags

void NoteStore::addTags(const QString& id, const QStringList& tags) {
    // A tag already in use keeps the spelling it has, so "work" and "Work" never both appear.
    QStringList wanted = normalizedTags(tags);
    const QStringList inUse = allTags();
    for (QString& tag : wanted)
        if (const qsizetype at = tagIndex(inUse, tag); at >= 0) tag = inUse[at];
    mutate(id, false, true, [&](Note& n) {
        bool changed = false;
        for (const QString& tag : wanted) {
            if (tagIndex(n.tags, tag) >= 0) continue;
            n.tags.append(tag);
            changed = true;
        }
        return changed;
    });
}

void NoteStore::removeTags(const QString& id, const QStringList& tags) {
    const QStringList unwanted = normalizedTags(tags);
    mutate(id, false, true, [&](Note& n) {
        const qsizetype before = n.tags.size();
        n.tags.removeIf([&](const QString& tag) { return tagIndex(unwanted, tag) >= 0; });
        return n.tags.size() != before;
    });
}

void NoteStore::renameTag(const QString& from, const QString& to) {
    const QString oldName = Note::normalizedTag(from);
    const QString newName = Note::normalizedTag(to);
    if (oldName.isEmpty() || newName.isEmpty() || oldName == newName) return;
    editNotes([&](Note& n) {
        const qsizetype at = tagIndex(n.tags, oldName);
        if (at < 0) return false;
        const qsizetype existing = tagIndex(n.tags, newName);
        if (existing >= 0 && existing != at)
            n.tags.removeAt(at);  // the note already has the new name: the two merge
        else
            n.tags[at] = newName;
        return true;
    });
}

void NoteStore::deleteTag(const QString& tag) {
    const QString name = Note::normalizedTag(tag);
    if (name.isEmpty()) return;
    editNotes([&](Note& n) {
        const qsizetype at = tagIndex(n.tags, name);
        if (at < 0) return false;
        n.tags.removeAt(at);
        return true;
    });
}

// MARK: folders

std::optional<NoteFolder> NoteStore::folderNamed(const QString& name) const {
    const QString folded = Text::fold(name);
    for (const NoteFolder& f : _folders)
        if (Text::fold(f.name) == folded) return f;
    return std::nullopt;
}

void NoteStore::setFolder(const QString& id, const std::optional<QString>& folderID) {
    if (folderID && !folder(*folderID)) return;
    mutate(id, false, true, [&](Note& n) {
        if (n.folderID == folderID) return false;
        n.folderID = folderID;
        return true;
    });
}

std::optional<NoteFolder> NoteStore::createFolder(const QString& name) {
    const QString trimmedName = Text::trimmed(name);
    if (!_isWritable || trimmedName.isEmpty()) return std::nullopt;
    if (auto existing = folderNamed(trimmedName)) return existing;
    const NoteFolder created{newId(), trimmedName, Clock::now()};
    if (const auto failure = attempt([&] { _persistence->saveFolder(created); })) {
        setLastError(failure);
        return std::nullopt;
    }
    _folders.append(created);
    sortFolders();
    Q_EMIT foldersChanged();
    return created;
}

void NoteStore::renameFolder(const QString& folderID, const QString& name) {
    const QString trimmedName = Text::trimmed(name);
    auto renamed = folder(folderID);
    if (!_isWritable || trimmedName.isEmpty() || !renamed || renamed->name == trimmedName) return;
    if (const auto other = folderNamed(trimmedName); other && other->id != folderID) {
        // Renaming onto a name in use merges: the notes move over and this folder goes.
        const QString into = other->id;
        editNotes([&](Note& n) {
            if (n.folderID != folderID) return false;
            n.folderID = into;
            return true;
        });
        deleteFolder(folderID);
        return;
    }
    renamed->name = trimmedName;
    if (const auto failure = attempt([&] { _persistence->saveFolder(*renamed); })) {
        setLastError(failure);
        return;
    }
    for (NoteFolder& f : _folders)
        if (f.id == folderID) f = *renamed;
    sortFolders();
    Q_EMIT foldersChanged();
}

void NoteStore::deleteFolder(const QString& folderID) {
    if (!_isWritable || !folder(folderID)) return;
    editNotes([&](Note& n) {
        if (n.folderID != folderID) return false;
        n.folderID.reset();
        return true;
    });
    if (const auto failure = attempt([&] { _persistence->deleteFolder(folderID); })) {
        setLastError(failure);
        return;
    }
    _folders.removeIf([&](const NoteFolder& f) { return f.id == folderID; });
    Q_EMIT foldersChanged();
}

}  // namespace vuro
