#include "editor/EditorTextAdapter.h"

#include <QRegularExpression>

namespace vuro {

namespace {
const QChar openBox(0x2610);
const QChar doneBox(0x2611);
}  // namespace

QString EditorTextAdapter::toEditor(const QString& stored) {
    if (!stored.contains(QLatin1Char('['))) return stored;
    static const QRegularExpression open(QStringLiteral("^([\\t ]*)[-*+][\\t ]+\\[ \\]([\\t ]+|$)"),
                                         QRegularExpression::MultilineOption);
    static const QRegularExpression done(QStringLiteral("^([\\t ]*)[-*+][\\t ]+\\[[xX]\\]([\\t ]+|$)"),
                                         QRegularExpression::MultilineOption);
    QString text = stored;
    text.replace(open, QStringLiteral("\\1☐ "));
    text.replace(done, QStringLiteral("\\1☑ "));
    return text;
}

// The effect of the two line-anchored replacements "^([\t ]*)☐ " → "$1- [ ] " and
// "^([\t ]*)☑ " → "$1- [x] ", in one pass by hand: every change in the editor converts its
// whole text, and over a long note this is several times faster than the regular expressions.
QString EditorTextAdapter::toStored(const QString& editor) {
    const QChar* text = editor.constData();
    const qsizetype size = editor.size();
    QString stored;
    qsizetype copied = 0;  // editor text before this position is in stored already
    qsizetype line = 0;
    while (line < size) {
        qsizetype at = line;
        while (at < size && (text[at] == QLatin1Char(' ') || text[at] == QLatin1Char('\t'))) ++at;
        if (at + 1 < size && (text[at] == openBox || text[at] == doneBox) && text[at + 1] == QLatin1Char(' ')) {
            if (copied == 0) stored.reserve(size + size / 8);
            stored.append(QStringView(text + copied, at - copied));
            stored.append(text[at] == openBox ? QStringView(u"- [ ] ") : QStringView(u"- [x] "));
            copied = at + 2;
        }
        const qsizetype newline = editor.indexOf(QLatin1Char('\n'), at);
        if (newline < 0) break;
        line = newline + 1;
    }
    if (copied == 0) return editor;
    stored.append(QStringView(text + copied, size - copied));
    return stored;
}

QString EditorTextAdapter::editor(const QString& stored) {
    if (_hasMemo && stored == _lastStored) return _lastEditor;
    _lastStored = stored;
    _lastEditor = toEditor(stored);
    _hasMemo = true;
    return _lastEditor;
}

QString EditorTextAdapter::stored(const QString& editor) {
    if (_hasMemo && editor == _lastEditor) return _lastStored;
    _lastEditor = editor;
    _lastStored = toStored(editor);
    _hasMemo = true;
    return _lastStored;
}

}  // namespace vuro
