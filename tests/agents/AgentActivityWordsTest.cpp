#include "agents/AgentActivityWords.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

namespace vuro {
namespace {

TEST(AgentActivityWords, EveryKindOfKeyReadsAsWords) {
    struct Case {
        std::optional<QString> key;
        QString words;
    };
    const Case cases[] = {
        {std::nullopt, "Working on it…"},
        {"search_notes", "Looking through your notes…"},
        {"list_tasks", "Looking through your notes…"},
        {"replace_line", "Updating your notes…"},
        {"archive_notes", "Updating your notes…"},
        {"remember", "Making a note to self…"},
        {"cancel_job", "Updating its jobs…"},
        {"mcp.connecting", "Connecting to its tools…"},
        {"mcp.approval", "Waiting for your OK…"},
        {"recording.summarizing", "Summarizing the recording…"},
        {"WebSearch", "Searching the web…"},
        {"web_fetch", "Reading a web page…"},
        {"use_skill", "Opening a skill…"},
        {"mcp_github__create_issue", "Using a connected tool…"},
        // Close to a known name is not that name.
        {"Search_Notes", "Working on it…"},
        {"mcp", "Working on it…"},
        {"", "Working on it…"},
    };
    for (const Case& each : cases) EXPECT_EQ(AgentActivityWords::of(each.key), each.words) << each.key.value_or(QStringLiteral("(none)")).toStdString();
}

}  // namespace
}  // namespace vuro
