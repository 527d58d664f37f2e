#include "base/Json.h"
#include "notes/Note.h"
#include "notes/NoteFile.h"

#include "support/Printers.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace vuro;

namespace {

Note sample() {
    Note note;
    note.id = QStringLiteral("6F9619FF-8B86-D011-B42D-00C04FC964FF");
    note.title = QStringLiteral("Groceries");
    note.body = QStringLiteral("- [ ] milk\n- [x] bread");
    note.color = NoteColor::sky;
    note.created = QDateTime(QDate(2026, 5, 1), QTime(9, 30, 0, 125), Qt::UTC).toLocalTime();
    note.modified = note.created.addSecs(90);
    note.archived = true;
    note.pinned = true;
    note.order = -2.5;
    note.origin = NoteOrigin::agent(QStringLiteral("vuro.notes"), QStringLiteral("RUN-1"), QStringLiteral("Notes"));
    note.tags = {QStringLiteral("home"), QStringLiteral("weekly")};
    note.folderID = QStringLiteral("F1");
    return note;
}

QJsonObject parse(const char* json) { return QJsonDocument::fromJson(QByteArray(json)).object(); }

}  // namespace

TEST(Note, JsonRoundTripsEveryFieldAndOrigin) {
    for (const NoteOrigin& origin : {NoteOrigin::local(), NoteOrigin::drop("C", "D", "Ada"), NoteOrigin::agent("A", "R", "Bot")}) {
        Note note = sample();
        note.origin = origin;
        EXPECT_EQ(Note::fromJson(note.toJson()), note);
        note.folderID.reset();
        const QJsonObject json = note.toJson();
        EXPECT_FALSE(json.contains(QStringLiteral("folderID")));
        EXPECT_EQ(Note::fromJson(json), note);
    }
    const QJsonObject json = sample().toJson();
    EXPECT_EQ(json.value("color").toInt(), 4);
    EXPECT_EQ(json.value("created").toString(), QStringLiteral("2026-05-01T09:30:00.125Z"));
    EXPECT_EQ(json.value("origin").toObject(),
              parse(R"({"agent":{"agentID":"vuro.notes","runID":"RUN-1","agentName":"Notes"}})"));
    EXPECT_EQ(NoteOrigin::local().toJson(), parse(R"({"local":{}})"));
}

TEST(Note, DecodingRefusesBadShapes) {
    struct Case {
        const char* what;
        std::function<void(QJsonObject&)> damage;
        QString message;
    };
    const QString keys = QStringLiteral("Invalid number of keys found, expected one.");
    const Case cases[] = {
        {"origin with no key", [](QJsonObject& o) { o["origin"] = QJsonObject(); }, keys},
        {"origin with two keys", [](QJsonObject& o) { o["origin"] = parse(R"({"local":{},"agent":{}})"); }, keys},
        {"unknown origin", [](QJsonObject& o) { o["origin"] = parse(R"({"moon":{}})"); }, {}},
        {"origin payload missing a field", [](QJsonObject& o) { o["origin"] = parse(R"({"drop":{"channelID":"C"}})"); }, {}},
        {"colour out of range", [](QJsonObject& o) { o["color"] = 8; }, {}},
        {"colour not whole", [](QJsonObject& o) { o["color"] = 1.5; }, {}},
        {"missing tags", [](QJsonObject& o) { o.remove("tags"); }, {}},
        {"missing order", [](QJsonObject& o) { o.remove("order"); }, {}},
        {"date not a date", [](QJsonObject& o) { o["created"] = QStringLiteral("yesterday"); }, {}},
        {"tag not a string", [](QJsonObject& o) { o["tags"] = QJsonArray{1}; }, {}},
    };
    for (const Case& c : cases) {
        QJsonObject json = sample().toJson();
        c.damage(json);
        try {
            Note::fromJson(json);
            ADD_FAILURE() << "decoded despite " << c.what;
        } catch (const DecodingError& error) {
            if (!c.message.isEmpty()) {
                EXPECT_EQ(error.message(), c.message) << c.what;
            }
            EXPECT_FALSE(error.message().isEmpty()) << c.what;
        }
    }
}

