#include "models/AIProviderSettings.h"
#include "settings/AssistantPageFixture.h"
#include "settings/ProviderProbe.h"
#include "storage/InMemoryKeychain.h"
#include "support/Printers.h"
#include "support/Screenshot.h"
#include "support/VendorReplies.h"

#include <QComboBox>
#include <QDir>
#include <QProgressBar>
#include <gtest/gtest.h>

namespace vuro {
namespace {

using namespace std::chrono_literals;


struct AssistantPage : testing::Test {
    InMemoryKeychain keychain;
    test::AssistantPageFixture f{keychain};
    test::LoopbackHttpServer server;
};

TEST_F(AssistantPage, ShowsAStoredKeyMaskedAndTakesANewOneIntoTheKeyring) {
    keychain.writeString("sk-ant-api03-Zx81Lq0v3f9a", "ai-key.claude");
    f.defaults.setValue("aiProvider", "claude");
    f.open();
    f.window->resize(760, 900);
    QTest::qWait(50);
    EXPECT_EQ(f.page().providerBox()->currentText(), "Anthropic API");
    EXPECT_EQ(f.page().keyRow(AIProviderKind::claude)->shownKey(), "sk-…3f9a");
    EXPECT_EQ(f.page().keyRow(AIProviderKind::openAI)->shownKey(), "");
    test::screenshot(*f.window, "settings-assistant");

    const QString key = "sk-proj-Q2w3E4r5T6y7U8i9O0pA";
    f.storeThroughPage(AIProviderKind::openAI, key);
    EXPECT_EQ(keychain.readString("ai-key.openAI"), key);
    EXPECT_EQ(f.page().keyRow(AIProviderKind::openAI)->shownKey(), "sk-…O0pA");
    for (const QString& text : f.shownTexts()) EXPECT_FALSE(text.contains("Q2w3E4r5")) << text.toStdString();

    // Replacing goes through the same field; Remove takes the key out of the keyring.
    f.storeThroughPage(AIProviderKind::openAI, "  sk-second-key-0000000042 ");
    EXPECT_EQ(keychain.readString("ai-key.openAI"), "sk-second-key-0000000042");
    QTest::mouseClick(f.page().keyRow(AIProviderKind::openAI)->removeButton(), Qt::LeftButton);
    EXPECT_FALSE(keychain.items.contains("ai-key.openAI"));
    EXPECT_EQ(f.page().keyRow(AIProviderKind::openAI)->shownKey(), "");
}

TEST_F(AssistantPage, AKeyringFailureIsASentenceAndTheTypedKeyStays) {
    f.open();
    keychain.failNext = Keychain::KeychainError::status(-25308, "The keyring is locked.");
    f.storeThroughPage(AIProviderKind::gemini, "AIzaSyExample0123456789");
    ApiKeyRow* row = f.page().keyRow(AIProviderKind::gemini);
    EXPECT_TRUE(row->problem()->isVisible());
    EXPECT_FALSE(row->problem()->text().isEmpty());
    EXPECT_EQ(row->entry()->text(), "AIzaSyExample0123456789") << "the key isn't lost; Save can be pressed again";
    QTest::mouseClick(row->saveButton(), Qt::LeftButton);
    EXPECT_EQ(keychain.readString("ai-key.gemini"), "AIzaSyExample0123456789");
    EXPECT_FALSE(row->problem()->isVisible());

    f.storeThroughPage(AIProviderKind::claude, "sk ant with spaces");
    EXPECT_EQ(f.page().keyRow(AIProviderKind::claude)->problem()->text(),
              "An API key has no spaces; copy it again from Anthropic.");
    EXPECT_FALSE(keychain.items.contains("ai-key.claude"));
}

TEST_F(AssistantPage, ModelsAndServerAddressesAreSavedAsTyped) {
    f.open();
    struct Case {
        AIProviderKind kind;
        QString typed;
        QString shown;    // in the field afterwards
        QString stored;   // under aiBaseURL.<kind>, empty when the key is cleared
        bool refused;
    };
    const Case cases[] = {
        {AIProviderKind::ollama, "gpu-box:11434", "http://gpu-box:11434/v1/", "http://gpu-box:11434/v1/", false},
        {AIProviderKind::lmStudio, "http://localhost:1234", "", "", false},  // the default clears the key
        {AIProviderKind::ollama, "ftp://gpu-box", "ftp://gpu-box", "http://gpu-box:11434/v1/", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.typed.toStdString());
        f.type(f.page().baseField(c.kind), c.typed);
        EXPECT_EQ(f.page().baseField(c.kind)->text(), c.shown);
        EXPECT_EQ(f.defaults.stringValue(AIProviderSettings::baseURLKey(c.kind)), c.stored);
        const auto problems = f.page().baseField(c.kind)->parentWidget()->findChildren<QLabel*>();
        ASSERT_EQ(problems.size(), 1);
        EXPECT_EQ(problems.first()->isVisible(), c.refused);
    }
    f.type(f.page().modelField(AIProviderKind::claude), "claude-opus-5-5");
    EXPECT_FALSE(f.defaults.contains("aiModel.claude")) << "the default model isn't stored";
    f.type(f.page().modelField(AIProviderKind::ollama), " qwen3:8b ");
    EXPECT_EQ(f.defaults.stringValue("aiModel.ollama"), "qwen3:8b");
    f.page().providerBox()->setCurrentText("LM Studio");
    EXPECT_EQ(f.defaults.stringValue("aiProvider"), "lmStudio");
}

TEST_F(AssistantPage, TestAsksTheChosenProviderAndShowsTheReply) {
    f.open();
    f.window->resize(760, 900);
    f.page().providerBox()->setCurrentText("Ollama");
    f.type(f.page().baseField(AIProviderKind::ollama), server.url("/").toString());
    f.type(f.page().modelField(AIProviderKind::ollama), "llama3.2");
    test::ReplayedResponse answer = test::openAIReply({"O", "K"});
    answer.pause = 40ms;
    server.enqueue(answer);

    QTest::mouseClick(f.page().testButton(), Qt::LeftButton);
    EXPECT_TRUE(f.page().testProgress()->isVisible());
    EXPECT_EQ(f.page().testButton()->text(), "Stop");
    test::screenshot(*f.window, "settings-assistant-testing");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !f.page().probe().isRunning(); }, 5000));
    EXPECT_EQ(f.page().testResult()->text(), "✓ Ollama answered: OK");
    EXPECT_FALSE(f.page().testProgress()->isVisible());
    ASSERT_EQ(server.requests().size(), 1u);
    EXPECT_EQ(server.requests()[0].path, "/v1/chat/completions");
    EXPECT_EQ(server.requests()[0].json().value("model").toString(), "llama3.2");
    test::screenshot(*f.window, "settings-assistant-tested");

    // Without a key the provider's own sentence shows, and nothing is sent.
    f.page().providerBox()->setCurrentText("OpenAI API");
    QTest::mouseClick(f.page().testButton(), Qt::LeftButton);
    EXPECT_EQ(f.page().testResult()->text(), "Add your OpenAI API key in Settings → Assistant.");
    EXPECT_EQ(server.requests().size(), 1u);

    // Closing the window drops a test still running.
    f.page().providerBox()->setCurrentText("Ollama");
    server.enqueue(answer);
    QTest::mouseClick(f.page().testButton(), Qt::LeftButton);
    EXPECT_TRUE(f.page().probe().isRunning());
    f.window->close();
    EXPECT_FALSE(f.page().probe().isRunning());
}

}  // namespace
}  // namespace vuro
