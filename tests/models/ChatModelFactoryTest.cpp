#include "base/Defaults.h"
#include "models/AIKeyStore.h"
#include "models/AttachmentText.h"
#include "models/ChatModelError.h"
#include "models/ChatModelFactory.h"
#include "storage/InMemoryKeychain.h"
#include "support/Printers.h"

#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vuro {
namespace {

ChatAttachment named(const QString& name, ChatAttachment::Content content) {
    AgentAttachment info;
    info.name = name;
    return {info, std::move(content)};
}

TEST(AttachmentText, FoldsAttachmentsInBeforeTheText) {
    const QList<ChatAttachment> files{named("a\"b.pdf", ChatAttachment::Pdf{"%PDF"}), named("notes.txt", ChatAttachment::Text{"one\ntwo"}),
                                      named("rec.m4a", ChatAttachment::Pending{}), named("x.bin", ChatAttachment::Omitted{})};
    const QString pieces =
        "<attachment name=\"notes.txt\">\none\ntwo\n</attachment>\n\n"
        "<attachment name=\"rec.m4a\">(its content isn't included here)</attachment>\n\n"
        "<attachment name=\"x.bin\">(its content isn't included here)</attachment>";
    EXPECT_EQ(attachmentText(false, "Summarise", files), pieces + "\n\nSummarise");
    EXPECT_EQ(attachmentText(true, "", files), "<attachment name=\"a'b.pdf\">(attached as a file)</attachment>\n\n" + pieces);
    EXPECT_EQ(attachmentText(false, "Only text", {}), "Only text");
    EXPECT_EQ(attachmentText(false, "", {named("p.png", ChatAttachment::Image{"x", "image/png"})}), "");
}

class ChatModelFactoryTest : public testing::Test {
protected:
    ChatModelFactoryTest() { keys.store(AIProviderKind::claude, "sk-ant"); }

    QTemporaryDir folder;
    Defaults defaults{folder.filePath("Vuro.conf"), {}};
    InMemoryKeychain keychain;
    AIKeyStore keys{keychain, true};
    QNetworkAccessManager session;
    ChatModelFactory factory{keys, defaults, session};
};

TEST_F(ChatModelFactoryTest, BuildsTheBackEndOfTheAgentsProvider) {
    Agent agent;
    agent.provider = AIProviderKind::claude;
    auto model = factory.modelFor(agent);
    EXPECT_EQ(model->route(), AIRoute::cloud("Anthropic"));
    EXPECT_EQ(model->availabilityProblem(), std::nullopt);  // key from the store, built-in default model

    agent.provider = AIProviderKind::openAI;
    EXPECT_EQ(factory.modelFor(agent)->availabilityProblem(), "Add your OpenAI API key in Settings → Assistant.");
    agent.provider = AIProviderKind::ollama;
    EXPECT_EQ(factory.modelFor(agent)->availabilityProblem(), "Choose a model in Settings → Assistant.");
    defaults.setValue("aiModel.ollama", " qwen3 \n");
    defaults.setValue("aiBaseURL.ollama", "http://gpu.lan:11434/v1/");
    model = factory.modelFor(agent);
    EXPECT_EQ(model->availabilityProblem(), std::nullopt);
    EXPECT_EQ(model->route(), AIRoute::localServer("gpu.lan"));
    agent.provider = AIProviderKind::lmStudio;
    agent.model = "  local-model ";
    EXPECT_EQ(factory.modelFor(agent)->route(), AIRoute::localServer("localhost"));
    EXPECT_EQ(factory.modelFor(agent)->availabilityProblem(), std::nullopt);
}

TEST_F(ChatModelFactoryTest, HandsCommandLineToolsAndTheOnDeviceModelToTheirBuilders) {
    Agent agent;
    EXPECT_THROW(factory.modelFor(agent), ChatModelError);
    agent.cliTool = CLIToolKind::claudeCode;
    agent.web = true;
    defaults.setValue("aiCLIModel.claudeCode", " sonnet ");
    std::optional<std::tuple<CLIToolKind, QString, bool>> asked;
    factory.setCommandLineBuilder([&](CLIToolKind tool, QString model, bool web) -> std::unique_ptr<ChatModel> {
        asked = std::tuple{tool, model, web};
        return nullptr;
    });
    factory.modelFor(agent);
    EXPECT_EQ(asked, (std::tuple{CLIToolKind::claudeCode, QString("sonnet"), true}));
    agent.cliTool = CLIToolKind::codex;
    agent.model = "gpt-x";
    factory.modelFor(agent);
    EXPECT_EQ(asked, (std::tuple{CLIToolKind::codex, QString("gpt-x"), false}));
}

TEST(HasServerWebTools, OnlyAnthropicsOwnSearch) {
    Agent agent;
    agent.provider = AIProviderKind::claude;
    EXPECT_TRUE(hasServerWebTools(agent));
    agent.cliTool = CLIToolKind::codex;
    EXPECT_FALSE(hasServerWebTools(agent));
    agent.cliTool = CLIToolKind::claudeCode;
    agent.provider = AIProviderKind::openAI;
    EXPECT_TRUE(hasServerWebTools(agent));
    agent.cliTool.reset();
    EXPECT_FALSE(hasServerWebTools(agent));
}

}  // namespace
}  // namespace vuro