TEST(Note, HashesByIdAndComparesEveryField) {
    const Note a = sample();
    Note b = a;
    b.modified = b.modified.addSecs(1);
    EXPECT_EQ(qHash(a), qHash(b));
    EXPECT_NE(a, b);
    QSet<Note> set{a};
    EXPECT_FALSE(set.contains(b));  // equal hash, unequal value
}

TEST(Note, EmptinessAndDisplayTitle) {
    struct Case {
        const char* title;
        const char* body;
        bool empty;
        const char* display;
    } cases[] = {
        {"", "", true, "Empty note"},
        {"   ", " \n\t\n", true, "Empty note"},
        {"  Plan  ", "body", false, "Plan"},
        {"   ", "# \nSecond line", false, "Second line"},
        {"", "\n\n## Weekly *review*\nrest", false, "Weekly review"},
    };
    for (const auto& c : cases) {
        Note note;
        note.title = QString::fromUtf8(c.title);
        note.body = QString::fromUtf8(c.body);
        EXPECT_EQ(note.isEmpty(), c.empty) << c.title << "|" << c.body;
        EXPECT_EQ(note.displayTitle(), QString::fromUtf8(c.display)) << c.title << "|" << c.body;
    }
}

TEST(Note, DerivedTitleStripsHeadingsAndInlineMarkdown) {
    const QString sixty(60, QLatin1Char('a'));
    struct Case {
        QString body;
        QString title;
    } cases[] = {
        {"", ""},
        {"\n   \n", ""},
        {"# \nNext", "Next"},
        {"###### Deep", "Deep"},
        {"####### seven", "# seven"},  // the mark takes at most six
        {"**Bold** and _soft_ and `code`", "Bold and soft and code"},
        {"[Link text](https://example.com) here", "Link text here"},
        {"Tom &amp; Jerry &#x1F600;", "Tom & Jerry 😀"},
        {"- not a list", "- not a list"},
        {"> not a quote", "> not a quote"},
        {"1. not a number", "1. not a number"},
        {"**unbalanced", "**unbalanced"},
        {"a\\*b", "a*b"},
        {"spaces   inside *kept*", "spaces   inside kept"},
        {"_leading emphasis_", "leading emphasis"},
        {sixty, sixty},
        {sixty + "b", sixty + "…"},
        {QString(59, 'x') + "👨‍👩‍👧z", QString(59, 'x') + "👨‍👩‍👧…"},
    };
    for (const auto& c : cases) EXPECT_EQ(Note::derivedTitle(c.body), c.title) << c.body.toStdString();
}

TEST(Note, NormalizesTags) {
    struct Case {
        const char* typed;
        const char* tag;
    } cases[] = {
        {"#Big idea!", "Big-idea"},
        {"  “quoted”  ", "quoted"},
        {"a   b\tc", "a-b-c"},
        {"#-_-#", ""},
        {"   ", ""},
        {"(work/home)", "work/home"},
        {"x y -", "x-y"},
        {"abcdefghijklmnopqrstuvwxyz012345-more", "abcdefghijklmnopqrstuvwxyz012345"},
        {"abcdefghijklmnopqrstuvwxyz01234 x", "abcdefghijklmnopqrstuvwxyz01234"},  // cut leaves a dash
        {"çalışma", "çalışma"},
    };
    for (const auto& c : cases) EXPECT_EQ(Note::normalizedTag(QString::fromUtf8(c.typed)), QString::fromUtf8(c.tag)) << c.typed;
}

TEST(Drop, JsonRoundTrip) {
    const Drop drop{"D1", "S", "U", "Ada", QDateTime(QDate(2026, 1, 2), QTime(3, 4), Qt::UTC), "hello"};
    EXPECT_EQ(Drop::fromJson(drop.toJson()), drop);
    QJsonObject broken = drop.toJson();
    broken.remove("text");
    EXPECT_THROW(Drop::fromJson(broken), DecodingError);
}

