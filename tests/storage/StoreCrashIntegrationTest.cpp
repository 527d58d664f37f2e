#include "storage/DatabaseNotePersistence.h"
#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "support/CrashNotes.h"
#include "support/Printers.h"
#include "support/SqliteFile.h"

#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>
#include <random>

using namespace vuro;
using namespace vuro::test;

namespace {

// One write the child announced; done when it also said "ok".
struct Write {
    QString kind, id;
    int version = 0;
    bool done = false;
};

QList<Write> writesOf(const QByteArray& output) {
    QList<Write> writes;
    // Only whole lines count: the kill may cut the last one.
    const QList<QByteArray> lines = output.left(output.lastIndexOf('\n') + 1).split('\n');
    for (const auto& line : lines) {
        const auto words = QString::fromUtf8(line).split(QLatin1Char(' '));
        if (words.value(0) == "begin" && words.size() == 4) writes.append({words[1], words[2], words[3].toInt()});
        else if (words.value(0) == "ok" && !writes.isEmpty()) writes.last().done = true;
    }
    return writes;
}

TEST(StoreCrashIntegrationTest, everyAcknowledgedSaveSurvivesSigkill) {
    QTemporaryDir folder;
    const QString path = folder.filePath("Vuro.store");
    const QByteArray key(32, '\x5c');
    auto keychain = std::make_shared<InMemoryKeychain>();
    keychain->items.insert("note-body-key", key);
    const auto load = [&] {
        QMap<QString, int> versions;
        DatabaseNotePersistence persistence(
            std::make_shared<VuroDatabase>(path, std::make_shared<KeychainKeyProvider>(keychain)));
        for (const auto& note : persistence.loadNotes()) versions.insert(note.id, crashNoteVersion(note));
        return versions;
    };

    std::mt19937 random(std::random_device{}());
    QMap<QString, int> expected;  // what the store must hold
    int acknowledged = 0;
    int killedMidWrite = 0;
    const int rounds = 32;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        QProcess child;
        child.start(VURO_BINARY_DIR "/tests/StoreCrashChild",
                    {path, QString::fromLatin1(key.toHex()), QString::number(round)});
        ASSERT_TRUE(child.waitForStarted());
        // Half the kills fall anywhere from the child's start-up (opening, recovery of the last
        // crash) on; the other half come after a few writes, however slow the machine is.
        if (round % 2) {
            const int writesBefore = std::uniform_int_distribution<int>(1, 10)(random);
            while (child.peek(1 << 24).count("ok\n") < writesBefore && child.waitForReadyRead(10000)) {
            }
            QThread::msleep(std::uniform_int_distribution<int>(0, 30)(random));
        } else {
            QThread::msleep(std::uniform_int_distribution<int>(20, 400)(random));
        }
        child.kill();
        ASSERT_TRUE(child.waitForFinished());
        ASSERT_EQ(child.exitStatus(), QProcess::CrashExit) << child.readAllStandardError().toStdString();

        const QList<Write> writes = writesOf(child.readAllStandardOutput());
        std::optional<Write> inFlight;
        for (const auto& write : writes) {
            if (!write.done) {
                inFlight = write;
                continue;
            }
            ++acknowledged;
            if (write.kind == "delete") expected.remove(write.id);
            else expected.insert(write.id, write.version);
        }
        killedMidWrite += inFlight.has_value();

        EXPECT_EQ(querySql(path, "PRAGMA integrity_check").value(0).value(0).toString(), "ok");
        QMap<QString, int> stored = load();
        // The write the kill interrupted may have landed or not, but whole or not at all.
        if (inFlight) {
            const std::optional<int> landed =
                inFlight->kind == "delete" ? std::nullopt : std::optional(inFlight->version);
            const std::optional<int> found = stored.contains(inFlight->id) ? std::optional(stored.value(inFlight->id))
                                                                           : std::nullopt;
            const std::optional<int> before =
                expected.contains(inFlight->id) ? std::optional(expected.value(inFlight->id)) : std::nullopt;
            EXPECT_TRUE(found == landed || found == before) << inFlight->kind.toStdString() << " "
                                                            << inFlight->id.toStdString();
            if (found) expected.insert(inFlight->id, *found);
            else expected.remove(inFlight->id);
        }
        ASSERT_EQ(stored, expected);
    }
    // The kills must have met the child at work, or this proved nothing.
    EXPECT_GE(acknowledged, rounds / 2);
    EXPECT_GE(killedMidWrite, 3);
    RecordProperty("acknowledged", acknowledged);
    RecordProperty("killedMidWrite", killedMidWrite);
    std::printf("%d rounds, %d acknowledged writes, %d kills during a write\n", rounds, acknowledged, killedMidWrite);
}

}  // namespace
