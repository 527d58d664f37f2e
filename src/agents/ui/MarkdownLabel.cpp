#include "agents/ui/MarkdownLabel.h"

#include "agents/ui/ChatPalette.h"
#include "base/TestHost.h"

#include <QDesktopServices>
#include <QEvent>
#include <QFontMetrics>
#include <QTextList>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

namespace vuro {
namespace {

// Image characters from the end backwards, so that replacing one keeps the others' positions.
QList<QTextFragment> imagesReversed(const QTextDocument& document) {
    QList<QTextFragment> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto it = block.begin(); !it.atEnd(); ++it)
            if (it.fragment().charFormat().isImageFormat()) found.prepend(it.fragment());
    return found;
}

void replaceImages(QTextDocument& document) {
    for (const QTextFragment& fragment : imagesReversed(document)) {
        const QTextImageFormat image = fragment.charFormat().toImageFormat();
        QString alt = image.property(QTextFormat::ImageAltText).toString().trimmed();
        if (alt.isEmpty()) alt = image.property(QTextFormat::ImageTitle).toString().trimmed();
        QTextCursor cursor(&document);
        cursor.setPosition(fragment.position());
        cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
        QTextCharFormat plain;
        plain.setFontItalic(true);
        cursor.insertText(alt.isEmpty() ? MarkdownLabel::tr("[image]") : MarkdownLabel::tr("[image: %1]").arg(alt), plain);
    }
}

// Paragraphs and lists stand apart by half a line, as the blank lines of the Markdown ask; list
// items keep together.
void spaceBlocks(QTextDocument& document, int gap) {
    QTextCursor cursor(&document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlock next = block.next();
        if (!next.isValid()) break;
        if (block.textList() && next.textList()) continue;
        QTextBlockFormat format = block.blockFormat();
        format.setBottomMargin(std::max<qreal>(format.bottomMargin(), gap));
        cursor.setPosition(block.position());
        cursor.setBlockFormat(format);
    }
}

void shadeCode(QTextDocument& document, const QColor& shade) {
    QTextCursor cursor(&document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        if (format.hasProperty(QTextFormat::BlockCodeFence) || format.hasProperty(QTextFormat::BlockCodeLanguage)) {
            QTextBlockFormat shaded = format;
            shaded.setBackground(shade);
            cursor.setPosition(block.position());
            cursor.setBlockFormat(shaded);
            continue;
        }
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().fontFixedPitch()) continue;
            QTextCharFormat code;
            code.setBackground(shade);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(code);
        }
    }
}

}  // namespace

MarkdownLabel::MarkdownLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextBrowserInteraction);
    setOpenExternalLinks(false);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    connect(this, &QLabel::linkActivated, this, [](const QString& link) {
        const QUrl url(link);
        const QString scheme = url.scheme().toLower();
        if (isRunningTests()) return;
        if (scheme == QLatin1String("http") || scheme == QLatin1String("https") || scheme == QLatin1String("mailto"))
            QDesktopServices::openUrl(url);
    });
}

QString MarkdownLabel::html(const QString& markdown, const QFont& font, const QColor& codeShade) {
    QTextDocument document;
    document.setDefaultFont(font);
    document.setMarkdown(markdown, QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectGitHub) |
                                       QTextDocument::MarkdownNoHTML);
    replaceImages(document);
    spaceBlocks(document, QFontMetrics(font).lineSpacing() / 2);
    shadeCode(document, codeShade);
    return document.toHtml();
}

void MarkdownLabel::setMarkdown(const QString& markdown) {
    if (markdown == _markdown && !text().isEmpty()) return;
    _markdown = markdown;
    render();
}

void MarkdownLabel::render() {
    const QPalette& colors = palette();
    setText(html(_markdown, font(), ChatPalette::mix(colors.color(QPalette::Base), colors.color(QPalette::Text), 0.08)));
}

void MarkdownLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) render();
}

}  // namespace vuro
