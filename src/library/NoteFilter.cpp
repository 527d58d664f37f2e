#include "library/NoteFilter.h"

#include "base/Text.h"
#include "library/NoteFacts.h"

#include <QRegularExpression>
#include <algorithm>
#include <cstring>
#include <numeric>

namespace vuro {

namespace {

bool isQuote(QChar c) { return c == QLatin1Char('"') || c == QChar(0x201C) || c == QChar(0x201D); }

// glibc's memmem is several times faster than a search through UTF-16 text, and the folded
// text of 10,000 notes is searched on every keystroke in the search line.
bool contains(const QByteArray& haystack, const QByteArray& needle) {
    return needle.isEmpty() || memmem(haystack.constData(), size_t(haystack.size()), needle.constData(), size_t(needle.size()));
}

bool hasTagKey(const NoteFacts& facts, const QString& key) { return !key.isEmpty() && facts.tagKeys.contains(key); }

bool passesSection(const Note& note, const NoteFacts& facts, const NotesSection& section) {
    using Kind = NotesSection::Kind;
    if (section.kind == Kind::archive) return note.archived;
    if (note.archived) return false;
    switch (section.kind) {
    case Kind::folder: return note.folderID == section.value;
    case Kind::tag: return hasTagKey(facts, NoteFilter::tagKey(section.value));
    case Kind::all: return true;
    case Kind::tasks: return facts.hasTasks;
    case Kind::agents: return facts.agentID.has_value();
    case Kind::archive: break;
    }
    return false;
}

bool passesSource(const NoteFacts& facts, const NoteFilter::Source& source) {
    using Kind = NoteFilter::Source::Kind;
    switch (source.kind) {
    case Kind::agent: return facts.agentID == source.agentID;
    case Kind::any: return true;
    case Kind::mine: return !facts.agentID;
    case Kind::agents: return facts.agentID.has_value();
    }
    return false;
}

bool passesContent(const Note& note, const NoteFacts& facts, NoteFilter::Content content) {
    using Content = NoteFilter::Content;
    switch (content) {
    case Content::openTasks: return facts.hasOpenTasks;
    case Content::dueTasks: return facts.hasDueTasks;
    case Content::images: return facts.hasImages;
    case Content::attachments: return facts.hasFiles;
    case Content::untagged: return note.tags.isEmpty();
    }
    return false;
}

bool passesPeriod(const QDateTime& modified, NoteFilter::Period period, const QDateTime& now) {
    using Period = NoteFilter::Period;
    // "Later than" the bound: a note edited exactly a week ago is no longer in this week.
    const auto editedWithin = [&](qint64 seconds) {
        return modified.toMSecsSinceEpoch() > now.toMSecsSinceEpoch() - seconds * 1000;
    };
    switch (period) {
    case Period::any: return true;
    case Period::today: return modified.toLocalTime().date() == now.toLocalTime().date();
    case Period::week: return editedWithin(604800);
    case Period::month: return editedWithin(2592000);
    }
    return false;
}

bool passesSearch(const NoteFacts& facts, const NoteFilter::Search& search) {
    for (const QByteArray& required : search.required)
        if (!contains(facts.haystack, required)) return false;
    for (const QString& tag : search.tags) {
        const bool found = std::any_of(facts.tagKeys.cbegin(), facts.tagKeys.cend(),
                                       [&](const QString& key) { return key.startsWith(tag); });
        if (!found) return false;
    }
    for (const QByteArray& excluded : search.excludedBytes)
        if (contains(facts.haystack, excluded)) return false;
    return true;
}

// Sorts a permutation of the notes rather than the notes themselves: a Note is a dozen fields.
template <typename Less>
QList<Note> sortedBy(QList<Note>& notes, Less less) {
    std::vector<qsizetype> order(size_t(notes.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), less);
    QList<Note> result;
    result.reserve(notes.size());
    for (const qsizetype index : order) result.append(std::move(notes[index]));
    return result;
}

QList<Note> sortedByDateOrShelf(QList<Note>& notes, NoteFilter::Sort sort) {
    switch (sort) {
    case NoteFilter::Sort::edited:
        return sortedBy(notes, [&](qsizetype a, qsizetype b) { return notes.at(a).modified > notes.at(b).modified; });
    case NoteFilter::Sort::created:
        return sortedBy(notes, [&](qsizetype a, qsizetype b) { return notes.at(a).created > notes.at(b).created; });
    case NoteFilter::Sort::shelf:
        return sortedBy(notes, [&](qsizetype a, qsizetype b) { return notes.at(a).order < notes.at(b).order; });
    case NoteFilter::Sort::title: break;
    }
    return notes;
}

}  // namespace

NoteFilter::Search NoteFilter::parse(const QString& query) {
    Search search;
    QString rest = query;
    for (;;) {
        const auto open = std::find_if(rest.cbegin(), rest.cend(), isQuote);
        if (open == rest.cend()) break;
        const auto close = std::find_if(open + 1, rest.cend(), isQuote);
        if (close == rest.cend()) break;
        const qsizetype start = open - rest.cbegin();
        const qsizetype length = close - open + 1;
        const QString phrase = Text::trimmed(Text::fold(rest.mid(start + 1, length - 2)));
        if (!phrase.isEmpty()) search.phrases.append(phrase);
        rest.replace(start, length, QLatin1Char(' '));
    }
    static const QRegularExpression whiteSpace(QStringLiteral("\\s+"));
    const QStringList tokens = rest.split(whiteSpace, Qt::SkipEmptyParts);
    for (const QString& token : tokens) {
        if (token.startsWith(QLatin1Char('#'))) {
            const QString tag = tagKey(token.mid(1));
            if (!tag.isEmpty()) search.tags.append(tag);
        } else if (token.startsWith(QLatin1Char('-')) && token.size() >= 2) {
            search.excluded.append(Text::fold(token.mid(1)));
        } else {
            search.words.append(Text::fold(token));
        }
    }
    for (const QStringList* texts : {&search.words, &search.phrases})
        for (const QString& text : *texts) search.required.append(text.toUtf8());
    for (const QString& text : search.excluded) search.excludedBytes.append(text.toUtf8());
    return search;
}

bool NoteFilter::matches(const Note& note, const NotesSection& section, const Search& search, const NoteFilter& filter,
                         const QDateTime& now) {
    return matches(note, NoteFacts::of(note), section, search, filter, now);
}

bool NoteFilter::matches(const Note& note, const NoteFacts& facts, const NotesSection& section, const Search& search,
                         const NoteFilter& filter, const QDateTime& now) {
    if (!passesSection(note, facts, section)) return false;
    for (const QString& tag : filter.tags)
        if (!hasTagKey(facts, tagKey(tag))) return false;
    if (!filter.colors.empty() && !filter.colors.contains(note.color)) return false;
    if (!passesSource(facts, filter.source)) return false;
    for (const Content content : filter.content)
        if (!passesContent(note, facts, content)) return false;
    if (!passesPeriod(note.modified, filter.period, now)) return false;
    return passesSearch(facts, search);
}

QList<Note> NoteFilter::sorted(QList<Note> notes, Sort sort) {
    NoteFactsCache cache;
    return sorted(std::move(notes), sort, cache);
}

QList<Note> NoteFilter::sorted(QList<Note> notes, Sort sort, NoteFactsCache& cache) {
    if (sort != Sort::title) return sortedByDateOrShelf(notes, sort);
    // Every key first, then their addresses: filling the cache may move its entries.
    for (const Note& note : notes) cache.titleKey(note);
    std::vector<const QCollatorSortKey*> keys;
    keys.reserve(size_t(notes.size()));
    for (const Note& note : notes) keys.push_back(&cache.titleKey(note));
    return sortedBy(notes, [&](qsizetype a, qsizetype b) {
        const int order = keys[size_t(a)]->compare(*keys[size_t(b)]);
        if (order != 0) return order < 0;
        return notes.at(a).modified > notes.at(b).modified;
    });
}

QString NoteFilter::tagKey(const QString& tag) { return Text::fold(Note::normalizedTag(tag)); }

}  // namespace vuro
