#include "base/Defaults.h"
#include "models/AIKeyStore.h"
#include "models/AIProviderSettings.h"
#include "models/AssistantChoice.h"
#include "storage/InMemoryKeychain.h"
#include "support/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using namespace AIProviderSettings;

struct BaseCase {
    const char* typed;
    const char* expected;  // empty: refused
};

class NormalizedBaseTest : public testing::TestWithParam<BaseCase> {};

TEST_P(NormalizedBaseTest, MakesATypedBaseWhole) {
    const auto url = normalizedBaseURL(QString::fromUtf8(GetParam().typed));
    EXPECT_EQ(url ? url->toString() : QString(), QString::fromUtf8(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Bases, NormalizedBaseTest,
                         testing::Values(BaseCase{"localhost:11434", "http://localhost:11434/v1/"},
                                         BaseCase{"  192.168.1.5:1234 \n", "http://192.168.1.5:1234/v1/"},
                                         BaseCase{"https://gpu.lan/", "https://gpu.lan/v1/"},
                                         BaseCase{"http://gpu.lan/ollama/v1", "http://gpu.lan/ollama/v1/"},
                                         BaseCase{"HTTPS://Box:8080/api/", "https://box:8080/api/"},
                                         BaseCase{"ftp://gpu.lan/", ""}, BaseCase{"file:///tmp/x", ""},
                                         BaseCase{"http://", ""}, BaseCase{"", ""}, BaseCase{"   ", ""}));

class ProviderDefaultsTest : public testing::Test {
protected:
    QTemporaryDir folder;
    Defaults defaults{folder.filePath("Vuro.conf"), {}};
};

TEST_F(ProviderDefaultsTest, SavingTheDefaultModelClearsTheKey) {
    saveModel(defaults, AIProviderKind::claude, "  claude-sonnet-5-5 ");
    EXPECT_EQ(defaults.stringValue("aiModel.claude"), "claude-sonnet-5-5");
    EXPECT_EQ(model(defaults, AIProviderKind::claude), "claude-sonnet-5-5");
    saveModel(defaults, AIProviderKind::claude, "claude-opus-5-5");
    EXPECT_FALSE(defaults.contains("aiModel.claude"));
    EXPECT_EQ(model(defaults, AIProviderKind::claude), "claude-opus-5-5");
    saveModel(defaults, AIProviderKind::ollama, "llama4");
    saveModel(defaults, AIProviderKind::ollama, " ");
    EXPECT_FALSE(defaults.contains("aiModel.ollama"));
    EXPECT_EQ(model(defaults, AIProviderKind::ollama), "");
    EXPECT_EQ(model(defaults, AIProviderKind::openAI), "gpt-6.1-sol");
    EXPECT_EQ(model(defaults, AIProviderKind::gemini), "gemini-3.8-flash");
}

TEST_F(ProviderDefaultsTest, OnlyLocalServersHonourACustomBase) {
    EXPECT_TRUE(saveBaseURL(defaults, AIProviderKind::ollama, "gpu.lan:11434"));
    EXPECT_EQ(defaults.stringValue("aiBaseURL.ollama"), "http://gpu.lan:11434/v1/");
    EXPECT_EQ(baseURL(defaults, AIProviderKind::ollama), QUrl("http://gpu.lan:11434/v1/"));

    EXPECT_TRUE(saveBaseURL(defaults, AIProviderKind::ollama, "http://localhost:11434"));
    EXPECT_FALSE(defaults.contains("aiBaseURL.ollama"));
    EXPECT_FALSE(saveBaseURL(defaults, AIProviderKind::lmStudio, "ftp://x/"));
    EXPECT_FALSE(defaults.contains("aiBaseURL.lmStudio"));
    EXPECT_EQ(baseURL(defaults, AIProviderKind::lmStudio), QUrl("http://localhost:1234/v1/"));

    defaults.setValue("aiBaseURL.openAI", "http://evil.example/v1/");
    EXPECT_EQ(baseURL(defaults, AIProviderKind::openAI), QUrl("https://api.openai.com/v1/"));
    EXPECT_EQ(baseURL(defaults, AIProviderKind::gemini), QUrl("https://generativelanguage.googleapis.com/v1beta/openai/"));
    EXPECT_EQ(baseURL(defaults, AIProviderKind::apple), std::nullopt);
}

TEST(AssistantChoice, RoundTripsItsStoredText) {
    for (const QString text : {"apple", "claude", "lmStudio", "cli.claudeCode", "cli.cursor"}) {
        const auto choice = AssistantChoice::fromRawText(text);
        ASSERT_TRUE(choice) << text.toStdString();
        EXPECT_EQ(choice->rawText(), text);
    }
    EXPECT_EQ(AssistantChoice::fromRawText("cli.gemini")->cliTool(), CLIToolKind::gemini);
    EXPECT_EQ(AssistantChoice::fromRawText("gemini")->apiKind(), AIProviderKind::gemini);
    for (const QString text : {"", "cli.", "cli.claude", "Claude", "cli.apple"})
        EXPECT_FALSE(AssistantChoice::fromRawText(text)) << text.toStdString();
}

TEST(AIKeyStore, StoresTrimmedKeysAndDeletesOnBlank) {
    InMemoryKeychain keychain;
    AIKeyStore store(keychain, true);
    EXPECT_EQ(store.key(AIProviderKind::claude), std::nullopt);
    store.store(AIProviderKind::claude, "  sk-ant-1 \n");
    EXPECT_EQ(keychain.items.value("ai-key.claude"), "sk-ant-1");
    EXPECT_EQ(store.key(AIProviderKind::claude), "sk-ant-1");
    store.store(AIProviderKind::claude, " \t ");
    EXPECT_FALSE(keychain.items.contains("ai-key.claude"));
    EXPECT_EQ(store.key(AIProviderKind::claude), std::nullopt);
    store.remove(AIProviderKind::gemini);  // nothing there: still done
}

TEST(AIKeyStore, ReadsTheKeyringOnceThenServesTheCache) {
    InMemoryKeychain keychain;
    keychain.items.insert("ai-key.openAI", "sk-1");
    AIKeyStore store(keychain, true);
    EXPECT_EQ(store.key(AIProviderKind::openAI), "sk-1");
    keychain.items.insert("ai-key.openAI", "changed behind our back");
    keychain.failNext = Keychain::KeychainError::status(-1, "locked");
    EXPECT_EQ(store.key(AIProviderKind::openAI), "sk-1");
}

TEST(AIKeyStore, PassesKeyringFailuresOn) {
    InMemoryKeychain keychain;
    AIKeyStore store(keychain, true);
    keychain.failNext = Keychain::KeychainError::status(-25308, "The keyring is locked.");
    EXPECT_THROW(store.key(AIProviderKind::claude), Keychain::KeychainError);
    keychain.failNext = Keychain::KeychainError::status(-25308, "The keyring is locked.");
    EXPECT_THROW(store.store(AIProviderKind::claude, "k"), Keychain::KeychainError);
    EXPECT_EQ(store.key(AIProviderKind::claude), std::nullopt);
}

TEST(AIKeyStore, DoesNothingInATestHost) {
    InMemoryKeychain keychain;
    keychain.items.insert("ai-key.claude", "real key");
    AIKeyStore store(keychain);
    EXPECT_EQ(store.key(AIProviderKind::claude), std::nullopt);
    store.store(AIProviderKind::openAI, "k");
    store.remove(AIProviderKind::claude);
    EXPECT_EQ(keychain.items.size(), 1);
}

}  // namespace
}  // namespace vuro