TEST(NoteFile, KindLabelSummaryAndAgentLabel) {
    struct Case {
        const char* name;
        const char* type;
        qint64 bytes;
        std::optional<double> duration;
        NoteFile::Kind kind;
        const char* label;
        const char* summary;
        const char* agent;
        const char* agentTurkish;
    } cases[] = {
        {"meeting.m4a", "audio/mp4", 2'000'000, std::nullopt, NoteFile::Kind::audio, "M4A", "M4A · 2 MB",
         "meeting.m4a (audio recording, 2 MB)", "meeting.m4a (ses kaydı, 2 MB)"},
        {"talk.ogg", "", 2'500'000, 3725.0, NoteFile::Kind::audio, "OGG", "1:02:05 · 2.5 MB",
         "talk.ogg (audio recording, 1:02:05, 2.5 MB)", "talk.ogg (ses kaydı, 1:02:05, 2.5 MB)"},
        {"clip.mp4", "video/mp4", 999, 65.0, NoteFile::Kind::video, "MP4", "1:05 · 999 bytes",
         "clip.mp4 (video, 1:05, 999 bytes)", "clip.mp4 (video, 1:05, 999 bytes)"},
        {"photo.jpeg", "image/jpeg", 1500, std::nullopt, NoteFile::Kind::image, "JPEG", "JPEG · 2 KB",
         "photo.jpeg (image, 2 KB)", "photo.jpeg (resim, 2 KB)"},
        {"scan", "application/pdf", 1, std::nullopt, NoteFile::Kind::pdf, "PDF document", "PDF document · 1 byte",
         "scan (PDF, 1 byte)", "scan (PDF, 1 byte)"},
        {"notes.markdown", "bogus/type", 0, std::nullopt, NoteFile::Kind::document, "Markdown document",
         "Markdown document · Zero KB", "notes.markdown (Markdown document, Zero KB)",
         "notes.markdown (Markdown document, Zero KB)"},
        {"blob", "", 1'234'567'890, std::nullopt, NoteFile::Kind::document, "File", "File · 1.23 GB",
         "blob (File, 1.23 GB)", "blob (File, 1.23 GB)"},
        {"song.flac", "whatever", 10, 30.0, NoteFile::Kind::audio, "FLAC", "0:30 · 10 bytes",
         "song.flac (audio recording, 0:30, 10 bytes)", "song.flac (ses kaydı, 0:30, 10 bytes)"},
    };
    for (const auto& c : cases) {
        NoteFile file{"F", c.name, c.type, c.bytes, c.duration, QDateTime::currentDateTimeUtc()};
        EXPECT_EQ(file.kind(), c.kind) << c.name;
        EXPECT_EQ(file.typeLabel(), QString::fromUtf8(c.label)) << c.name;
        EXPECT_EQ(file.summary(), QString::fromUtf8(c.summary)) << c.name;
        EXPECT_EQ(file.agentLabel(false), QString::fromUtf8(c.agent)) << c.name;
        EXPECT_EQ(file.agentLabel(true), QString::fromUtf8(c.agentTurkish)) << c.name;
    }
    EXPECT_EQ(NoteFile::kindName(NoteFile::Kind::pdf), QStringLiteral("pdf"));
}

TEST(NoteFile, JsonLeavesOutMissingDuration) {
    NoteFile file{"F", "a.txt", "text/plain", 12, std::nullopt, QDateTime(QDate(2026, 3, 1), QTime(8, 0), Qt::UTC)};
    EXPECT_FALSE(file.toJson().contains("duration"));
    EXPECT_EQ(NoteFile::fromJson(file.toJson()), file);
    file.duration = 1.5;
    EXPECT_EQ(NoteFile::fromJson(file.toJson()), file);
    QJsonObject broken = file.toJson();
    broken["byteCount"] = QStringLiteral("12");
    EXPECT_THROW(NoteFile::fromJson(broken), DecodingError);
}
