#pragma once

#include "inbox/DropSource.h"
#include "inbox/UnreadDropStore.h"
#include "notes/Note.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <functional>
#include <memory>
#include <optional>

namespace vuro {

class NoteStore;

// Receives what agents and people deliver, turns each drop into a note on top of the Shelf,
// and remembers what is unread (kept through an UnreadDropStore), what arrived lately, and what
// arrived while the user was away. Main thread only. A drop that reaches a store that could not
// load is not received: receive() returns nothing and the sender delivers it again later.
class DropInbox : public QObject {
    Q_OBJECT
public:
    struct ReceivedDrop {
        Drop drop;
        DropSource source;
        QString noteID;
        bool operator==(const ReceivedDrop&) const = default;
    };

    // Loads the unread ids and keeps only those of notes that exist and aren't archived,
    // writing the set back only when that changed it.
    DropInbox(NoteStore& store, std::shared_ptr<UnreadDropStore> unreadStore, int recentLimit = 20,
              QObject* parent = nullptr);

    // The drop's id is also its note's: a drop delivered twice returns the note it already made.
    std::optional<Note> receive(const Drop& drop, const DropSource& source, const QDateTime& now);

    const QList<ReceivedDrop>& recent() const { return _recent; }  // newest last
    const std::optional<QString>& lastArrivedNoteID() const { return _lastArrivedNoteID; }
    const QSet<QString>& unreadNoteIDs() const { return _unreadNoteIDs; }
    const QSet<QString>& awayNoteIDs() const { return _awayNoteIDs; }
    int recentLimit() const { return _recentLimit; }

    // The recent entries whose note still exists and isn't archived.
    QList<ReceivedDrop> unseenRecent() const;
    // The notes that arrived during the absence, in arrival order, without vanished or archived ones.
    QList<Note> awayNotes() const;
    // The sources of the drops still in `recent`, by source id (the digest names its groups by them).
    QHash<QString, DropSource> recentSources() const;

    void markRead(const QString& noteID);
    void markAllRead();

    // While away, arriving notes also go to awayNoteIDs.
    bool isAway() const { return _isAway; }
    void setAway(bool away);
    void clearAway();

    std::function<void(const ReceivedDrop&)> onReceive;

    // The note a drop becomes: title empty, the text as body, the origin after the sender.
    static Note noteFor(const Drop& drop, const DropSource& source, const QDateTime& now);

Q_SIGNALS:
    void recentChanged();
    void unreadChanged();
    void awayChanged();

private:
    void setUnread(QSet<QString> ids);
    bool isShown(const QString& noteID) const;

    NoteStore& _store;
    std::shared_ptr<UnreadDropStore> _unreadStore;
    int _recentLimit;
    QList<ReceivedDrop> _recent;
    std::optional<QString> _lastArrivedNoteID;
    QSet<QString> _unreadNoteIDs;
    QSet<QString> _awayNoteIDs;
    QStringList _awayArrivals;  // the same ids in arrival order, for the digest
    bool _isAway = false;
};

}  // namespace vuro
