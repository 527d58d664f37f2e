// Runs against a real Secret Service (GNOME Keyring started by scripts/test-session.sh).
#include "base/Ids.h"
#include "storage/KeychainKeyProvider.h"
#include "storage/SecretServiceKeychain.h"
#include "support/Printers.h"

#include <gtest/gtest.h>
#include <memory>

using namespace vuro;

namespace {

// Every run uses services of its own so that runs and leftovers never meet.
QString uniqueService() { return QStringLiteral("com.tarnvale.vuro.test.") + newId(); }

TEST(SecretServiceKeyringTest, writeReadOverwriteDeleteAndNotFound) {
    SecretServiceKeychain keychain(uniqueService());
    const QByteArray first("\x00\x01secret\xff", 9);
    const QByteArray second(64, '\x7f');

    EXPECT_EQ(keychain.read("ai-key.claude"), std::nullopt);
    keychain.write(first, "ai-key.claude");
    EXPECT_EQ(keychain.read("ai-key.claude"), std::optional(first));

    keychain.write(second, "ai-key.claude");
    EXPECT_EQ(keychain.read("ai-key.claude"), std::optional(second));

    // Items are told apart by service and by account.
    SecretServiceKeychain other(uniqueService());
    EXPECT_EQ(other.read("ai-key.claude"), std::nullopt);
    EXPECT_EQ(keychain.read("ai-key.openAI"), std::nullopt);
    other.write(first, "ai-key.claude");
    EXPECT_EQ(keychain.read("ai-key.claude"), std::optional(second));

    keychain.remove("ai-key.claude");
    EXPECT_EQ(keychain.read("ai-key.claude"), std::nullopt);
    EXPECT_NO_THROW(keychain.remove("ai-key.claude"));
    EXPECT_EQ(other.read("ai-key.claude"), std::optional(first));
    other.remove("ai-key.claude");
}

TEST(SecretServiceKeyringTest, textValuesRoundTripAsUtf8) {
    SecretServiceKeychain keychain(uniqueService());
    const QString value = QStringLiteral("şifre-ğüİ-🔑");
    keychain.writeString(value, "mcp.server-1");
    EXPECT_EQ(keychain.readString("mcp.server-1"), std::optional(value));
    EXPECT_EQ(keychain.read("mcp.server-1"), std::optional(value.toUtf8()));
    keychain.remove("mcp.server-1");
}

TEST(SecretServiceKeyringTest, theNoteKeyIsMadeOnceAndFoundAgain) {
    auto keychain = std::make_shared<SecretServiceKeychain>(uniqueService());
    KeychainKeyProvider provider(keychain);
    EXPECT_THROW(provider.key(false), Keychain::KeychainError);
    const QByteArray key = provider.key(true);
    EXPECT_EQ(key.size(), 32);
    EXPECT_EQ(KeychainKeyProvider(std::make_shared<SecretServiceKeychain>(keychain->service())).key(false), key);

    keychain->write(QByteArray(33, 'x'), "note-body-key");
    try {
        provider.key(true);
        ADD_FAILURE() << "a 33-byte key was accepted";
    } catch (const Keychain::KeychainError& error) {
        EXPECT_EQ(error.kind(), Keychain::KeychainError::Kind::invalidNoteKey);
    }
    EXPECT_EQ(keychain->read("note-body-key"), std::optional(QByteArray(33, 'x')));
    keychain->remove("note-body-key");
}

}  // namespace
