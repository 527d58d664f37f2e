#pragma once

#include "editor/EditorBridge.h"
#include "editor/EditorStyleCoordinator.h"
#include "editor/EditorTextAdapter.h"
#include "editor/EditorTextView.h"

#include <QColor>
#include <QPlainTextEdit>
#include <functional>

namespace vuro {

// The note editor: plain Markdown text shown styled as it is typed. Styles are laid over the
// block layouts, never into the document, so the text, the undo stack and copying see exactly
// what is stored. A hidden mark gets a font of next to no size and no colour: it takes no room
// and is not drawn, while the caret and the selection still step over it. An image or file
// token keeps its first character, widened by letter spacing to the chip drawn over it.
// Task lines show one box character; storedText() gives them back as "- [ ]" and "- [x]".
class NoteEditor : public QPlainTextEdit, private EditorTextView, public EditorBridge {
    Q_OBJECT
public:
    explicit NoteEditor(QWidget* parent = nullptr);
    ~NoteEditor() override;

    // Replaces the text; the undo history starts afresh.
    void setStoredText(const QString& stored);
    QString storedText() const;

    void setNoteFontSize(double points);
    void setInk(const QColor& ink);
    void setMarkdown(bool enabled);
    void setRevealMarks(bool reveal);
    // Runs over the stored text when a change is committed (the caret leaves a changed line,
    // the editor loses focus); it may rewrite the lines that changed since the last commit.
    void setCommitFilter(std::function<QString(const QString& newBody, const QString& oldBody)> filter);
    void commit();

    void toggleTaskLine() override;
    EditorStyleCoordinator& coordinator() { return _coordinator; }

Q_SIGNALS:
    void storedTextChanged(const QString& stored);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    qsizetype textLength() const override;
    EditorRange lineRange(qsizetype position) const override;
    QString textIn(const EditorRange& range) const override;
    qsizetype selectionStart() const override;
    bool hasMarkedText() const override;
    void writeBinding() override;
    void beginStyling(bool full) override;
    void styleLines(const EditorRange& range, const EditorStyling& styling) override;
    void endStyling(bool cursorRects) override;

    void updateStyleInputs();
    void fullPass();
    QString chipLabel(const QString& token) const;
    int chipWidth(const QString& token) const;
    QColor muted() const;

    EditorStyleCoordinator _coordinator{*this};
    EditorTextAdapter _adapter;
    double _fontSize = 14;
    QColor _ink{0x22, 0x22, 0x22};
    std::function<QString(const QString&, const QString&)> _commitFilter;
    QString _committed;  // stored text at the last commit
    int _caretBlock = 0;
    bool _loading = false;
    bool _inHistory = false;
};

}  // namespace vuro
