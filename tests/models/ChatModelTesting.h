#pragma once

// Shared pieces of the chat back-end tests: a tool runner that records its calls, and event
// helpers that print readably.

#include "models/ChatModel.h"
#include "support/StreamDrain.h"

#include <QJsonDocument>
#include <functional>
#include <ostream>
#include <qcoro/qcorotimer.h>
#include <vector>

namespace vuro {

inline void PrintTo(const AgentEvent& event, std::ostream* os) {
    if (const auto* text = std::get_if<AgentEvent::Text>(&event.value))
        *os << "text(" << text->text.toStdString() << ")";
    else if (const auto* started = std::get_if<AgentEvent::ToolStarted>(&event.value))
        *os << "toolStarted(" << started->name.toStdString() << ")";
    else
        *os << "action(" << std::get<AgentAction>(event.value).id.toStdString() << ")";
}

namespace test {

// Runs tools by recording each call and answering with what `answer` gives (by default an
// output naming the tool). Each call waits a moment, as a real tool does.
class ToolRecorder {
public:
    std::vector<AgentToolCall> calls;
    std::function<AgentToolOutcome(const AgentToolCall&)> answer = [](const AgentToolCall& call) {
        return AgentToolOutcome{QStringLiteral("ran ") + call.name, std::nullopt, {}};
    };

    RunTool runTool() {
        return [this](AgentToolCall call) { return record(this, std::move(call)); };
    }

private:
    static QCoro::Task<AgentToolOutcome> record(ToolRecorder* recorder, AgentToolCall call) {
        co_await QCoro::sleepFor(std::chrono::milliseconds(1));
        recorder->calls.push_back(call);
        co_return recorder->answer(call);
    }
};

inline AgentAction action(const QString& id) {
    AgentAction made;
    made.id = id;
    made.tool = QStringLiteral("add_task");
    made.summary = QStringLiteral("Added a task");
    return made;
}

inline QJsonObject object(const char* json) { return QJsonDocument::fromJson(json).object(); }
inline QJsonArray array(const char* json) { return QJsonDocument::fromJson(json).array(); }

}  // namespace test
}  // namespace vuro
