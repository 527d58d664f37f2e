#include "agents/NoteTitleMatch.h"

#include "base/Text.h"

#include <QSet>

namespace vuro {
namespace {

bool wordsMatch(const QString& a, const QString& b) {
    if (a == b) return true;
    return a.size() >= 4 && b.size() >= 4 && QStringView(a).left(4) == QStringView(b).left(4);
}

QString strippedListLine(const QString& text) {
    static const QString strip = QStringLiteral("•“”\"' \t\n\r");
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && (strip.contains(text[start]) || text[start].isSpace())) ++start;
    while (end > start && (strip.contains(text[end - 1]) || text[end - 1].isSpace())) --end;
    return text.mid(start, end - start);
}

}  // namespace

QStringList NoteTitleMatch::words(const QString& text) {
    static const QSet<QString> noise = {
        QStringLiteral("not"),   QStringLiteral("notu"), QStringLiteral("notum"), QStringLiteral("notuna"),
        QStringLiteral("notumu"), QStringLiteral("notunu"), QStringLiteral("note"), QStringLiteral("list"),
        QStringLiteral("the"),   QStringLiteral("my")};
    const QString folded = Text::fold(text);
    QStringList result;
    QString word;
    const auto flush = [&] {
        if (!word.isEmpty() && !noise.contains(word)) result.append(word);
        word.clear();
    };
    for (qsizetype i = 0; i < folded.size(); ++i) {
        const QChar c = folded[i];
        if (c.isHighSurrogate() && i + 1 < folded.size()) {
            const char32_t code = QChar::surrogateToUcs4(c, folded[i + 1]);
            if (QChar::isLetterOrNumber(code)) {
                word += c;
                word += folded[++i];
                continue;
            }
            ++i;
            flush();
            continue;
        }
        if (c.isLetterOrNumber()) word += c;
        else flush();
    }
    flush();
    return result;
}

double NoteTitleMatch::coverage(const QStringList& a, const QStringList& b) {
    if (a.isEmpty()) return 0;
    qsizetype matched = 0;
    for (const QString& word : a)
        for (const QString& other : b)
            if (wordsMatch(word, other)) {
                ++matched;
                break;
            }
    return static_cast<double>(matched) / static_cast<double>(a.size());
}

std::optional<Note> NoteTitleMatch::best(const QString& title, const QList<Note>& notes) {
    const QStringList titleWords = words(title);
    if (titleWords.isEmpty()) return std::nullopt;
    const Note* chosen = nullptr;
    double chosenCoverage = 0;
    double chosenReverse = 0;
    for (const Note& note : notes) {
        if (note.archived) continue;
        const QStringList noteWords = words(note.displayTitle());
        if (noteWords.isEmpty()) continue;
        const double cover = coverage(titleWords, noteWords);
        if (cover < 0.5) continue;
        const double reverse = coverage(noteWords, titleWords);
        const bool better = !chosen || cover > chosenCoverage ||
                            (cover == chosenCoverage && (reverse > chosenReverse ||
                                                         (reverse == chosenReverse && note.modified > chosen->modified)));
        if (better) {
            chosen = &note;
            chosenCoverage = cover;
            chosenReverse = reverse;
        }
    }
    if (!chosen) return std::nullopt;
    return *chosen;
}

std::optional<Note> NoteTitleMatch::find(const QString& title, const QList<Note>& notes) {
    if (auto hit = best(title, notes)) return hit;
    if (const qsizetype dash = title.indexOf(QStringLiteral(" — ")); dash >= 0) {
        const QString before = strippedListLine(title.left(dash));
        if (before != title)
            if (auto hit = best(before, notes)) return hit;
    }
    const QStringList titleWords = words(title);
    if (titleWords.isEmpty()) return std::nullopt;
    const Note* chosen = nullptr;
    qsizetype chosenLength = 0;
    for (const Note& note : notes) {
        if (note.archived) continue;
        const QString shown = note.displayTitle();
        const QStringList noteWords = words(shown);
        if (noteWords.isEmpty() || coverage(noteWords, titleWords) < 1.0) continue;
        const qsizetype length = Text::characterCount(shown);
        if (!chosen || length < chosenLength) {
            chosen = &note;
            chosenLength = length;
        }
    }
    if (!chosen) return std::nullopt;
    return *chosen;
}

std::optional<Note> NoteTitleMatch::same(const QString& title, const QList<Note>& notes) {
    const QStringList titleWords = words(title);
    if (titleWords.isEmpty()) return std::nullopt;
    for (const Note& note : notes) {
        if (note.archived) continue;
        const QStringList noteWords = words(note.displayTitle());
        if (coverage(titleWords, noteWords) == 1.0 && coverage(noteWords, titleWords) == 1.0) return note;
    }
    return std::nullopt;
}

}  // namespace vuro
