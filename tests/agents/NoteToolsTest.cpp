#include "agents/NoteTools.h"
#include "support/Printers.h"

#include <QSet>
#include <gtest/gtest.h>

namespace vuro {
namespace {

TEST(NoteToolsTest, TheListInItsOrderWithWhatEachWrites) {
    const QList<AgentToolDefinition> tools = NoteTools::all(false);
    QStringList names;
    QStringList writing;
    for (const AgentToolDefinition& tool : tools) {
        names << tool.name;
        if (tool.writes) writing << tool.name;
        EXPECT_FALSE(tool.inputSchema) << tool.name.toStdString();
    }
    EXPECT_EQ(names.join(u' '),
              QStringLiteral("list_notes search_notes read_note list_tasks add_task create_note append_to_note "
                             "fix_notes archive_notes complete_task tag_notes move_notes remove_lines replace_line "
                             "remember"));
    EXPECT_EQ(writing.join(u' '),
              QStringLiteral("add_task create_note append_to_note fix_notes archive_notes complete_task tag_notes "
                             "move_notes remove_lines replace_line"))
        << "remember changes the agent's memory, not the user's notes";
}

TEST(NoteToolsTest, ParametersWithTheirRequiredMarksAndKinds) {
    // "!" marks a required parameter.
    const std::vector<std::pair<const char*, const char*>> expected = {
        {"list_notes", ""},
        {"search_notes", "query!"},
        {"read_note", "note!"},
        {"list_tasks", "when!"},
        {"add_task", "task! note"},
        {"create_note", "title! body!"},
        {"append_to_note", "note! text!"},
        {"fix_notes", "notes"},
        {"archive_notes", "notes!"},
        {"complete_task", "task!"},
        {"tag_notes", "notes tags remove"},
        {"move_notes", "notes! folder"},
        {"remove_lines", "note! lines!"},
        {"replace_line", "note! line! text!"},
        {"remember", "fact!"},
    };
    for (const auto& [name, parameters] : expected) {
        const auto spec = NoteTools::spec(QLatin1String(name), false);
        ASSERT_TRUE(spec) << name;
        QStringList shown;
        for (const AgentToolDefinition::Parameter& p : spec->parameters) {
            shown << p.name + (p.required ? QStringLiteral("!") : QString());
            EXPECT_EQ(p.kind.isChoice(), p.name == QLatin1String("when")) << name;
            EXPECT_FALSE(p.description.isEmpty());
        }
        EXPECT_EQ(shown.join(u' '), QLatin1String(parameters)) << name;
    }
    EXPECT_EQ(NoteTools::spec(QStringLiteral("list_tasks"), true)->parameters.first().kind.options,
              (QStringList{"open", "today", "overdue", "upcoming"}));
}

TEST(NoteToolsTest, TurkishDiffersOnlyInItsWords) {
    const QList<AgentToolDefinition> english = NoteTools::all(false);
    const QList<AgentToolDefinition> turkish = NoteTools::all(true);
    ASSERT_EQ(english.size(), turkish.size());
    QSet<QString> descriptions;
    for (qsizetype i = 0; i < english.size(); ++i) {
        AgentToolDefinition translated = turkish[i];
        EXPECT_NE(translated.description, english[i].description) << english[i].name.toStdString();
        descriptions.insert(translated.description);
        ASSERT_EQ(translated.parameters.size(), english[i].parameters.size());
        for (qsizetype p = 0; p < translated.parameters.size(); ++p) {
            EXPECT_NE(translated.parameters[p].description, english[i].parameters[p].description);
            translated.parameters[p].description = english[i].parameters[p].description;
        }
        translated.description = english[i].description;
        EXPECT_EQ(translated, english[i]) << "names, kinds, required marks and writes are the same in both";
    }
    EXPECT_EQ(descriptions.size(), turkish.size());
}

TEST(NoteToolsTest, LookUpIsByExactName) {
    EXPECT_EQ(NoteTools::spec(QStringLiteral("archive_notes"), false)->description,
              QStringLiteral("Remove notes the user no longer wants (e.g. test notes) from the Shelf by moving them to "
                             "the Archive. The user can bring them back."));
    EXPECT_EQ(NoteTools::spec(QStringLiteral("remember"), true)->description,
              QStringLiteral("Kullanıcı hakkında kalıcı bir bilgiyi hafızana kaydet (bir tercih, bir kişi, bir alışkanlık)."));
    for (const char* name : {"List_notes", "schedule_job", "", "remember "})
        EXPECT_EQ(NoteTools::spec(QLatin1String(name), false), std::nullopt) << name;
}

}  // namespace
}  // namespace vuro
