#include "editor/ui/NoteEditor.h"

#include "notes/NoteTokens.h"

#include <QAbstractTextDocumentLayout>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTextBlock>
#include <QTextLayout>
#include <QUrl>
#include <algorithm>
#include <vector>

namespace vuro {

namespace {

const QChar openBox(0x2610);
const QChar doneBox(0x2611);

double headingScale(int level) {
    static const double scales[] = {1.0, 1.6, 1.4, 1.25, 1.12, 1.05, 1.0};
    return scales[std::clamp(level, 0, 6)];
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

// Where a line's box stands: after its indent, and followed by a blank or the line end.
qsizetype boxPosition(const QString& line) {
    qsizetype at = 0;
    while (at < line.size() && (line[at] == QLatin1Char(' ') || line[at] == QLatin1Char('\t'))) ++at;
    if (at < line.size() && (line[at] == openBox || line[at] == doneBox)) return at;
    return -1;
}

}  // namespace

NoteEditor::NoteEditor(QWidget* parent) : QPlainTextEdit(parent) {
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    connect(document(), &QTextDocument::contentsChange, this, [this](int from, int, int added) {
        if (!_loading) _coordinator.recordEdit({from, added});
    });
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (!_loading) _coordinator.textDidChange();
    });
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        _coordinator.selectionDidChange();
        const int block = textCursor().blockNumber();
        if (block != _caretBlock) {
            _caretBlock = block;
            commit();  // leaving a line finishes it
        }
    });
    updateStyleInputs();
}

NoteEditor::~NoteEditor() = default;

void NoteEditor::setStoredText(const QString& stored) {
    _loading = true;
    setPlainText(_adapter.editor(stored));
    _loading = false;
    _committed = stored;
    _caretBlock = textCursor().blockNumber();
    _coordinator.edits().drain(textLength(), false);
    fullPass();
}

QString NoteEditor::storedText() const { return EditorTextAdapter::toStored(toPlainText()); }

void NoteEditor::setNoteFontSize(double points) {
    _fontSize = points;
    updateStyleInputs();
}

void NoteEditor::setInk(const QColor& ink) {
    _ink = ink;
    updateStyleInputs();
}

void NoteEditor::setMarkdown(bool enabled) {
    _coordinator.markdownEnabled = enabled;
    updateStyleInputs();
}

void NoteEditor::setRevealMarks(bool reveal) {
    _coordinator.revealsMarks = reveal;
    updateStyleInputs();
}

void NoteEditor::setCommitFilter(std::function<QString(const QString&, const QString&)> filter) {
    _commitFilter = std::move(filter);
}

void NoteEditor::updateStyleInputs() {
    _coordinator.setStyleInputs(QStringLiteral("%1|%2|%3|%4|%5")
                                    .arg(_fontSize)
                                    .arg(_ink.name(QColor::HexArgb))
                                    .arg(layoutDirection())
                                    .arg(_coordinator.markdownEnabled)
                                    .arg(_coordinator.revealsMarks));
    if (_coordinator.needsFullPass()) fullPass();
}

void NoteEditor::fullPass() { _coordinator.applyFull(); }

void NoteEditor::commit() {
    if (_inHistory) return;
    const QString stored = storedText();
    if (stored == _committed) return;
    const QString old = _committed;
    _committed = stored;
    if (!_commitFilter) return;
    const QString filtered = _commitFilter(stored, old);
    if (filtered == stored) return;
    // The filter rewrites lines in place; only those lines are replaced, so the caret and the
    // undo history stay as they are.
    const QStringList before = stored.split(QLatin1Char('\n'));
    const QStringList after = filtered.split(QLatin1Char('\n'));
    if (before.size() != after.size()) return;
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    for (int i = 0; i < before.size(); ++i) {
        if (before[i] == after[i]) continue;
        const QTextBlock block = document()->findBlockByNumber(i);
        cursor.setPosition(block.position());
        cursor.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
        cursor.insertText(EditorTextAdapter::toEditor(after[i]));
    }
    cursor.endEditBlock();
    _committed = storedText();
}

void NoteEditor::toggleTaskLine() {
    QTextCursor cursor = textCursor();
    const QTextBlock block = cursor.block();
    const QString line = block.text();
    const qsizetype box = boxPosition(line);
    QTextCursor edit(block);
    if (box >= 0) {
        edit.setPosition(block.position() + static_cast<int>(box));
        const bool blank = box + 1 < line.size() && line[box + 1] == QLatin1Char(' ');
        edit.setPosition(block.position() + static_cast<int>(box) + (blank ? 2 : 1), QTextCursor::KeepAnchor);
        edit.removeSelectedText();
    } else {
        qsizetype indent = 0;
        while (indent < line.size() && (line[indent] == QLatin1Char(' ') || line[indent] == QLatin1Char('\t'))) ++indent;
        edit.setPosition(block.position() + static_cast<int>(indent));
        edit.insertText(QString(openBox) + QLatin1Char(' '));
    }
}

