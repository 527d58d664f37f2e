#include "agents/SealedAgentAttachmentFiles.h"
#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace vuro {
namespace {

TEST(SealedAgentAttachmentFiles, RoundTripSealedOnDisk) {
    QTemporaryDir root;
    const BodyCipher cipher(BodyCipher::randomKey());
    SealedAgentAttachmentFiles files(root.filePath("Attachments"), [cipher] { return cipher; });
    const QByteArray secret("the plan for Tuesday");
    files.write("A-1", secret);
    files.write("B-2", "");

    QFile raw(root.filePath("Attachments/A-1.sealed"));
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray onDisk = raw.readAll();
    EXPECT_EQ(onDisk.size(), secret.size() + 28);
    EXPECT_FALSE(onDisk.contains("Tuesday"));

    EXPECT_EQ(files.read("A-1"), secret);
    EXPECT_EQ(files.read("B-2"), QByteArray(""));
    EXPECT_THAT(files.allIDs(), testing::UnorderedElementsAre("A-1", "B-2"));

    // A file sealed under another key, a gone file and a path trick all read as nothing.
    const BodyCipher other(BodyCipher::randomKey());
    SealedAgentAttachmentFiles foreign(root.filePath("Attachments"), [other] { return other; });
    EXPECT_EQ(foreign.read("A-1"), std::nullopt);
    EXPECT_EQ(files.read("missing"), std::nullopt);
    EXPECT_EQ(files.read("../Attachments/A-1"), std::nullopt);
    EXPECT_ANY_THROW(files.write("../escape", "x"));

    files.remove({"A-1", "unknown"});
    EXPECT_EQ(files.allIDs(), QStringList{"B-2"});
}

TEST(SealedAgentAttachmentFiles, AnUnwritableFolderFailsWithASentence) {
    QTemporaryDir root;
    QFile blocker(root.filePath("Attachments"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));  // a file where the folder should be
    blocker.close();
    const BodyCipher cipher(BodyCipher::randomKey());
    SealedAgentAttachmentFiles files(root.filePath("Attachments"), [cipher] { return cipher; });
    try {
        files.write("A", "x");
        FAIL() << "expected a failure";
    } catch (const Error& error) {
        EXPECT_EQ(error.message(), QStringLiteral("The attachment couldn't be saved."));
    }
}

}  // namespace
}  // namespace vuro
