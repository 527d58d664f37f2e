#pragma once

#include "notes/Note.h"

#include <QList>
#include <QStringList>
#include <optional>

namespace vuro {

// Finds the note a model or a person means by a title. Titles are compared word by word after
// folding ("İ", "I", "ı" → "i", case, diacritics, width), ignoring what isn't a letter or digit
// and the noise words people put around a title ("my", "list", "notu", …). Two words match when
// equal, or when both have four or more characters and share the first four. Pure; any thread.
class NoteTitleMatch {
public:
    // The folded words of a text without noise words.
    static QStringList words(const QString& text);
    // The share of a's words that have a match in b; 0 when a has no words.
    static double coverage(const QStringList& a, const QStringList& b);

    // The note whose shown title covers at least half of title's words: the best coverage of the
    // title, then the best coverage of the note by the title, then the latest change. Archived
    // notes never match.
    static std::optional<Note> best(const QString& title, const QList<Note>& notes);

    // best, then the part before " — " with bullets and quotes stripped (a line copied from
    // list_notes), then the note with the shortest title whose words all appear in title.
    static std::optional<Note> find(const QString& title, const QList<Note>& notes);

    // The note whose words and title's words cover each other fully.
    static std::optional<Note> same(const QString& title, const QList<Note>& notes);
};

}  // namespace vuro