// ---- the text view seen by the coordinator

qsizetype NoteEditor::textLength() const { return document()->characterCount() - 1; }

EditorRange NoteEditor::lineRange(qsizetype position) const {
    const QTextBlock block = document()->findBlock(static_cast<int>(position));
    if (!block.isValid()) return {textLength(), 0};
    const qsizetype start = block.position();
    return {start, std::min<qsizetype>(block.length(), textLength() - start)};
}

QString NoteEditor::textIn(const EditorRange& range) const {
    QString text;
    for (QTextBlock block = document()->findBlock(static_cast<int>(range.location));
         block.isValid() && block.position() < range.end(); block = block.next()) {
        text += block.text();
        if (block.next().isValid()) text += QLatin1Char('\n');
    }
    const qsizetype offset = range.location - document()->findBlock(static_cast<int>(range.location)).position();
    return text.mid(offset, range.length);
}

qsizetype NoteEditor::selectionStart() const { return textCursor().selectionStart(); }

bool NoteEditor::hasMarkedText() const {
    const QTextLayout* layout = textCursor().block().layout();
    return layout && !layout->preeditAreaText().isEmpty();
}

void NoteEditor::writeBinding() { Q_EMIT storedTextChanged(_adapter.stored(toPlainText())); }

void NoteEditor::beginStyling(bool full) {
    if (!full) return;
    QFont font = this->font();
    font.setPointSizeF(_fontSize);
    setFont(font);
    document()->setDefaultFont(font);
    QPalette palette = this->palette();
    palette.setColor(QPalette::Text, _ink);
    setPalette(palette);
}

QColor NoteEditor::muted() const { return withAlpha(_ink, 0.42); }

QString NoteEditor::chipLabel(const QString& token) const {
    if (token.startsWith(QLatin1Char('!'))) return tr("Image");
    const auto files = NoteTokens::fileTokens(token);
    const QString name = files.isEmpty() ? QString() : files.front().name;
    return QStringLiteral("📎 ") + (name.isEmpty() ? tr("File") : name);
}

int NoteEditor::chipWidth(const QString& token) const {
    return QFontMetrics(font()).horizontalAdvance(chipLabel(token)) + 16;
}

void NoteEditor::styleLines(const EditorRange& range, const EditorStyling& styling) {
    QTextCharFormat hiddenFormat;
    hiddenFormat.setFontPointSize(0.01);
    hiddenFormat.setForeground(Qt::transparent);

    // The blocks of the range, and for each the formats that fall in it, in the engine's order
    // (a later span adds to an earlier one). Each range is filed under its blocks by a binary
    // search, so that a full pass over a long note costs its length, not lines times spans.
    std::vector<QTextBlock> blocks;
    std::vector<qsizetype> starts;
    for (QTextBlock block = document()->findBlock(static_cast<int>(range.location));
         block.isValid() && block.position() < std::max(range.end(), range.location + 1); block = block.next()) {
        blocks.push_back(block);
        starts.push_back(block.position());
    }
    if (blocks.empty()) return;
    std::vector<QList<QTextLayout::FormatRange>> formats(blocks.size());
    const auto add = [&](const EditorRange& r, const QTextCharFormat& format) {
        auto first = std::upper_bound(starts.cbegin(), starts.cend(), r.location);
        for (size_t i = size_t(std::max<qsizetype>(first - starts.cbegin() - 1, 0)); i < blocks.size() && starts[i] < r.end(); ++i) {
            const EditorRange line{starts[i], blocks[i].length() - 1};
            const qsizetype start = std::max(r.location, line.location);
            const qsizetype end = std::min(r.end(), line.end());
            if (end > start)
                formats[i].append({static_cast<int>(start - line.location), static_cast<int>(end - start), format});
        }
    };
    EditorRange token;  // the last image or file token seen
    for (const EditorSpan& span : styling.spans) {
        QTextCharFormat format;
        switch (span.role) {
        case EditorSpanRole::heading:
            format.setFontPointSize(_fontSize * headingScale(span.level));
            format.setFontWeight(QFont::DemiBold);
            break;
        case EditorSpanRole::link:
            format.setFontUnderline(true);
            if (!span.url.isEmpty()) {
                format.setAnchor(true);
                format.setAnchorHref(span.url);
            }
            break;
        case EditorSpanRole::bold: format.setFontWeight(QFont::Bold); break;
        case EditorSpanRole::italic:
        case EditorSpanRole::quote: format.setFontItalic(true); break;
        case EditorSpanRole::code:
            format.setFontFamilies({QStringLiteral("monospace")});
            format.setFontFixedPitch(true);
            format.setBackground(withAlpha(_ink, 0.07));
            break;
        case EditorSpanRole::strikethrough: format.setFontStrikeOut(true); break;
        case EditorSpanRole::bullet: format.setForeground(withAlpha(_ink, 0.5)); break;
        case EditorSpanRole::embed:
            format.setForeground(withAlpha(_ink, 0.32));
            token = span.range;
            break;
        case EditorSpanRole::embedHead:
            // The engine gives a token's whole span just before its head; the chip's label, made
            // of the whole token, decides the width.
            format = hiddenFormat;
            format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
            format.setFontLetterSpacing(chipWidth(textIn(token)));
            break;
        }
        add(span.range, format);
    }
    QTextCharFormat markFormat;
    markFormat.setForeground(muted());
    for (const EditorMark& mark : styling.marks) add(mark.range, markFormat);
    for (const EditorRange& hidden : styling.hidden) add(hidden, hiddenFormat);
    for (size_t i = 0; i < blocks.size(); ++i) blocks[i].layout()->setFormats(formats[i]);
    const qsizetype from = starts.front();
    document()->markContentsDirty(static_cast<int>(from),
                                  static_cast<int>(blocks.back().position() + blocks.back().length() - from));
}

