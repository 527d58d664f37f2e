#pragma once

#include <QLabel>

namespace vuro {

// A reply rendered from Markdown: paragraphs, lists, emphasis, code, tables and links. A model's
// text is not trusted: raw HTML stays text, and images are neither fetched nor read from disk but
// shown as their description. Links open in the browser only for web and mail addresses. The
// text can be selected and copied with the mouse and the keyboard.
class MarkdownLabel : public QLabel {
    Q_OBJECT
public:
    explicit MarkdownLabel(QWidget* parent = nullptr);

    void setMarkdown(const QString& markdown);
    const QString& markdown() const { return _markdown; }

    // The HTML shown for a Markdown text, with code set off by the given shade.
    static QString html(const QString& markdown, const QFont& font, const QColor& codeShade);

protected:
    void changeEvent(QEvent* event) override;

private:
    void render();

    QString _markdown;
};

}  // namespace vuro
