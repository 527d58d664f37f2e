#include "inbox/AwayDigest.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;

namespace {

const QDateTime start = QDateTime::fromSecsSinceEpoch(1'780'000'000, Qt::UTC);

Note arrived(const QString& id, const NoteOrigin& origin, const QString& body, int minute) {
    Note note;
    note.id = id;
    note.body = body;
    note.origin = origin;
    note.created = start.addSecs(60 * minute);
    note.modified = note.created;
    return note;
}

QStringList ids(const QList<Note>& notes) {
    QStringList result;
    for (const Note& note : notes) result.append(note.id);
    return result;
}

TEST(AwayDigest, GroupsBySourceNewestFirstWithSendersAndOpenTasks) {
    const NoteOrigin scout = NoteOrigin::agent(QStringLiteral("S"), QStringLiteral("r"), QStringLiteral("Scout"));
    const auto fromAnn = NoteOrigin::drop(QStringLiteral("team"), QStringLiteral("d"), QStringLiteral("Ann"));
    const auto fromBob = NoteOrigin::drop(QStringLiteral("team"), QStringLiteral("d"), QStringLiteral("Bob"));
    const auto unnamed = NoteOrigin::drop(QStringLiteral("misc"), QStringLiteral("d"), QString());
    const QList<Note> notes{
        arrived(QStringLiteral("1"), scout, QStringLiteral("- [ ] a\n- [x] b\n☐ c"), 1),
        arrived(QStringLiteral("2"), fromAnn, QStringLiteral("hello"), 2),
        arrived(QStringLiteral("3"), fromBob, QStringLiteral("- [ ] bring cake"), 3),
        arrived(QStringLiteral("4"), scout, QStringLiteral("news"), 4),
        arrived(QStringLiteral("5"), fromAnn, QStringLiteral("again"), 4),  // same minute as 4: a tie
        arrived(QStringLiteral("6"), unnamed, QString(), 0),
    };
    QHash<QString, DropSource> sources;
    sources.insert(QStringLiteral("agent.S"), DropSource{QStringLiteral("agent.S"), QStringLiteral("Scout"), {}, {}, {}, {}, {}, {}});

    const AwayDigest digest = AwayDigest::make(notes, sources);
    ASSERT_EQ(digest.groups.size(), 3);
    // Scout's and the team's newest notes tie at minute 4: the first to arrive stays first.
    const AwayDigest::Group& first = digest.groups[0];
    EXPECT_EQ(first.sourceID, QStringLiteral("agent.S"));
    EXPECT_EQ(first.sourceName, QStringLiteral("Scout"));
    EXPECT_EQ(ids(first.notes), (QStringList{"4", "1"}));
    EXPECT_TRUE(first.senders.isEmpty());
    EXPECT_EQ(first.openTasks, 2);

    const AwayDigest::Group& team = digest.groups[1];
    EXPECT_EQ(team.sourceID, QStringLiteral("team"));
    EXPECT_EQ(team.sourceName, QStringLiteral("Ann"));  // no known name: the first sender
    EXPECT_EQ(ids(team.notes), (QStringList{"5", "3", "2"}));
    EXPECT_EQ(team.senders, (QStringList{"Ann", "Bob"}));
    EXPECT_EQ(team.openTasks, 1);

    EXPECT_EQ(digest.groups[2].sourceName, QString());
    EXPECT_EQ(digest.noteCount(), 6);
    EXPECT_EQ(digest.openTaskCount(), 3);
    EXPECT_TRUE(AwayDigest::make({}, {}).groups.isEmpty());
}

TEST(AwayDigest, CountsLine) {
    const auto note = [](const char* id, const char* source, const char* body) {
        return arrived(QString::fromUtf8(id), NoteOrigin::drop(QString::fromUtf8(source), {}, {}), QString::fromUtf8(body), 0);
    };
    struct Case {
        QList<Note> notes;
        const char* expected;
    } cases[] = {
        {{note("1", "a", "x")}, "1 notes"},
        {{note("1", "a", "x"), note("2", "a", "- [ ] t")}, "2 notes 1 new tasks"},
        {{note("1", "a", "x"), note("2", "b", "y"), note("3", "b", "- [x] done")}, "3 notes from 2 agents"},
        {{note("1", "a", "- [ ] t\n- [ ] u"), note("2", "b", "☐ v")}, "2 notes from 2 agents 3 new tasks"},
    };
    for (const auto& c : cases) EXPECT_EQ(AwayDigest::make(c.notes, {}).countsLine(), QString::fromUtf8(c.expected));
    EXPECT_EQ(AwayDigest::title(), QStringLiteral("While you were away"));
}

TEST(AwayDigest, NoteLine) {
    const QString long161 = QString(161, QLatin1Char('x'));
    struct Case {
        QString body;
        QString expected;
    } cases[] = {
        {QStringLiteral("\n\n  First line  \nsecond"), QStringLiteral("First line")},
        {QStringLiteral("## Heading"), QStringLiteral("Heading")},
        {QStringLiteral("- item"), QStringLiteral("item")},
        {QStringLiteral("* [ ] open task"), QStringLiteral("open task")},
        {QStringLiteral("1. numbered"), QStringLiteral("numbered")},
        {QString::fromUtf8("☑ glyph done"), QStringLiteral("glyph done")},
        {QStringLiteral("-\n# \nreal text"), QStringLiteral("real text")},
        {QStringLiteral("-5 degrees"), QStringLiteral("-5 degrees")},
        {QString(160, QLatin1Char('y')), QString(160, QLatin1Char('y'))},
        {long161, QString(160, QLatin1Char('x')) + QChar(0x2026)},
        {QStringLiteral(" \n\t\n"), QStringLiteral("Empty note")},
        {QString(), QStringLiteral("Empty note")},
    };
    for (const auto& c : cases) {
        Note note;
        note.body = c.body;
        EXPECT_EQ(AwayDigest::line(note), c.expected) << c.body.toStdString();
    }
}

}  // namespace
