#include "app/InstanceLock.h"

#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace vuro;

TEST(InstanceLock, ReadsTheHoldersIdOrNothing) {
    struct Case {
        QByteArray bytes;
        std::optional<qint32> pid;
    } cases[] = {
        {"1234", 1234},
        {"  42\n", 42},
        {"+7", 7},
        {"-3", -3},
        {"2147483647", 2147483647},
        {"2147483648", std::nullopt},
        {"", std::nullopt},
        {" \n\t", std::nullopt},
        {"12ab", std::nullopt},
        {"1 2", std::nullopt},
        {"+", std::nullopt},
        {"0x10", std::nullopt},
        {QByteArray("\xff\xfe", 2), std::nullopt},
        {"٣", std::nullopt},  // other digits are garbage too
    };
    for (const auto& c : cases) EXPECT_EQ(InstanceLock::parseProcessID(c.bytes), c.pid) << c.bytes.toStdString();
}

TEST(InstanceLock, SecondHolderLearnsTheFirstOnesId) {
    QTemporaryDir folder;
    const QString url = folder.filePath(QStringLiteral("nested/Vuro/Vuro.lock"));
    {
        QFile stale(url);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(url).absolutePath()));
        ASSERT_TRUE(stale.open(QIODevice::WriteOnly));
        stale.write("99999999 and more than sixteen bytes");  // left by a crashed copy
    }
    InstanceLock first(url);
    EXPECT_EQ(first.acquire(), InstanceLock::Result(InstanceLock::Acquired{}));
    EXPECT_GE(first.descriptor, 0);
    EXPECT_EQ(first.acquire(), InstanceLock::Result(InstanceLock::Acquired{})) << "holding it already";
    QFile written(url);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), QByteArray::number(qint64(::getpid()))) << "stale text replaced, no newline";

    // Another open file description on the same file conflicts, even inside one process.
    InstanceLock second(url);
    EXPECT_EQ(second.acquire(), InstanceLock::Result(InstanceLock::HeldBy{::getpid()}));
    EXPECT_EQ(second.descriptor, -1);
}

TEST(InstanceLock, ALockFileThatCannotBeOpenedStillLetsTheProgramRun) {
    QTemporaryDir folder;
    QFile blocker(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    InstanceLock lock(folder.filePath(QStringLiteral("file/Vuro.lock")));  // its folder is a file
    EXPECT_EQ(lock.acquire(), InstanceLock::Result(InstanceLock::Acquired{}));
    EXPECT_EQ(lock.descriptor, -1);
}
