#include "agents/ui/ChatComposer.h"

#include <QInputMethodEvent>
#include <algorithm>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>
#include <QTextBlock>
#include <QTextLayout>
#include <QTextDocument>

namespace vuro {
namespace {

constexpr int maximumLines = 6;

}  // namespace

QStringList ChatComposer::localFiles(const QMimeData* data) {
    QStringList paths;
    if (!data || !data->hasUrls()) return paths;
    for (const QUrl& url : data->urls())
        if (url.isLocalFile()) paths.append(url.toLocalFile());
    return paths;
}

ChatComposer::ChatComposer(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    connect(document(), &QTextDocument::contentsChanged, this, &QWidget::updateGeometry);
}

int ChatComposer::heightForLines(int lines) const {
    const int margins = contentsMargins().top() + contentsMargins().bottom() + 2 * frameWidth() +
                        static_cast<int>(2 * document()->documentMargin()) + 2;
    return margins + lines * fontMetrics().lineSpacing();
}

QSize ChatComposer::sizeHint() const {
    int lines = 0;
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        lines += block.layout() && block.layout()->lineCount() > 0 ? block.layout()->lineCount() : 1;
    return {QPlainTextEdit::sizeHint().width(), heightForLines(std::clamp(lines, 1, maximumLines))};
}

QSize ChatComposer::minimumSizeHint() const { return {120, heightForLines(1)}; }

void ChatComposer::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && !_composing && !(event->modifiers() & Qt::ShiftModifier)) {
        event->accept();
        Q_EMIT submitted();
        return;
    }
    if (enter && (event->modifiers() & Qt::ShiftModifier)) {
        insertPlainText(QStringLiteral("\n"));
        event->accept();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void ChatComposer::inputMethodEvent(QInputMethodEvent* event) {
    _composing = !event->preeditString().isEmpty();
    QPlainTextEdit::inputMethodEvent(event);
}

bool ChatComposer::canInsertFromMimeData(const QMimeData* source) const {
    return !localFiles(source).isEmpty() || QPlainTextEdit::canInsertFromMimeData(source);
}

void ChatComposer::insertFromMimeData(const QMimeData* source) {
    const QStringList files = localFiles(source);
    if (files.isEmpty()) QPlainTextEdit::insertFromMimeData(source);
    else Q_EMIT filesOffered(files);
}

}  // namespace vuro
