#include "base/Text.h"

#include <QTextBoundaryFinder>

namespace vuro::Text {

namespace {

// The whole folding, for a run of text without ASCII characters.
QString foldUnicode(QStringView run) {
    QString dotless = run.toString();
    dotless.replace(QChar(0x0130), QLatin1Char('i'))  // İ
        .replace(QChar(0x0131), QLatin1Char('i'));  // ı
    const QString decomposed = dotless.toCaseFolded().normalized(QString::NormalizationForm_KD);
    QString folded;
    folded.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        const auto category = c.category();
        if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing) continue;
        folded.append(c);
    }
    return folded.toCaseFolded();
}

bool isASCII(QChar c) { return c.unicode() < 0x80; }

}  // namespace

// Search folds every note, and notes are mostly ASCII, where folding is lower-casing ("I"
// included). Only the runs outside ASCII take the Unicode path. Cutting the text at ASCII
// characters changes nothing: each of them starts a character of its own in every normal form,
// so no decomposition, reordering or combining mark reaches across them.
QString fold(const QString& text) {
    QString folded;
    folded.reserve(text.size());
    const QChar* characters = text.constData();
    const qsizetype size = text.size();
    qsizetype start = 0;
    while (start < size) {
        qsizetype end = start;
        const bool ascii = isASCII(characters[start]);
        while (end < size && isASCII(characters[end]) == ascii) ++end;
        const QStringView run(characters + start, end - start);
        if (ascii) {
            const qsizetype from = folded.size();
            folded.append(run);
            for (QChar* c = folded.data() + from; c != folded.data() + folded.size(); ++c)
                if (c->unicode() >= 'A' && c->unicode() <= 'Z') *c = QChar(c->unicode() + ('a' - 'A'));
        } else {
            folded.append(foldUnicode(run));
        }
        start = end;
    }
    return folded;
}

qsizetype characterCount(const QString& text) {
    // Fast path: no surrogates and no combining marks means one QChar per character.
    bool simple = true;
    for (const QChar c : text) {
        if (c.isSurrogate() || c.unicode() >= 0x0300) {
            simple = false;
            break;
        }
    }
    if (simple) {
        qsizetype crlf = 0;
        for (qsizetype i = 1; i < text.size(); ++i)
            if (text[i] == QLatin1Char('\n') && text[i - 1] == QLatin1Char('\r')) ++crlf;
        return text.size() - crlf;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1) ++count;
    return count;
}

QString leftCharacters(const QString& text, qsizetype n) {
    if (n <= 0) return {};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    qsizetype position = 0;
    while (count < n) {
        const qsizetype next = finder.toNextBoundary();
        if (next == -1) return text;
        position = next;
        ++count;
    }
    return text.left(position);
}

QString cut(const QString& text, qsizetype n) {
    if (characterCount(text) <= n) return text;
    return leftCharacters(text, n) + QChar(0x2026);
}

QString trimmed(const QString& text) {
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && text[start].isSpace()) ++start;
    while (end > start && text[end - 1].isSpace()) --end;
    return text.mid(start, end - start);
}

}  // namespace vuro::Text
