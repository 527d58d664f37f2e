#include "support/ScriptedChatModel.h"

#include "base/Error.h"

#include <qcoro/qcorotimer.h>

namespace vuro::test {
namespace {

QCoro::AsyncGenerator<AgentEvent> play(std::shared_ptr<ChatScript> script, RunTool runTool) {
    if (script->pause.count() > 0) co_await QCoro::sleepFor(script->pause);
    bool first = true;
    for (const auto& step : script->steps) {
        if (!first && script->between.count() > 0) co_await QCoro::sleepFor(script->between);
        first = false;
        if (const auto* text = std::get_if<QString>(&step)) {
            co_yield AgentEvent::text(*text);
        } else {
            const AgentToolCall call = std::get<AgentToolCall>(step);
            co_yield AgentEvent::toolStarted(call.name);
            const AgentToolOutcome outcome = co_await runTool(call);
            script->outputs.append(outcome.output);
            for (AgentEvent event : actionEvents(outcome)) co_yield event;
        }
    }
    if (!script->failure.isEmpty()) throw Error(script->failure);
}

}  // namespace

QCoro::AsyncGenerator<AgentEvent> ScriptedChatModel::streamReply(QString system, QList<ChatTurn> turns,
                                                                 QList<AgentToolDefinition> tools, RunTool runTool) const {
    _script->sentSystem = system;
    _script->sentTurns = turns;
    _script->sentTools = tools;
    return play(_script, std::move(runTool));
}

}  // namespace vuro::test
