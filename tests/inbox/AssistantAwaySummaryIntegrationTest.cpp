#include "inbox/AssistantAwaySummaryProvider.h"
#include "inbox/AwaySummarizer.h"

#include "base/Defaults.h"
#include "models/AIKeyStore.h"
#include "models/RoutingProvider.h"
#include "storage/InMemoryKeychain.h"
#include "support/LoopbackHttpServer.h"
#include "support/Printers.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using test::LoopbackHttpServer;
using test::ReplayedResponse;
using Kind = AwaySummarizer::State::Kind;

// The on-device model, which this machine doesn't have: a request reaching it is a routing fault.
class AbsentOnDeviceProvider : public AIProvider {
public:
    QString name() const override { return QStringLiteral("On-device model"); }
    AIRoute route() const override { return AIRoute::onDevice(); }
    AIAvailability availability() const override { return AIAvailability::unavailable(QStringLiteral("absent")); }
    QCoro::AsyncGenerator<QString> streamText(QString, QString) const override {
        ++calls;
        return refuse();
    }
    QCoro::Task<QStringList> extractTasks(QString, QString) const override { co_return {}; }
    QCoro::Task<GeneratedCommand> generateCommand(QString, QString) const override { co_return {}; }
    mutable int calls = 0;

private:
    static QCoro::AsyncGenerator<QString> refuse() {
        throw Error(QStringLiteral("The on-device model is not available."));
        co_yield QString();
    }
};

QByteArray quoted(const QString& text) {
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

// A chat-completions stream of the given pieces, as a local server sends it.
ReplayedResponse streamOf(const QStringList& pieces) {
    QByteArray body;
    for (const QString& piece : pieces) body += "data: {\"choices\":[{\"index\":0,\"delta\":{\"content\":" + quoted(piece) + "}}]}\n\n";
    body += "data: {\"choices\":[{\"index\":0,\"delta\":{},\"finish_reason\":\"stop\"}]}\n\ndata: [DONE]\n\n";
    return ReplayedResponse::of(body, 9);
}

AwayDigest::Group lunchGroup() {
    AwayDigest::Group group;
    group.sourceID = QStringLiteral("team");
    group.sourceName = QStringLiteral("Team");
    for (const char* body : {"Lunch at noon?", "Or at one, Deniz says"}) {
        Note note;
        note.id = QStringLiteral("N%1").arg(group.notes.size());
        note.body = QString::fromUtf8(body);
        note.origin = NoteOrigin::drop(QStringLiteral("team"), note.id, QStringLiteral("Ann"));
        note.modified = QDateTime::fromSecsSinceEpoch(1'780'000'000 + group.notes.size());
        group.notes.prepend(note);  // newest first
    }
    return group;
}

// The summarizer on the assistant the application uses: the routing provider, sent by the
// preferences to a local server on the loopback interface.
struct Fixture {
    LoopbackHttpServer server;
    QNetworkAccessManager session;
    QTemporaryDir folder;
    Defaults defaults{folder.filePath(QStringLiteral("Vuro.conf")), {}};
    InMemoryKeychain keychain;
    AIKeyStore keys{keychain, true};
    AbsentOnDeviceProvider onDevice;
    RoutingProvider assistant{onDevice, [this] { return selectedAPIProvider(defaults, keys, session); }};
    AwaySummarizer summarizer{std::make_shared<AssistantAwaySummaryProvider>(assistant),
                              [this] { return defaults.boolValue(QStringLiteral("summarizeAwayDrops")); }, false};

    Fixture() {
        defaults.setValue(QStringLiteral("aiProvider"), QStringLiteral("lmStudio"));
        defaults.setValue(QStringLiteral("aiModel.lmStudio"), QStringLiteral("qwen3"));
        defaults.setValue(QStringLiteral("aiBaseURL.lmStudio"), server.url(QStringLiteral("/v1/")).toString());
    }
    bool settled() {
        return QTest::qWaitFor(
            [&] {
                const auto state = summarizer.state(QStringLiteral("team"));
                return state && state->kind != Kind::working;
            },
            10000);
    }
};

TEST(AssistantAwaySummary, TheAssistantIsAskedOnlyWhileSummariesAreAllowed) {
    Fixture f;
    f.server.enqueue(streamOf({"Ann asks", " about lunch at noon or one."}));
    f.summarizer.summarize(lunchGroup());
    QTest::qWait(100);
    EXPECT_TRUE(f.server.requests().empty());
    EXPECT_TRUE(f.summarizer.states().isEmpty());

    f.defaults.setValue(QStringLiteral("summarizeAwayDrops"), true);
    f.summarizer.summarize(lunchGroup());
    ASSERT_TRUE(f.settled());
    EXPECT_EQ(f.summarizer.state(QStringLiteral("team"))->kind, Kind::done);
    EXPECT_EQ(f.summarizer.state(QStringLiteral("team"))->summary, QStringLiteral("Ann asks about lunch at noon or one."));
    EXPECT_EQ(f.onDevice.calls, 0);

    ASSERT_EQ(f.server.requests().size(), 1u);
    EXPECT_EQ(f.server.requests()[0].path, "/v1/chat/completions");
    const QJsonArray messages = f.server.requests()[0].json().value(QStringLiteral("messages")).toArray();
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages[0].toObject().value(QStringLiteral("content")).toString(), AwaySummarizer::instruction(false));
    EXPECT_EQ(messages[1].toObject().value(QStringLiteral("content")).toString(),
              QStringLiteral("Ann: Lunch at noon?\n\nAnn: Or at one, Deniz says"));
}

TEST(AssistantAwaySummary, AFailingAssistantLeavesTheGroupWithoutSummary) {
    struct Case {
        const char* name;
        std::optional<ReplayedResponse> reply;  // none: the server answers 500
        const char* provider;
    };
    const Case cases[] = {
        {"server error", std::nullopt, "lmStudio"},
        {"empty reply", streamOf({}), "lmStudio"},
        {"no provider chosen: the absent on-device model", std::nullopt, "apple"},
    };
    for (const Case& c : cases) {
        Fixture f;
        f.defaults.setValue(QStringLiteral("summarizeAwayDrops"), true);
        f.defaults.setValue(QStringLiteral("aiProvider"), QString::fromUtf8(c.provider));
        if (c.reply) f.server.enqueue(*c.reply);
        f.summarizer.summarize(lunchGroup());
        ASSERT_TRUE(f.settled()) << c.name;
        EXPECT_EQ(f.summarizer.state(QStringLiteral("team"))->kind, Kind::failed) << c.name;
        EXPECT_EQ(f.summarizer.state(QStringLiteral("team"))->summary, QString()) << c.name;
    }
}

}  // namespace
}  // namespace vuro
