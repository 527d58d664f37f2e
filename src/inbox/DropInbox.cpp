#include "inbox/DropInbox.h"

#include "notes/NoteStore.h"

namespace vuro {

DropInbox::DropInbox(NoteStore& store, std::shared_ptr<UnreadDropStore> unreadStore, int recentLimit, QObject* parent)
    : QObject(parent), _store(store), _unreadStore(std::move(unreadStore)), _recentLimit(recentLimit) {
    if (!_unreadStore) return;
    const QSet<QString> stored = _unreadStore->load();
    for (const QString& id : stored)
        if (isShown(id)) _unreadNoteIDs.insert(id);
    if (_unreadNoteIDs != stored) _unreadStore->save(_unreadNoteIDs);
}

Note DropInbox::noteFor(const Drop& drop, const DropSource& source, const QDateTime& now) {
    Note note;
    note.id = drop.id;
    note.body = drop.text;
    note.color = source.color;
    note.created = now;
    note.modified = now;
    note.origin = source.kind == DropSource::Kind::agent
                      ? NoteOrigin::agent(drop.senderID, drop.id, drop.senderName)
                      : NoteOrigin::drop(drop.sourceID, drop.id, drop.senderName);
    return note;
}

std::optional<Note> DropInbox::receive(const Drop& drop, const DropSource& source, const QDateTime& now) {
    if (auto existing = _store.note(drop.id)) return existing;
    if (!_store.isWritable()) return std::nullopt;
    // Imported notes keep their id and stand on top of the Shelf.
    if (_store.importNotes({noteFor(drop, source, now)}) != 1) return std::nullopt;
    const std::optional<Note> note = _store.note(drop.id);
    if (!note) return std::nullopt;

    QSet<QString> unread = _unreadNoteIDs;
    unread.insert(note->id);
    setUnread(std::move(unread));
    if (_isAway) {
        _awayNoteIDs.insert(note->id);
        _awayArrivals.append(note->id);
        Q_EMIT awayChanged();
    }
    const ReceivedDrop received{drop, source, note->id};
    _recent.append(received);
    _lastArrivedNoteID = note->id;
    if (_recent.size() > _recentLimit) _recent.remove(0, _recent.size() - _recentLimit);
    Q_EMIT recentChanged();
    if (onReceive) onReceive(received);
    return note;
}

bool DropInbox::isShown(const QString& noteID) const {
    const std::optional<Note> note = _store.note(noteID);
    return note && !note->archived;
}

QList<DropInbox::ReceivedDrop> DropInbox::unseenRecent() const {
    QList<ReceivedDrop> shown;
    for (const ReceivedDrop& received : _recent)
        if (isShown(received.noteID)) shown.append(received);
    return shown;
}

QList<Note> DropInbox::awayNotes() const {
    QList<Note> notes;
    for (const QString& id : _awayArrivals)
        if (const std::optional<Note> note = _store.note(id); note && !note->archived) notes.append(*note);
    return notes;
}

QHash<QString, DropSource> DropInbox::recentSources() const {
    QHash<QString, DropSource> sources;
    for (const ReceivedDrop& received : _recent) sources.insert(received.drop.sourceID, received.source);
    return sources;
}

void DropInbox::markRead(const QString& noteID) {
    if (!_unreadNoteIDs.contains(noteID)) return;
    QSet<QString> unread = _unreadNoteIDs;
    unread.remove(noteID);
    setUnread(std::move(unread));
}

void DropInbox::markAllRead() {
    if (!_unreadNoteIDs.isEmpty()) setUnread({});
}

void DropInbox::setAway(bool away) {
    if (_isAway == away) return;
    _isAway = away;
    Q_EMIT awayChanged();
}

void DropInbox::clearAway() {
    if (_awayNoteIDs.isEmpty()) return;
    _awayNoteIDs.clear();
    _awayArrivals.clear();
    Q_EMIT awayChanged();
}

void DropInbox::setUnread(QSet<QString> ids) {
    _unreadNoteIDs = std::move(ids);
    if (_unreadStore) _unreadStore->save(_unreadNoteIDs);
    Q_EMIT unreadChanged();
}

}  // namespace vuro
