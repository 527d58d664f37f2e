#include "support/Printers.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <gtest/gtest.h>

// Real `vuro` processes sharing one temporary home: the lock, the hand-over sentence, the
// reopen message and the relaunch wait, as a user starting the program twice would meet them.

namespace {

const QString program = QStringLiteral(VURO_BINARY_DIR "/src/vuro");

struct Copy {
    QProcess process;
    QByteArray output;  // standard error and output together, as far as read

    bool waitForOutput(const QByteArray& text, int timeoutMs = 20000) {
        return QTest::qWaitFor([&] {
            output += process.readAll();
            return output.contains(text);
        }, timeoutMs);
    }
    qint64 pid() const { return process.processId(); }
};

struct InstanceLockTest : testing::Test {
    QTemporaryDir home;
    std::vector<std::unique_ptr<Copy>> copies;

    QString lockFile() const { return home.filePath(QStringLiteral("data/Vuro/Vuro.lock")); }

    Copy& start(const QStringList& arguments = {}) {
        auto copy = std::make_unique<Copy>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("VURO_RUNNING_TESTS"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        copy->process.setProcessEnvironment(environment);
        copy->process.setProcessChannelMode(QProcess::MergedChannels);
        copy->process.start(program, arguments);
        EXPECT_TRUE(copy->process.waitForStarted(10000)) << program.toStdString();
        copies.push_back(std::move(copy));
        return *copies.back();
    }

    Copy& startRunning(const QStringList& arguments = {}) {
        Copy& copy = start(arguments);
        EXPECT_TRUE(copy.waitForOutput("Vuro: launched (pid " + QByteArray::number(copy.pid()) + ")")) << copy.output.toStdString();
        return copy;
    }

    static int finish(Copy& copy, int timeoutMs = 20000) {
        EXPECT_TRUE(copy.process.waitForFinished(timeoutMs)) << copy.output.toStdString();
        copy.output += copy.process.readAll();
        EXPECT_EQ(copy.process.exitStatus(), QProcess::NormalExit);
        return copy.process.exitCode();
    }

    QByteArray lockContents() const {
        QFile file(lockFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void TearDown() override {
        for (auto& copy : copies) {
            if (copy->process.state() == QProcess::NotRunning) continue;
            copy->process.kill();
            copy->process.waitForFinished(5000);
        }
    }
};

}  // namespace

TEST_F(InstanceLockTest, ASecondStartHandsOverToTheRunningCopy) {
    Copy& first = startRunning();
    EXPECT_EQ(lockContents(), QByteArray::number(first.pid()));

    Copy& second = start();
    EXPECT_EQ(finish(second), 0);
    EXPECT_EQ(second.output, "Vuro is already running (pid " + QByteArray::number(first.pid()) + "); opening it instead.\n");
    EXPECT_TRUE(first.waitForOutput("Vuro: reopen requested")) << first.output.toStdString();

    ::kill(pid_t(first.pid()), SIGTERM);  // leaves through the quit path
    EXPECT_EQ(finish(first), 0);
}

TEST_F(InstanceLockTest, ALockFileHoldingGarbageGivesTheShortSentence) {
    Copy& first = startRunning();
    QFile file(lockFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("not a pid\n");
    file.close();

    Copy& second = start();
    EXPECT_EQ(finish(second), 0);
    EXPECT_EQ(second.output, QByteArray("Vuro is already running; opening it instead.\n"));
    EXPECT_TRUE(first.waitForOutput("Vuro: reopen requested")) << first.output.toStdString();
}

TEST_F(InstanceLockTest, AKilledCopysLockIsTakenOver) {
    Copy& crashed = startRunning();
    const qint64 stalePid = crashed.pid();
    crashed.process.kill();
    crashed.process.waitForFinished(5000);
    EXPECT_EQ(lockContents(), QByteArray::number(stalePid)) << "the stale file is still there";

    Copy& next = startRunning();
    EXPECT_EQ(lockContents(), QByteArray::number(next.pid()));

    // Its reopen channel replaced the dead copy's socket: a third start reaches it.
    Copy& third = start();
    EXPECT_EQ(finish(third), 0);
    EXPECT_TRUE(third.output.contains("(pid " + QByteArray::number(next.pid()) + ")")) << third.output.toStdString();
    EXPECT_TRUE(next.waitForOutput("Vuro: reopen requested"));
}

TEST_F(InstanceLockTest, ARelaunchWaitsUntilTheOldCopyHasGone) {
    Copy& old = startRunning();
    Copy& replacement = start({QStringLiteral("-VuroRelaunchAfter"), QString::number(old.pid())});
    QTest::qWait(1500);
    EXPECT_EQ(replacement.process.state(), QProcess::Running);
    EXPECT_FALSE(replacement.waitForOutput("Vuro:", 10)) << "it waits before doing anything";

    ::kill(pid_t(old.pid()), SIGTERM);
    EXPECT_EQ(finish(old), 0);
    EXPECT_TRUE(replacement.waitForOutput("Vuro: launched")) << replacement.output.toStdString();
    EXPECT_EQ(lockContents(), QByteArray::number(replacement.pid()));
}

TEST_F(InstanceLockTest, ARelaunchGivesUpWhenTheOldCopyStays) {
    Copy& old = startRunning();
    QElapsedTimer clock;
    clock.start();
    Copy& replacement = start({QStringLiteral("-VuroRelaunchAfter"), QString::number(old.pid())});
    EXPECT_EQ(finish(replacement, 30000), 0);
    EXPECT_GE(clock.elapsed(), 9500);
    EXPECT_FALSE(replacement.output.contains("already running")) << "it never reached the lock";
    EXPECT_EQ(old.process.state(), QProcess::Running);
    EXPECT_FALSE(old.output.contains("reopen"));
}

TEST_F(InstanceLockTest, ARelaunchAfterAnotherProgramsIdDoesNotWait) {
    QProcess other;
    other.start(QStringLiteral("sleep"), {QStringLiteral("30")});
    ASSERT_TRUE(other.waitForStarted());
    QElapsedTimer clock;
    clock.start();
    for (const qint64 pid : {other.processId(), qint64(0), qint64(-5)}) {
        Copy& copy = startRunning({QStringLiteral("-VuroRelaunchAfter"), QString::number(pid)});
        copy.process.kill();
        copy.process.waitForFinished(5000);
    }
    EXPECT_LT(clock.elapsed(), 9000);
    other.kill();
    other.waitForFinished();
}
