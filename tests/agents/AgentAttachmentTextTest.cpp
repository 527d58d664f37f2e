#include "agents/AgentAttachmentText.h"
#include "agents/DocumentText.h"
#include "support/Printers.h"

#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <zip.h>

namespace vuro {
namespace {

// A real zip archive holding the given members, written with libzip.
QByteArray zipOf(const QList<std::pair<const char*, QByteArray>>& members) {
    QTemporaryDir dir;
    const QByteArray path = dir.filePath("archive.zip").toLocal8Bit();
    int error = 0;
    zip_t* archive = zip_open(path.constData(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    EXPECT_NE(archive, nullptr);
    QList<QByteArray> kept;  // libzip reads the buffers when the archive is closed
    for (const auto& [name, content] : members) {
        kept.append(content);
        zip_source_t* source = zip_source_buffer(archive, kept.last().constData(), kept.last().size(), 0);
        zip_file_add(archive, name, source, ZIP_FL_OVERWRITE);
    }
    EXPECT_EQ(zip_close(archive), 0);
    QFile file(QString::fromLocal8Bit(path));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

// A one-page PDF showing the given line, with a correct cross-reference table.
QByteArray pdfShowing(const QByteArray& line) {
    const QByteArray stream = "BT /F1 18 Tf 72 720 Td (" + line + ") Tj ET";
    const QList<QByteArray> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R "
        "/Resources << /Font << /F1 5 0 R >> >> >>",
        "<< /Length " + QByteArray::number(stream.size()) + " >>\nstream\n" + stream + "\nendstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>",
    };
    QByteArray pdf = "%PDF-1.4\n";
    QList<qsizetype> offsets;
    for (int i = 0; i < objects.size(); ++i) {
        offsets.append(pdf.size());
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const qsizetype xref = pdf.size();
    pdf += "xref\n0 " + QByteArray::number(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (const qsizetype offset : offsets) pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    pdf += "trailer\n<< /Size " + QByteArray::number(objects.size() + 1) + " /Root 1 0 R >>\nstartxref\n" +
           QByteArray::number(xref) + "\n%%EOF\n";
    return pdf;
}

AgentAttachment info(AgentAttachment::Kind kind, QString mediaType) {
    AgentAttachment attachment;
    attachment.id = "A";
    attachment.name = "file";
    attachment.kind = kind;
    attachment.mediaType = std::move(mediaType);
    return attachment;
}

TEST(DocumentText, WordProcessorFilesGiveTheirParagraphs) {
    const QByteArray docx = zipOf({{"[Content_Types].xml", "<Types/>"},
                                   {"word/document.xml",
                                    "<?xml version=\"1.0\"?><w:document xmlns:w=\"w\"><w:body>"
                                    "<w:p><w:r><w:t>Shopping</w:t></w:r><w:r><w:t xml:space=\"preserve\"> list</w:t></w:r></w:p>"
                                    "<w:p><w:r><w:t>milk</w:t><w:tab/><w:t>2 €</w:t></w:r></w:p>"
                                    "</w:body></w:document>"}});
    EXPECT_EQ(DocumentText::fromDocx(docx), QStringLiteral("Shopping list\nmilk\t2 €"));

    const QByteArray odt = zipOf({{"mimetype", "application/vnd.oasis.opendocument.text"},
                                  {"content.xml",
                                   "<?xml version=\"1.0\"?><office:document-content xmlns:office=\"o\" xmlns:text=\"t\">"
                                   "<office:font-face-decls><style:font-face style:name=\"Ignored\"/></office:font-face-decls>"
                                   "<office:body><office:text><text:h>Plan</text:h>"
                                   "<text:p>a<text:s text:c=\"3\"/>b<text:line-break/>Çay</text:p></office:text></office:body>"
                                   "</office:document-content>"}});
    EXPECT_EQ(DocumentText::fromOdt(odt), QStringLiteral("Plan\na   b\nÇay"));

    const QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Helvetica;}}{\\colortbl;\\red0\\green0\\blue0;}"
                           "{\\*\\generator Writer;}\\f0\\fs24 Caf\\'e9 \\b bold\\b0\\par "
                           "\\uc1\\u351?ehir \\{braces\\}\\tab end}";
    EXPECT_EQ(DocumentText::fromRtf(rtf), QStringLiteral("Café bold\nşehir {braces}\tend"));

    // The reader is picked by type, or by the bytes when the type says nothing.
    EXPECT_EQ(DocumentText::extract(docx, "application/octet-stream"), QStringLiteral("Shopping list\nmilk\t2 €"));
    EXPECT_EQ(DocumentText::extract(odt, "application/vnd.oasis.opendocument.text"), QStringLiteral("Plan\na   b\nÇay"));

    // Broken input never throws and gives nothing.
    for (const QByteArray& bad : {QByteArray("PK\x03\x04garbage"), QByteArray(), zipOf({{"other.xml", "<a/>"}}),
                                  zipOf({{"word/document.xml", "<w:document><w:p>unclosed"}})}) {
        EXPECT_EQ(DocumentText::fromDocx(bad), QString());
        EXPECT_EQ(DocumentText::fromOdt(bad), QString());
    }
    EXPECT_EQ(DocumentText::fromRtf("plain words"), QString());
}

TEST(AgentAttachmentText, EachKindGivesTextOrTheEmptyForm) {
    using Kind = AgentAttachment::Kind;
    EXPECT_EQ(AgentAttachmentText::extract(info(Kind::text, "text/plain"), "\xEF\xBB\xBFhello", false), "hello");
    EXPECT_EQ(AgentAttachmentText::extract(info(Kind::text, "text/plain"), " \n ", false), "(empty or unreadable)");
    EXPECT_EQ(AgentAttachmentText::extract(info(Kind::text, "text/plain"), "", true), "(boş ya da okunamadı)");
    EXPECT_THAT(AgentAttachmentText::extract(info(Kind::pdf, "application/pdf"), pdfShowing("Invoice 42 paid"), false)
                    .toStdString(),
                testing::HasSubstr("Invoice 42 paid"));
    EXPECT_EQ(AgentAttachmentText::extract(info(Kind::pdf, "application/pdf"), "%PDF-1.4 broken", false),
              "(empty or unreadable)");
    EXPECT_EQ(AgentAttachmentText::extract(info(Kind::document, "application/msword"), "\xd0\xcf\x11\xe0", false),
              "(empty or unreadable)");
    EXPECT_EQ(AgentAttachmentText::extract(info(Kind::image, "image/png"), "png", false),
              "An image. This model can't see images; below is what this computer recognized in it.\n"
              "Nothing was recognized.");
}

TEST(AgentAttachmentText, ImageFallbackAndBudget) {
    EXPECT_EQ(AgentAttachmentText::imageFallback("STOP", {"sign", "street"}, false),
              "An image. This model can't see images; below is what this computer recognized in it.\n"
              "Text in the image:\nSTOP\nSeen: sign, street");
    EXPECT_EQ(AgentAttachmentText::imageFallback({}, {"cat"}, true),
              "Resim. Bu model resmi göremiyor; aşağıdakiler resmin bu bilgisayarda tanınan içeriği.\n"
              "Görünenler (İngilizce etiketler): cat");
    EXPECT_EQ(AgentAttachmentText::fitted("abcdef", 6, false), "abcdef");
    EXPECT_EQ(AgentAttachmentText::fitted("abcdefg", 6, false), "abcdef\n[… truncated: only the start of the file]");
    EXPECT_EQ(AgentAttachmentText::fitted("abcdefg", 3, true), "abc\n[… kısaltıldı: dosyanın yalnızca başı]");
}

}  // namespace
}  // namespace vuro
