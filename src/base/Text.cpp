#include "base/Text.h"

#include <QTextBoundaryFinder>

namespace vuro::Text {

QString fold(const QString& text) {
    QString dotless = text;
    dotless.replace(QChar(0x0130), QLatin1Char('i'))  // İ
        .replace(QLatin1Char('I'), QLatin1Char('i'))
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