void NoteEditor::endStyling(bool) { viewport()->update(); }

// ---- events

void NoteEditor::paintEvent(QPaintEvent* event) {
    QPlainTextEdit::paintEvent(event);
    if (!_coordinator.markdownEnabled) return;
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect area = event->rect();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF bounds = blockBoundingGeometry(block).translated(contentOffset());
        if (bounds.top() > area.bottom()) break;
        const QString text = block.text();
        QList<QPair<qsizetype, QString>> tokens;
        for (const auto& token : NoteTokens::imageTokens(text)) tokens.append({token.start, text.mid(token.start, token.length)});
        for (const auto& token : NoteTokens::fileTokens(text)) tokens.append({token.start, text.mid(token.start, token.length)});
        for (const auto& [start, token] : tokens) {
            QTextCursor at(block);
            at.setPosition(block.position() + static_cast<int>(start));
            const QRect caret = cursorRect(at);
            const QFontMetrics metrics(font());
            const QRectF chip(caret.left() + 1, caret.center().y() - metrics.height() / 2.0 - 2, chipWidth(token) - 4,
                              metrics.height() + 4);
            QPainterPath path;
            path.addRoundedRect(chip, 6, 6);
            painter.fillPath(path, withAlpha(_ink, 0.08));
            painter.setPen(withAlpha(_ink, 0.35));
            painter.drawPath(path);
            painter.setPen(_ink);
            painter.setFont(font());
            painter.drawText(chip, Qt::AlignCenter, chipLabel(token));
        }
    }
}

void NoteEditor::mousePressEvent(QMouseEvent* event) {
    const QTextCursor hit = cursorForPosition(event->position().toPoint());
    const QTextBlock block = hit.block();
    const qsizetype box = boxPosition(block.text());
    const int column = hit.positionInBlock();
    if (event->button() == Qt::LeftButton && box >= 0 && (column == box || column == box + 1)) {
        // A click on a box ticks it or opens it again.
        QTextCursor edit(block);
        edit.setPosition(block.position() + static_cast<int>(box));
        edit.setPosition(block.position() + static_cast<int>(box) + 1, QTextCursor::KeepAnchor);
        edit.insertText(block.text()[box] == openBox ? QString(doneBox) : QString(openBox));
        commit();
        return;
    }
    if (event->button() == Qt::LeftButton && (event->modifiers() & Qt::ControlModifier)) {
        const QString href = anchorAt(event->position().toPoint());
        if (!href.isEmpty() && EditorStyleEngine::isAllowedLink(href)) {
            QDesktopServices::openUrl(QUrl(href));
            return;
        }
    }
    QPlainTextEdit::mousePressEvent(event);
}

void NoteEditor::focusOutEvent(QFocusEvent* event) {
    commit();
    QPlainTextEdit::focusOutEvent(event);
}

void NoteEditor::keyPressEvent(QKeyEvent* event) {
    const bool history = event->matches(QKeySequence::Undo) || event->matches(QKeySequence::Redo);
    if (!history) {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    // What undo or redo brings back counts as committed: a date mark the user took back by
    // undoing must not come again when the caret leaves the line.
    _inHistory = true;
    QPlainTextEdit::keyPressEvent(event);
    _inHistory = false;
    _committed = storedText();
}

void NoteEditor::inputMethodEvent(QInputMethodEvent* event) {
    QPlainTextEdit::inputMethodEvent(event);
    // The commit of a composition produces the text change; a cleared preedit alone does not,
    // so the edits that waited get their pass here.
    if (event->preeditString().isEmpty() && !_coordinator.edits().isEmpty()) _coordinator.textDidChange();
}

}  // namespace vuro
