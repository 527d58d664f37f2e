#pragma once

#include "inbox/DropSource.h"
#include "notes/Note.h"

#include <QHash>
#include <QList>
#include <QStringList>

namespace vuro {

// "While you were away": what arrived during an absence, one group per source, newest first.
// A plain value built from the notes in arrival order; no state of its own.
struct AwayDigest {
    struct Group {
        QString sourceID;
        QString sourceName;
        QList<Note> notes;    // newest first
        QStringList senders;  // the people among the origins, first occurrence kept
        int openTasks = 0;
    };

    QList<Group> groups;

    // `notes` in arrival order; `sources` by source id give the groups their names.
    static AwayDigest make(const QList<Note>& notes, const QHash<QString, DropSource>& sources);

    // The source a note came through: a person's channel, or "agent.<id>" for an agent.
    static QString sourceID(const Note& note);

    int noteCount() const;
    int openTaskCount() const;
    static QString title();
    // "5 notes from 2 agents 3 new tasks" in its localised form.
    QString countsLine() const;
    // The first line of a note with text, without list and heading marks, cut to 160 characters.
    static QString line(const Note& note);
};

}  // namespace vuro
