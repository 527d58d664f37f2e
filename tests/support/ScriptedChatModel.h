#pragma once

#include "models/ChatModel.h"

#include <chrono>
#include <memory>
#include <variant>

namespace vuro::test {

// What a scripted model plays: the reply's text so far, or a tool to call through the run's tool
// runner, after an optional pause at the start and between steps, and an optional failure at the
// end. What the model was sent is kept for the test.
struct ChatScript {
    std::chrono::milliseconds pause{0};
    std::chrono::milliseconds between{0};
    QList<std::variant<QString, AgentToolCall>> steps;
    QString failure;
    QList<ChatTurn> sentTurns;
    QString sentSystem;
    QList<AgentToolDefinition> sentTools;
    QStringList outputs;  // what each tool call answered
};

// A cloud model that plays a ChatScript. Each stream reads the script when it is started.
class ScriptedChatModel : public ChatModel {
public:
    explicit ScriptedChatModel(std::shared_ptr<ChatScript> script) : _script(std::move(script)) {}
    AIRoute route() const override { return AIRoute::cloud(QStringLiteral("Anthropic")); }
    std::optional<QString> availabilityProblem() const override { return std::nullopt; }
    QList<AgentAttachment::Kind> nativeAttachments() const override { return {AgentAttachment::Kind::image}; }
    QCoro::AsyncGenerator<AgentEvent> streamReply(QString system, QList<ChatTurn> turns, QList<AgentToolDefinition> tools,
                                                  RunTool runTool) const override;

private:
    std::shared_ptr<ChatScript> _script;
};

}  // namespace vuro::test
