#include "inbox/AwaySummarizer.h"

#include "base/Async.h"
#include "base/Defaults.h"
#include "base/Error.h"
#include "support/Printers.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace vuro;
using Kind = AwaySummarizer::State::Kind;

namespace {

// An assistant that answers after a short wait on the event loop, like a network one would.
class ScriptedProvider : public AwaySummaryProvider {
public:
    QCoro::Task<QString> respond(QString instruction, QString input) override {
        calls.append({instruction, input});
        const bool fail = failNext;
        failNext = false;
        co_await sleepFor(std::chrono::milliseconds(20));
        if (fail) throw Error(QStringLiteral("The provider sent an unexpected response."));
        co_return QStringLiteral("  Ann asked about lunch.\n");
    }
    QList<QPair<QString, QString>> calls;
    bool failNext = false;
};

AwayDigest::Group group(const QString& sourceID, const QStringList& bodies) {
    AwayDigest::Group made;
    made.sourceID = sourceID;
    made.sourceName = QStringLiteral("Team");
    for (const QString& body : bodies) {
        Note note;
        note.id = QStringLiteral("%1-%2").arg(sourceID).arg(made.notes.size());
        note.body = body;
        note.origin = NoteOrigin::drop(sourceID, note.id, QStringLiteral("Ann"));
        note.modified = QDateTime::fromSecsSinceEpoch(1'780'000'000);
        made.notes.prepend(note);  // newest first
    }
    return made;
}

bool settle(AwaySummarizer& summarizer, const QString& key) {
    return QTest::qWaitFor([&] { return summarizer.state(key) && summarizer.state(key)->kind != Kind::working; }, 2000);
}

struct Fixture {
    QTemporaryDir dir;
    Defaults defaults{dir.filePath(QStringLiteral("Vuro.conf")), {}};
    std::shared_ptr<ScriptedProvider> provider = std::make_shared<ScriptedProvider>();
    AwaySummarizer summarizer{provider, [this] { return defaults.boolValue(QStringLiteral("summarizeAwayDrops")); },
                              false};
};

TEST(AwaySummarizer, AsksNothingWhileThePreferenceIsOff) {
    Fixture f;
    f.summarizer.summarize(group(QStringLiteral("team"), {QStringLiteral("lunch?")}));
    QTest::qWait(50);
    EXPECT_TRUE(f.provider->calls.isEmpty());
    EXPECT_TRUE(f.summarizer.states().isEmpty());

    f.defaults.setValue(QStringLiteral("summarizeAwayDrops"), true);
    f.summarizer.summarize(group(QStringLiteral("team"), {QStringLiteral("lunch?")}));
    EXPECT_EQ(f.provider->calls.size(), 1);
    ASSERT_TRUE(settle(f.summarizer, QStringLiteral("team")));
}

TEST(AwaySummarizer, SummarisesOncePerVersionOfAGroup) {
    Fixture f;
    f.defaults.setValue(QStringLiteral("summarizeAwayDrops"), true);
    const auto team = group(QStringLiteral("team"), {QStringLiteral("lunch at noon?"), QStringLiteral("or at one")});
    f.summarizer.summarize(team);
    ASSERT_EQ(f.summarizer.state(QStringLiteral("team"))->kind, Kind::working);
    f.summarizer.summarize(team);  // already working on it
    ASSERT_TRUE(settle(f.summarizer, QStringLiteral("team")));
    EXPECT_EQ(*f.summarizer.state(QStringLiteral("team")),
              (AwaySummarizer::State{Kind::done, AwaySummarizer::fingerprint(team), QStringLiteral("Ann asked about lunch.")}));
    f.summarizer.summarize(team);  // done for this version
    ASSERT_EQ(f.provider->calls.size(), 1);
    EXPECT_EQ(f.provider->calls[0].first, AwaySummarizer::instruction(false));
    EXPECT_EQ(f.provider->calls[0].second, QStringLiteral("Ann: lunch at noon?\n\nAnn: or at one"));

    f.summarizer.summarize(group(QStringLiteral("team"), {QStringLiteral("lunch at noon?"), QStringLiteral("or at one"),
                                                          QStringLiteral("never mind")}));
    EXPECT_EQ(f.provider->calls.size(), 2);
    ASSERT_TRUE(settle(f.summarizer, QStringLiteral("team")));
}

TEST(AwaySummarizer, AFailureShowsNoSummaryAndMayBeRetried) {
    Fixture f;
    f.defaults.setValue(QStringLiteral("summarizeAwayDrops"), true);
    f.provider->failNext = true;
    const auto team = group(QStringLiteral("team"), {QStringLiteral("lunch?")});
    f.summarizer.summarize(team);
    ASSERT_TRUE(settle(f.summarizer, QStringLiteral("team")));
    EXPECT_EQ(f.summarizer.state(QStringLiteral("team"))->kind, Kind::failed);
    f.summarizer.summarize(team);
    ASSERT_TRUE(settle(f.summarizer, QStringLiteral("team")));
    EXPECT_EQ(f.summarizer.state(QStringLiteral("team"))->kind, Kind::done);
}

TEST(AwaySummarizer, CancellingDropsAnswersStillUnderWay) {
    Fixture f;
    f.defaults.setValue(QStringLiteral("summarizeAwayDrops"), true);
    f.summarizer.summarize(group(QStringLiteral("team"), {QStringLiteral("lunch?")}));
    f.summarizer.cancelAll();
    EXPECT_FALSE(f.summarizer.state(QStringLiteral("team")).has_value());
    QTest::qWait(60);
    EXPECT_FALSE(f.summarizer.state(QStringLiteral("team")).has_value());
}

TEST(AwaySummarizer, InstructionFollowsTheLanguage) {
    EXPECT_TRUE(AwaySummarizer::instruction(true).startsWith(QStringLiteral("Bir mesajlaşma")));
    EXPECT_TRUE(AwaySummarizer::instruction(false).endsWith(QStringLiteral("write only the summary.")));
}

}  // namespace
