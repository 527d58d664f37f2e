#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentAttachmentImport.h"
#include "support/Printers.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace vuro {
namespace {

using Kind = AgentAttachment::Kind;
using Failure = AgentAttachmentImport::Failure;

const AgentAttachmentDraft& draftOf(const AgentAttachmentImport::Result& result) {
    if (const auto* failure = std::get_if<Failure>(&result)) ADD_FAILURE() << failure->message().toStdString();
    return std::get<AgentAttachmentDraft>(result);
}

QByteArray encoded(const QImage& image, const char* format, int quality = -1) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

QImage decoded(const QByteArray& bytes) { return QImage::fromData(bytes); }

TEST(AgentAttachmentImport, KindsComeFromTheTypeThenTheNameThenTheBytes) {
    struct Case {
        QString name;
        QByteArray bytes;
        QString mediaType;
        std::optional<Kind> kind;
        QString resultType;
    };
    const QByteArray binary("\x01\x02\x00\x7f\xfe", 5);
    const QList<Case> cases = {
        {"notes.txt", "hello", {}, Kind::text, "text/plain"},
        {"data.json", "{\"a\":1}", {}, Kind::text, "application/json"},
        {"main.cpp", "int main() {}", {}, Kind::text, "text/x-c++src"},
        {"letter.docx", "PK", {}, Kind::document, "application/vnd.openxmlformats-officedocument.wordprocessingml.document"},
        {"essay.odt", "PK", {}, Kind::document, "application/vnd.oasis.opendocument.text"},
        {"old.doc", binary, {}, Kind::document, "application/msword"},
        // RTF is text underneath, but it is a document first.
        {"memo.rtf", "{\\rtf1 hi}", {}, Kind::document, "application/rtf"},
        {"journal", "Plain words without any extension.\n", {}, Kind::text, "text/plain"},
        {"blob", binary, {}, std::nullopt, {}},
        {"archive.zip", "PK\x03\x04", {}, std::nullopt, {}},
        // A claimed type wins over the name.
        {"pasted", "some words", "text/markdown", Kind::text, "text/markdown"},
        {"weird.bin", "%PDF-1.4 body", "application/pdf", Kind::pdf, "application/pdf"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        const auto result = AgentAttachmentImport::fromBytes(c.name, c.bytes, c.mediaType);
        if (!c.kind) {
            ASSERT_TRUE(std::holds_alternative<Failure>(result));
            EXPECT_EQ(std::get<Failure>(result), Failure::unsupported(c.name));
            continue;
        }
        const auto& draft = draftOf(result);
        EXPECT_EQ(draft.info.kind, *c.kind);
        EXPECT_EQ(draft.info.mediaType, c.resultType);
        EXPECT_EQ(draft.info.name, c.name);
        EXPECT_EQ(draft.info.byteCount, c.bytes.size());
        EXPECT_FALSE(draft.info.id.isEmpty());
    }
}

TEST(AgentAttachmentImport, SizeLimitsAreInclusive) {
    const QByteArray atLimit(10000000, 'a');
    EXPECT_TRUE(std::holds_alternative<AgentAttachmentDraft>(AgentAttachmentImport::fromBytes("big.txt", atLimit)));
    const auto over = AgentAttachmentImport::fromBytes("big.txt", atLimit + "a");
    ASSERT_TRUE(std::holds_alternative<Failure>(over));
    EXPECT_EQ(std::get<Failure>(over), Failure::tooLarge("big.txt", 10000000));
    EXPECT_THAT(std::get<Failure>(over).message().toStdString(), testing::StartsWith("“big.txt” is too large (limit "));

    EXPECT_EQ(AgentAttachmentImport::limit(Kind::image, "image/png"), 40000000);
    EXPECT_EQ(AgentAttachmentImport::limit(Kind::image, "image/tiff"), 256000000);
    EXPECT_EQ(AgentAttachmentImport::limit(Kind::image, "image/bmp"), 256000000);
    EXPECT_EQ(AgentAttachmentImport::limit(Kind::pdf, "application/pdf"), 20000000);
    EXPECT_EQ(AgentAttachmentImport::limit(Kind::audio, "audio/mpeg"), 4000000000);
}

TEST(AgentAttachmentImport, APdfMustSignItselfInItsFirstKilobyte) {
    struct Case {
        qsizetype offset;
        bool accepted;
    };
    for (const Case c : {Case{0, true}, Case{1020, true}, Case{1021, false}, Case{4000, false}}) {
        SCOPED_TRACE(c.offset);
        const QByteArray bytes = QByteArray(c.offset, ' ') + "%PDF-1.7\n";
        const auto result = AgentAttachmentImport::fromBytes(".pdf", bytes);
        if (c.accepted) {
            EXPECT_EQ(draftOf(result).info.kind, Kind::pdf);
        } else {
            ASSERT_TRUE(std::holds_alternative<Failure>(result));
            EXPECT_EQ(std::get<Failure>(result).message(), QStringLiteral("Couldn't read “.pdf”."));
        }
    }
}

TEST(AgentAttachmentImport, ImagesAreScaledToTheLongestSideAndReencoded) {
    QImage wide(4000, 1000, QImage::Format_ARGB32);
    wide.fill(QColor(10, 120, 200, 180));
    const auto png = draftOf(AgentAttachmentImport::fromBytes("wide.png", encoded(wide, "PNG")));
    EXPECT_EQ(png.info.kind, Kind::image);
    EXPECT_EQ(png.info.mediaType, "image/png");
    EXPECT_EQ(decoded(png.data).size(), QSize(2048, 512));
    EXPECT_EQ(png.info.byteCount, png.data.size());

    // A photograph stays a photograph.
    QImage tall(300, 5000, QImage::Format_RGB32);
    tall.fill(Qt::darkGreen);
    const auto jpeg = draftOf(AgentAttachmentImport::fromBytes("tall.jpg", encoded(tall, "JPEG", 95)));
    EXPECT_EQ(jpeg.info.mediaType, "image/jpeg");
    EXPECT_EQ(decoded(jpeg.data).size(), QSize(122, 2048));

    // A thin line never becomes zero pixels high.
    QImage line(9000, 2, QImage::Format_RGB32);
    line.fill(Qt::black);
    EXPECT_EQ(decoded(draftOf(AgentAttachmentImport::fromBytes("line.png", encoded(line, "PNG"))).data).height(), 1);
}

TEST(AgentAttachmentImport, NoiseThatWontFitAsPngEndsAsJpegUnderTheCeiling) {
    QImage noise(2048, 2048, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < noise.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(noise.scanLine(y));
        for (int x = 0; x < noise.width(); ++x) row[x] = 0xff000000u | random.bounded(0x1000000u);
    }
    const QByteArray source = encoded(noise, "PNG");
    ASSERT_GT(source.size(), AgentAttachmentImport::imageByteCeiling);
    const auto draft = draftOf(AgentAttachmentImport::fromBytes("noise.png", source));
    EXPECT_EQ(draft.info.mediaType, "image/jpeg");
    EXPECT_LT(draft.data.size(), AgentAttachmentImport::imageByteCeiling);
    EXPECT_FALSE(decoded(draft.data).isNull());
}

TEST(AgentAttachmentImport, FailuresAreSentences) {
    const auto broken = AgentAttachmentImport::fromBytes("photo.png", "not a picture at all");
    ASSERT_TRUE(std::holds_alternative<Failure>(broken));
    EXPECT_EQ(std::get<Failure>(broken), Failure::unreadable("photo.png"));

    EXPECT_EQ(Failure::unsupported("a.zip").message(),
              QStringLiteral("“a.zip” can't be attached: only images, PDFs, text, documents and recordings."));
    EXPECT_EQ(Failure::tooMany(10).message(), QStringLiteral("You can attach up to 10 files to a message."));
}

TEST(AgentAttachmentImport, FilesAreReadFromDiskAndFoldersRefused) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QFile file(dir.filePath("shopping.md"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("- milk\n- bread\n");
    file.close();
    const auto draft = draftOf(AgentAttachmentImport::fromFile(file.fileName()));
    EXPECT_EQ(draft.info.kind, Kind::text);
    EXPECT_EQ(draft.info.name, "shopping.md");
    EXPECT_EQ(draft.data, QByteArray("- milk\n- bread\n"));

    ASSERT_TRUE(QDir(dir.path()).mkdir("folder"));
    EXPECT_EQ(std::get<Failure>(AgentAttachmentImport::fromFile(dir.filePath("folder"))), Failure::unsupported("folder"));
    EXPECT_EQ(std::get<Failure>(AgentAttachmentImport::fromFile(dir.filePath("gone.txt"))), Failure::unreadable("gone.txt"));
}

TEST(AgentAttachmentFiles, AFailedWriteTakesBackTheFilesOfItsMessage) {
    InMemoryAgentAttachmentFiles files;
    const auto first = draftOf(AgentAttachmentImport::fromBytes("a.txt", "a"));
    const auto second = draftOf(AgentAttachmentImport::fromBytes("b.txt", "b"));
    files.failingID = second.info.id;
    EXPECT_ANY_THROW(files.store({first, second}));
    EXPECT_TRUE(files.allIDs().isEmpty());

    files.failingID.clear();
    const auto stored = files.store({first, second});
    ASSERT_EQ(stored.size(), 2);
    EXPECT_EQ(files.read(second.info.id), QByteArray("b"));
}

}  // namespace
}  // namespace vuro
