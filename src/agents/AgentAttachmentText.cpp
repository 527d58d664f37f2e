#include "agents/AgentAttachmentText.h"

#include "agents/DocumentText.h"
#include "base/Text.h"

#include <QStringDecoder>
#include <memory>
#include <poppler-document.h>
#include <poppler-page.h>

namespace vuro::AgentAttachmentText {
namespace {

QString plainText(const QByteArray& data) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(data);
    if (utf8.hasError()) text = QString::fromLatin1(data);
    if (text.startsWith(QChar(0xFEFF))) text.remove(0, 1);
    return text;
}

QString pdfText(const QByteArray& data) {
    std::unique_ptr<poppler::document> document(
        poppler::document::load_from_raw_data(data.constData(), static_cast<int>(data.size())));
    if (!document || document->is_locked()) return {};
    QStringList pages;
    for (int i = 0; i < document->pages(); ++i) {
        std::unique_ptr<poppler::page> page(document->create_page(i));
        if (!page) continue;
        const poppler::byte_array utf8 = page->text().to_utf8();
        pages.append(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())).trimmed());
    }
    return pages.join(QStringLiteral("\n\n")).trimmed();
}

}  // namespace

QString emptyText(bool turkish) {
    return turkish ? QStringLiteral("(boş ya da okunamadı)") : QStringLiteral("(empty or unreadable)");
}

QString extract(const AgentAttachment& info, const QByteArray& data, bool turkish) {
    QString text;
    switch (info.kind) {
    case AgentAttachment::Kind::text:
        text = plainText(data);
        break;
    case AgentAttachment::Kind::pdf:
        text = pdfText(data);
        break;
    case AgentAttachment::Kind::document:
        text = DocumentText::extract(data, info.mediaType);
        break;
    case AgentAttachment::Kind::image:
        return imageFallback({}, {}, turkish);
    case AgentAttachment::Kind::audio:
        break;  // a recording reaches a model only as its transcript, made elsewhere
    }
    return Text::trimmed(text).isEmpty() ? emptyText(turkish) : text;
}

QString imageFallback(const QString& recognized, const QStringList& labels, bool turkish) {
    QStringList parts{turkish ? QStringLiteral("Resim. Bu model resmi göremiyor; aşağıdakiler resmin bu bilgisayarda "
                                               "tanınan içeriği.")
                              : QStringLiteral("An image. This model can't see images; below is what this computer "
                                               "recognized in it.")};
    const QString text = Text::trimmed(recognized);
    if (!text.isEmpty()) parts.append((turkish ? QStringLiteral("İçindeki yazı:\n") : QStringLiteral("Text in the image:\n")) + text);
    if (!labels.isEmpty())
        parts.append((turkish ? QStringLiteral("Görünenler (İngilizce etiketler): ") : QStringLiteral("Seen: ")) +
                     labels.join(QStringLiteral(", ")));
    if (text.isEmpty() && labels.isEmpty())
        parts.append(turkish ? QStringLiteral("Tanınan bir şey yok.") : QStringLiteral("Nothing was recognized."));
    return parts.join(QLatin1Char('\n'));
}

QString fitted(const QString& text, qsizetype budget, bool turkish) {
    if (Text::characterCount(text) <= budget) return text;
    return Text::leftCharacters(text, budget) +
           (turkish ? QStringLiteral("\n[… kısaltıldı: dosyanın yalnızca başı]")
                    : QStringLiteral("\n[… truncated: only the start of the file]"));
}

}  // namespace vuro::AgentAttachmentText
