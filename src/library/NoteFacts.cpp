#include "library/NoteFacts.h"

#include "base/Text.h"
#include "library/NoteFilter.h"
#include "notes/NoteTokens.h"
#include "notes/TaskDue.h"
#include "notes/TaskLine.h"

#include <QCollator>

namespace vuro {

namespace {

// Same text without reading it when both share one buffer, which an unchanged note does.
bool sameText(const QString& a, const QString& b) {
    return (a.constData() == b.constData() && a.size() == b.size()) || a == b;
}

const QString agentChannelPrefix = QStringLiteral("agent.");

}  // namespace

NoteFacts NoteFacts::of(const Note& note) {
    NoteFacts facts;
    facts.haystack = (Text::fold(note.title) + QLatin1Char('\n') + Text::fold(note.body)).toUtf8();
    facts.tagKeys.reserve(note.tags.size());
    for (const QString& tag : note.tags) facts.tagKeys.append(NoteFilter::tagKey(tag));
    facts.displayTitle = note.displayTitle();
    facts.agentID = agentOf(note.origin);
    for (const TaskLine& task : TaskLine::all(note.body)) {
        facts.hasTasks = true;
        if (task.isDone) continue;
        facts.hasOpenTasks = true;
        if (TaskDue::parse(task.text)) facts.hasDueTasks = true;
    }
    facts.hasImages = !NoteTokens::imageTokens(note.body).isEmpty();
    facts.hasFiles = !NoteTokens::fileTokens(note.body).isEmpty();
    return facts;
}

std::optional<QString> NoteFacts::agentOf(const NoteOrigin& origin) {
    if (const auto* agent = std::get_if<NoteOrigin::FromAgent>(&origin.value)) return agent->agentID;
    if (const auto* drop = std::get_if<NoteOrigin::FromDrop>(&origin.value))
        if (drop->channelID.startsWith(agentChannelPrefix)) return drop->channelID.mid(agentChannelPrefix.size());
    return std::nullopt;
}

NoteFactsCache::Entry& NoteFactsCache::entry(const Note& note) {
    auto found = _entries.find(note.id);
    if (found != _entries.end() && sameText(found->title, note.title) && sameText(found->body, note.body) &&
        found->tags == note.tags && found->origin == note.origin)
        return *found;
    return *_entries.insert(note.id, Entry{note.title, note.body, note.tags, note.origin, NoteFacts::of(note), {}});
}

const NoteFacts& NoteFactsCache::facts(const Note& note) { return entry(note).facts; }

const QCollatorSortKey& NoteFactsCache::titleKey(const Note& note) {
    Entry& found = entry(note);
    if (!found.titleKey) {
        // The comparison people expect from a file manager: case-blind, numbers by value.
        static const QCollator collator = [] {
            // The C locale collates by code point; people sorting titles expect a language's order.
            QLocale locale;
            if (locale.language() == QLocale::C) locale = QLocale(QLocale::English);
            QCollator made(locale);
            made.setCaseSensitivity(Qt::CaseInsensitive);
            made.setNumericMode(true);
            return made;
        }();
        found.titleKey = collator.sortKey(found.facts.displayTitle);
    }
    return *found.titleKey;
}

void NoteFactsCache::prune(const QList<Note>& notes) {
    QSet<QString> ids;
    ids.reserve(notes.size());
    for (const Note& note : notes) ids.insert(note.id);
    _entries.removeIf([&](const auto& item) { return !ids.contains(item.key()); });
}

}  // namespace vuro
