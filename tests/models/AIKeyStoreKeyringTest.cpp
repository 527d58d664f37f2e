// Runs against a real Secret Service (GNOME Keyring started by scripts/test-session.sh).
#include "base/Ids.h"
#include "models/AIKeyStore.h"
#include "storage/SecretServiceKeychain.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace vuro {
namespace {

TEST(AIKeyStoreKeyringTest, KeysLiveInTheKeyringUnderTheirAccount) {
    SecretServiceKeychain keychain(QStringLiteral("com.tarnvale.vuro.test.") + newId());
    {
        AIKeyStore store(keychain, true);
        store.store(AIProviderKind::gemini, "  g-key-1 \n");
        EXPECT_EQ(store.key(AIProviderKind::gemini), "g-key-1");
    }
    // A fresh store has no cache: the key comes back from the keyring itself.
    EXPECT_EQ(keychain.readString("ai-key.gemini"), "g-key-1");
    AIKeyStore again(keychain, true);
    EXPECT_EQ(again.key(AIProviderKind::gemini), "g-key-1");
    again.store(AIProviderKind::gemini, "");
    EXPECT_EQ(keychain.read("ai-key.gemini"), std::nullopt);
    EXPECT_NO_THROW(again.remove(AIProviderKind::gemini));
    EXPECT_EQ(AIKeyStore(keychain, true).key(AIProviderKind::gemini), std::nullopt);
}

}  // namespace
}  // namespace vuro
