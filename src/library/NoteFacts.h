#pragma once

#include "notes/Note.h"

#include <QByteArray>
#include <QCollatorSortKey>
#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace vuro {

// What the note filter reads from one version of a note: the folded search text, the tag keys,
// who made it and what its body holds. Folding a body is the costly part of a search, so the
// Notes window keeps these per note in a NoteFactsCache and recomputes them only on change.
struct NoteFacts {
    // Folded title, a line end, folded body, as UTF-8: half the memory of UTF-16 for the text
    // people write, and searched with the C library's memmem. A UTF-8 needle can only match at
    // character boundaries, so a byte match is a character match.
    QByteArray haystack;
    QStringList tagKeys;        // NoteFilter::tagKey of each tag
    QString displayTitle;
    std::optional<QString> agentID;  // the agent that made the note, if one did
    bool hasTasks = false;
    bool hasOpenTasks = false;
    bool hasDueTasks = false;   // an open task with a date mark
    bool hasImages = false;
    bool hasFiles = false;

    static NoteFacts of(const Note& note);

    // The agent behind an origin: an agent origin, or a drop whose channel is "agent.<id>".
    static std::optional<QString> agentOf(const NoteOrigin& origin);
};

// NoteFacts by note id, recomputed when a note's title, body, tags or origin change. Keeps a
// reference to the texts it was computed from, so an unchanged note is recognised by identity
// of its text buffers without comparing them. Main thread only.
class NoteFactsCache {
public:
    const NoteFacts& facts(const Note& note);
    // The localised sort key of the note's display title (for sorting by title).
    const QCollatorSortKey& titleKey(const Note& note);
    // Forgets notes that are no longer among these.
    void prune(const QList<Note>& notes);
    qsizetype size() const { return _entries.size(); }

private:
    struct Entry {
        QString title;
        QString body;
        QStringList tags;
        NoteOrigin origin;
        NoteFacts facts;
        std::optional<QCollatorSortKey> titleKey;
    };
    Entry& entry(const Note& note);

    QHash<QString, Entry> _entries;
};

}  // namespace vuro
