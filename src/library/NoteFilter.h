#pragma once

#include "library/NotesSection.h"
#include "notes/Note.h"

#include <QDateTime>
#include <QList>
#include <QByteArray>
#include <QStringList>
#include <set>

namespace vuro {

struct NoteFacts;
class NoteFactsCache;

// How the Notes window narrows and orders the notes: the filters of its filter bar, and the pure
// functions that read the search line, test a note against section, search and filters, and
// sort. No state of its own; LibraryModel keeps the current values. Any thread.
struct NoteFilter {
    // Who made a note: one agent (agentID), anyone, the user, or any agent.
    struct Source {
        enum class Kind { agent, any, mine, agents };
        Kind kind = Kind::any;
        QString agentID;

        static Source agent(QString id) { return {Kind::agent, std::move(id)}; }
        static Source any() { return {}; }
        static Source mine() { return {Kind::mine, {}}; }
        static Source agents() { return {Kind::agents, {}}; }
        bool operator==(const Source&) const = default;
    };
    enum class Content { openTasks, dueTasks, images, attachments, untagged };
    enum class Period { any, today, week, month };
    enum class Sort { edited, created, title, shelf };

    // The search line read into its parts, each folded. Made by parse(), which also prepares the
    // text searches: one search line is matched against every note's text.
    struct Search {
        QStringList words;
        QStringList phrases;
        QStringList tags;
        QStringList excluded;

        // Words and phrases (all must occur) and exclusions (none may) in UTF-8, the form the
        // folded text of a note is searched in (NoteFacts::haystack).
        QList<QByteArray> required;
        QList<QByteArray> excludedBytes;

        bool isEmpty() const { return words.isEmpty() && phrases.isEmpty() && tags.isEmpty() && excluded.isEmpty(); }
        bool operator==(const Search&) const = default;
    };

    QStringList tags;             // all must be on the note
    std::set<NoteColor> colors;   // any one suffices; empty means every colour
    Source source;
    std::set<Content> content;    // all must hold
    Period period = Period::any;
    Sort sort = Sort::edited;

    bool operator==(const NoteFilter&) const = default;

    // Phrases in any of the quotes " “ ” (an unpaired quote stays in its word), then #tags,
    // -exclusions and words, split at white space.
    static Search parse(const QString& query);

    // The section test, then the filter's tests in order, then the search.
    static bool matches(const Note& note, const NotesSection& section, const Search& search, const NoteFilter& filter,
                        const QDateTime& now);
    // The same with the note's facts already at hand (see NoteFactsCache).
    static bool matches(const Note& note, const NoteFacts& facts, const NotesSection& section, const Search& search,
                        const NoteFilter& filter, const QDateTime& now);

    // A stable sort: notes with equal keys keep their order. Dates newest first, titles by the
    // locale's collation with the latest edit first among equals, the Shelf by its order.
    static QList<Note> sorted(QList<Note> notes, Sort sort);
    static QList<Note> sorted(QList<Note> notes, Sort sort, NoteFactsCache& cache);

    // The key tags are compared by: normalised, then folded ("#Work!" and "work" are one tag).
    static QString tagKey(const QString& tag);
};

}  // namespace vuro
