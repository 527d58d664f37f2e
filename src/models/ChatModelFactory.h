#pragma once

#include "agents/Agent.h"
#include "models/ChatModel.h"

#include <functional>
#include <memory>

class QNetworkAccessManager;

namespace vuro {

class AIKeyStore;
class Defaults;

// Turns an agent into the chat model of its run: the agent's command-line tool when it has one,
// otherwise its provider with the agent's model, the user's model for that provider, or the
// built-in default. The back-ends that live elsewhere (command-line tools, the on-device model)
// plug in through the two builders; without one, modelFor fails with ChatModelError::unavailable.
// Main thread.
class ChatModelFactory {
public:
    // Builds a command-line model from the tool, the model text (empty: the tool's own default)
    // and whether the tool may use the web.
    using CommandLineBuilder = std::function<std::unique_ptr<ChatModel>(CLIToolKind tool, QString model, bool web)>;
    using OnDeviceBuilder = std::function<std::unique_ptr<ChatModel>()>;

    ChatModelFactory(AIKeyStore& keys, Defaults& defaults, QNetworkAccessManager& session);

    void setCommandLineBuilder(CommandLineBuilder builder) { _commandLine = std::move(builder); }
    void setOnDeviceBuilder(OnDeviceBuilder builder) { _onDevice = std::move(builder); }

    std::unique_ptr<ChatModel> modelFor(const Agent& agent) const;

private:
    AIKeyStore& _keys;
    Defaults& _defaults;
    QNetworkAccessManager& _session;
    CommandLineBuilder _commandLine;
    OnDeviceBuilder _onDevice;
};

// Whether an agent's web search runs on the vendor's side: Claude Code, or Anthropic's API.
bool hasServerWebTools(const Agent& agent);

}  // namespace vuro
