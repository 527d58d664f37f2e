#include "agents/AgentActivityWords.h"

#include <QCoreApplication>

namespace vuro {
namespace {

QString tr(const char* text) { return QCoreApplication::translate("AgentActivityWords", text); }

bool isOneOf(const QString& key, std::initializer_list<const char*> names) {
    for (const char* name : names)
        if (key == QLatin1String(name)) return true;
    return false;
}

}  // namespace

QString AgentActivityWords::of(const std::optional<QString>& key) {
    if (!key) return tr("Working on it…");
    const QString& name = *key;
    if (isOneOf(name, {"list_notes", "search_notes", "read_note", "list_tasks"})) return tr("Looking through your notes…");
    if (isOneOf(name, {"add_task", "create_note", "append_to_note", "fix_notes", "archive_notes", "complete_task",
                       "tag_notes", "move_notes", "remove_lines", "replace_line"}))
        return tr("Updating your notes…");
    if (name == QLatin1String("remember")) return tr("Making a note to self…");
    if (isOneOf(name, {"schedule_job", "update_job", "cancel_job"})) return tr("Updating its jobs…");
    if (name == QLatin1String("mcp.connecting")) return tr("Connecting to its tools…");
    if (name == QLatin1String("mcp.approval")) return tr("Waiting for your OK…");
    if (name == QLatin1String("recording.summarizing")) return tr("Summarizing the recording…");
    // Vendors run their own search under these names.
    if (isOneOf(name, {"web_search", "WebSearch", "web_search_preview", "google_search"})) return tr("Searching the web…");
    if (isOneOf(name, {"fetch_url", "web_fetch", "WebFetch"})) return tr("Reading a web page…");
    if (name == QLatin1String("use_skill")) return tr("Opening a skill…");
    if (name.startsWith(QLatin1String("mcp_"))) return tr("Using a connected tool…");
    return tr("Working on it…");
}

}  // namespace vuro
