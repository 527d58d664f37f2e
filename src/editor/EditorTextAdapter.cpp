#include "editor/EditorTextAdapter.h"

#include <QRegularExpression>

namespace vuro {

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

QString EditorTextAdapter::toStored(const QString& editor) {
    if (!editor.contains(QChar(0x2610)) && !editor.contains(QChar(0x2611))) return editor;
    static const QRegularExpression open(QStringLiteral("^([\\t ]*)☐ "), QRegularExpression::MultilineOption);
    static const QRegularExpression done(QStringLiteral("^([\\t ]*)☑ "), QRegularExpression::MultilineOption);
    QString text = editor;
    text.replace(open, QStringLiteral("\\1- [ ] "));
    text.replace(done, QStringLiteral("\\1- [x] "));
    return text;
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
