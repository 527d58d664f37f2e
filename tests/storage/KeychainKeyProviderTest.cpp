#include "storage/InMemoryKeychain.h"
#include "storage/KeychainKeyProvider.h"
#include "support/Printers.h"

#include <gtest/gtest.h>
#include <memory>

using namespace vuro;

namespace {

using Kind = Keychain::KeychainError::Kind;

struct Case {
    const char* name;
    std::optional<QByteArray> stored;
    bool allowCreate;
    std::optional<Kind> failure;  // none: a key comes back
};

TEST(KeychainKeyProviderTest, findsOrMakesTheKeyOnlyWhenAllowed) {
    const QByteArray good(32, 'k');
    const QList<Case> cases = {
        {"stored key", good, false, std::nullopt},
        {"stored key, create allowed", good, true, std::nullopt},
        {"no key, create allowed", std::nullopt, true, std::nullopt},
        {"no key", std::nullopt, false, Kind::missingNoteKey},
        {"31 bytes", QByteArray(31, 'k'), false, Kind::invalidNoteKey},
        {"33 bytes", QByteArray(33, 'k'), true, Kind::invalidNoteKey},
        {"empty item", QByteArray(), true, Kind::invalidNoteKey},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto keychain = std::make_shared<InMemoryKeychain>();
        if (c.stored) keychain->items.insert("note-body-key", *c.stored);
        KeychainKeyProvider provider(keychain);
        if (c.failure) {
            try {
                provider.key(c.allowCreate);
                ADD_FAILURE() << "no failure";
            } catch (const Keychain::KeychainError& error) {
                EXPECT_EQ(error.kind(), *c.failure);
            }
            // A refused key is never replaced.
            EXPECT_EQ(keychain->items.value("note-body-key"), c.stored.value_or(QByteArray()));
            EXPECT_EQ(keychain->items.contains("note-body-key"), c.stored.has_value());
            continue;
        }
        const QByteArray key = provider.key(c.allowCreate);
        EXPECT_EQ(key.size(), 32);
        if (c.stored) {
            EXPECT_EQ(key, *c.stored);
        }
        EXPECT_EQ(keychain->items.value("note-body-key"), key);
        EXPECT_EQ(provider.key(false), key);  // a made key is found again
    }
}

TEST(KeychainKeyProviderTest, errorSentences) {
    EXPECT_EQ(Keychain::KeychainError::missingNoteKey().message(),
              "The encryption key for your notes is missing from the keyring.");
    EXPECT_EQ(Keychain::KeychainError::invalidNoteKey().message(), "The encryption key in the keyring is invalid.");
    EXPECT_EQ(Keychain::KeychainError::status(7, "Cannot create an item in a locked collection").message(),
              "Cannot create an item in a locked collection");
    EXPECT_EQ(Keychain::KeychainError::status(-25300).message(), "Keyring error -25300");
}

TEST(KeychainKeyProviderTest, aFailingKeyringIsPassedOnAndWritesNothing) {
    auto keychain = std::make_shared<InMemoryKeychain>();
    keychain->failNext = Keychain::KeychainError::status(2, "The keyring is locked.");
    KeychainKeyProvider provider(keychain);
    try {
        provider.key(true);
        ADD_FAILURE() << "no failure";
    } catch (const Keychain::KeychainError& error) {
        EXPECT_EQ(error.kind(), Kind::status);
        EXPECT_EQ(error.message(), "The keyring is locked.");
    }
    EXPECT_TRUE(keychain->items.isEmpty());
}

}  // namespace
