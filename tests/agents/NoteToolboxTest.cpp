#include "agents/NoteTitleMatch.h"
#include "agents/NoteToolbox.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <qcoro/qcorotask.h>

namespace vuro {
namespace {

using testing::HasSubstr;

const QDateTime now(QDate(2026, 11, 21), QTime(9, 0));

struct Fixture {
    std::shared_ptr<InMemoryNotePersistence> persistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{persistence};

    QString add(const QString& title, const QString& body) { return store.create(title, body).id; }
    NoteToolbox toolbox(NoteAccess access = NoteAccess::readWrite, bool turkish = false, int limit = 8000) {
        return NoteToolbox(store, access, limit, [] { return now; }, {}, turkish);
    }
    static AgentToolOutcome call(NoteToolbox& box, const QString& name, QMap<QString, QString> arguments = {}) {
        const auto outcome = QCoro::waitFor(box.run(AgentToolCall{QStringLiteral("c1"), name, std::move(arguments)}));
        EXPECT_TRUE(outcome.has_value());
        return outcome.value_or(AgentToolOutcome{});
    }
};

TEST(NoteTitleMatch, FindsTheNoteAModelMeans) {
    Fixture f;
    f.add("Shopping list", "- [ ] milk\n- [ ] bread");
    f.add("Shopping ideas for Christmas", "scarf");
    f.add("Trip to İstanbul", "Galata");
    f.add("", "Meeting notes\nAgenda: budget");
    const QString archived = f.add("Old recipes", "soup");
    f.store.setArchived(archived, true);

    struct Case {
        QString title;
        QString expected;  // empty: no note
    };
    const QList<Case> cases = {
        {"Shopping list", "Shopping list"},
        {"my shopping list", "Shopping list"},
        {"SHOPPİNG", "Shopping list"},  // both match fully; the shorter coverage of the note by the title loses
        {"• “Shopping list” — milk bread (2 open tasks)", "Shopping list"},
        {"\"Trip to Istanbul\" — Galata", "Trip to İstanbul"},
        {"istanbul", "Trip to İstanbul"},
        {"Meeting", "Meeting notes"},  // the title derived from the body
        {"shop christ", "Shopping ideas for Christmas"},  // four-letter prefixes match
        {"my list note", ""},  // noise words only
        {"the", ""},
        {"Old recipes", ""},  // archived
        {"a note about the trip to istanbul next spring with friends", "Trip to İstanbul"},  // all its words in the title
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.title.toStdString());
        const auto found = NoteTitleMatch::find(c.title, f.store.visibleNotes());
        if (c.expected.isEmpty()) {
            EXPECT_FALSE(found) << found->displayTitle().toStdString();
        } else {
            ASSERT_TRUE(found);
            EXPECT_EQ(found->displayTitle(), c.expected);
        }
    }
}

TEST(NoteToolbox, TheGateRefusesInWords) {
    Fixture f;
    const QString id = f.add("Shopping list", "- [ ] milk");
    struct Case {
        NoteAccess access;
        bool turkish;
        QString tool;
        QString output;
    };
    const QList<Case> cases = {
        {NoteAccess::read, false, "add_task", "Not allowed: you can't change the user's notes."},
        {NoteAccess::read, true, "archive_notes", "İzin yok: kullanıcının notlarını değiştiremezsin."},
        {NoteAccess::none, false, "list_notes", "Not allowed: you can't see the user's notes."},
        {NoteAccess::none, true, "read_note", "İzin yok: kullanıcının notlarını göremezsin."},
        {NoteAccess::readWrite, false, "delete_everything", "Unknown tool: delete_everything"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.tool.toStdString());
        auto box = f.toolbox(c.access, c.turkish);
        const auto outcome = Fixture::call(box, c.tool, {{"task", "eggs"}, {"note", "Shopping list"}, {"notes", "Shopping list"}});
        EXPECT_EQ(outcome.output, c.output);
        EXPECT_FALSE(outcome.action);
        EXPECT_EQ(f.store.note(id)->body, "- [ ] milk");
        EXPECT_FALSE(f.store.note(id)->archived);
    }
    // remember needs no access to the notes.
    auto none = f.toolbox(NoteAccess::none);
    EXPECT_EQ(Fixture::call(none, "remember", {{"fact", "Likes tea"}}).output, "Saved to memory.");

    QStringList offered;
    for (const auto& spec : NoteToolbox::tools(NoteAccess::read, false, {}, false)) offered.append(spec.name);
    EXPECT_EQ(offered, QStringList({"list_notes", "search_notes", "read_note", "list_tasks", "remember"}));
    offered.clear();
    for (const auto& spec : NoteToolbox::tools(NoteAccess::readWrite, true, "put these in a folder", true)) offered.append(spec.name);
    EXPECT_EQ(offered, QStringList({"list_notes", "search_notes", "read_note", "list_tasks", "add_task", "create_note",
                                    "append_to_note", "fix_notes", "archive_notes", "complete_task", "move_notes",
                                    "remember"}));
    EXPECT_EQ(NoteToolbox::tools(NoteAccess::readWrite, false, {}, false).size(), 15);
}

TEST(NoteToolbox, ListNotesShowsFifteenAndCountsTheRest) {
    Fixture f;
    for (int i = 1; i <= 16; ++i) f.add(QStringLiteral("Note %1").arg(i), QStringLiteral("head\n- [ ] task %1\nmore").arg(i));
    f.store.addTags(f.store.visibleNotes().first().id, {"work"});
    auto box = f.toolbox();
    const QString out = Fixture::call(box, "list_notes").output;
    EXPECT_TRUE(out.startsWith("16 notes on the Shelf:\n• “")) << out.toStdString();
    EXPECT_EQ(out.count("\n• “"), 15);
    EXPECT_TRUE(out.endsWith("\n… and 1 more.")) << out.toStdString();
    // The newest note stands first on the Shelf; the oldest is the one left out.
    EXPECT_THAT(out.toStdString(), HasSubstr("• “Note 16” — - [ ] task 16 more (1 open tasks) #work\n"));
    EXPECT_THAT(out.toStdString(), testing::Not(HasSubstr("“Note 1”")));

    Fixture empty;
    auto emptyBox = empty.toolbox(NoteAccess::read, true);
    EXPECT_EQ(Fixture::call(emptyBox, "list_notes").output, "Raf boş: kullanıcının henüz notu yok.");
}

TEST(NoteToolbox, ArchivesAtMostTenAndNamesTheRest) {
    Fixture f;
    QStringList titles;
    for (int i = 1; i <= 11; ++i) {
        titles.append(QStringLiteral("Test note %1").arg(QChar(u'A' + i - 1)));
        f.add(titles.last(), "x");
    }
    auto box = f.toolbox();
    const auto outcome = Fixture::call(box, "archive_notes", {{"notes", titles.join("; ") + "; Ghost"}});
    EXPECT_EQ(f.store.visibleNotes().size(), 1);
    EXPECT_EQ(f.store.visibleNotes().first().title, "Test note K");
    EXPECT_THAT(outcome.output.toStdString(), HasSubstr("Not archived (at most 10 at once): “Test note K”, “Ghost”."));
    ASSERT_TRUE(outcome.action);
    EXPECT_EQ(outcome.moreActions.size(), 9);
    EXPECT_EQ(outcome.action->summary, "Moved to the Archive: Test note A");
    EXPECT_EQ(NoteToolbox::undo(*outcome.action->undo, f.store), NoteToolbox::UndoResult::done);
    EXPECT_EQ(f.store.visibleNotes().size(), 2);
    EXPECT_EQ(NoteToolbox::undo(*outcome.action->undo, f.store), NoteToolbox::UndoResult::noteChanged);

    EXPECT_EQ(Fixture::call(box, "archive_notes", {{"notes", " ; "}}).output,
              "Name the notes to archive. Notes: Test note A; Test note K");
}

TEST(NoteToolbox, RemoveLinesAndReplaceLineKeepMarks) {
    Fixture f;
    const QString body = "Groceries\n- [ ] milk 📅 2026-11-22 10:00\n- [x] old test line\n1. First step. Second step.\n"
                         "- [ ] eggs\n- [ ] eggs and ham";
    const QString id = f.add("Groceries", body);
    auto box = f.toolbox();

    struct Case {
        const char* what;
        QString tool;
        QMap<QString, QString> arguments;
        QString bodyAfter;  // empty: unchanged
        QString outputStart;
        QString summary;
    };
    const QList<Case> cases = {
        {"a task line keeps its checkbox and date", "replace_line",
         {{"note", "groceries"}, {"line", "- [ ] milk"}, {"text", "oat milk"}},
         "Groceries\n- [ ] oat milk 📅 2026-11-22 10:00\n- [x] old test line\n1. First step. Second step.\n- [ ] eggs\n"
         "- [ ] eggs and ham",
         "Changed in “Groceries”: “milk” → “oat milk”. The note now:\nGroceries\n- [ ] oat milk", "Changed a line in Groceries"},
        {"a sentence inside a numbered line", "replace_line",
         {{"note", "Groceries"}, {"line", "Second step."}, {"text", "Last step."}},
         "Groceries\n- [ ] milk 📅 2026-11-22 10:00\n- [x] old test line\n1. First step. Last step.\n- [ ] eggs\n"
         "- [ ] eggs and ham",
         "Changed in “Groceries”: “Second step.” → “Last step.”", "Changed a line in Groceries"},
        {"the same words", "replace_line", {{"note", "Groceries"}, {"line", "eggs and ham"}, {"text", "- [ ] eggs and ham"}},
         {}, "The line already says that.", {}},
        {"a piece in several lines", "replace_line", {{"note", "Groceries"}, {"line", "egg"}, {"text", "x"}}, {},
         "“egg” matches 2 lines; quote the whole line.", {}},
        {"a line that isn't there", "replace_line", {{"note", "Groceries"}, {"line", "bacon"}, {"text", "x"}}, {},
         "“bacon” isn't in “Groceries”. The note:\nGroceries\n", {}},
        {"an exact line wins over lines that contain it", "remove_lines",
         {{"note", "Groceries"}, {"lines", "[x] old test line; eggs"}},
         "Groceries\n- [ ] milk 📅 2026-11-22 10:00\n1. First step. Second step.\n- [ ] eggs and ham",
         "Deleted from “Groceries”: “[x] old test line”, “eggs”. The note now:\n", "Removed 2 lines from Groceries"},
        {"a sentence goes, the line stays", "remove_lines", {{"note", "Groceries"}, {"lines", "Second step.\nbanana"}},
         "Groceries\n- [ ] milk 📅 2026-11-22 10:00\n- [x] old test line\n1. First step.\n- [ ] eggs\n- [ ] eggs and ham",
         "Deleted from “Groceries”: “Second step.”. Not found: “banana”.", "Edited Groceries"},
        {"nothing deleted", "remove_lines", {{"note", "Groceries"}, {"lines", "banana"}}, {},
         "Nothing was deleted. Not in “Groceries”: “banana”.", {}},
        {"every line refuses", "remove_lines",
         {{"note", "Groceries"},
          {"lines", "Groceries; milk; old test line; First step. Second step.; - [ ] eggs; eggs and ham"}},
         {}, "Not deleted: that would leave “Groceries” empty. To remove the whole note, archive it.", {}},
        {"no such note", "remove_lines", {{"note", "Shopping"}, {"lines", "x"}}, {},
         "No note called “Shopping”. Notes: Groceries", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        f.store.setBody(id, body, false);
        const auto outcome = Fixture::call(box, c.tool, c.arguments);
        EXPECT_TRUE(outcome.output.startsWith(c.outputStart)) << outcome.output.toStdString();
        EXPECT_EQ(f.store.note(id)->body, c.bodyAfter.isEmpty() ? body : c.bodyAfter);
        if (c.summary.isEmpty()) {
            EXPECT_FALSE(outcome.action);
            continue;
        }
        ASSERT_TRUE(outcome.action);
        EXPECT_EQ(outcome.action->summary, c.summary);
        EXPECT_EQ(NoteToolbox::undo(*outcome.action->undo, f.store), NoteToolbox::UndoResult::done);
        EXPECT_EQ(f.store.note(id)->body, body);
    }
}

TEST(NoteToolbox, AddTaskUndoRefusesAfterTheUserTyped) {
    Fixture f;
    const QString id = f.add("Shopping list", "- [ ] bread");
    auto box = f.toolbox();
    const auto outcome = Fixture::call(box, "add_task", {{"task", " milk tomorrow at 10 "}, {"note", "my shopping list"}});
    EXPECT_EQ(outcome.output, "Added “milk 📅 2026-11-22 10:00” to Shopping list.");
    EXPECT_EQ(f.store.note(id)->body, "- [ ] bread\n- [ ] milk 📅 2026-11-22 10:00");
    ASSERT_TRUE(outcome.action && outcome.action->undo);
    EXPECT_EQ(outcome.action->tool, "add_task");
    EXPECT_EQ(outcome.action->noteID, id);
    f.store.setBody(id, f.store.note(id)->body + "\n- [ ] jam");
    EXPECT_EQ(NoteToolbox::undo(*outcome.action->undo, f.store), NoteToolbox::UndoResult::noteChanged);
    EXPECT_EQ(f.store.note(id)->body, "- [ ] bread\n- [ ] milk 📅 2026-11-22 10:00\n- [ ] jam");
}

TEST(NoteToolbox, CreateNoteAppendsToAnExistingOne) {
    Fixture f;
    const QString id = f.add("Reading list", "Dune");
    auto box = f.toolbox();
    auto outcome = Fixture::call(box, "create_note", {{"title", "reading list"}, {"body", "Solaris\n\nNeuromancer"}});
    EXPECT_EQ(outcome.output, "Added 2 lines to Reading list. (The note already existed, so this was added to it.)");
    EXPECT_EQ(f.store.note(id)->body, "Dune\nSolaris\nNeuromancer");
    outcome = Fixture::call(box, "create_note", {{"title", "Reading list"}, {"body", ""}});
    EXPECT_EQ(outcome.output, "A note called “Reading list” already exists; use add_task to add to it.");
    outcome = Fixture::call(box, "create_note", {{"title", "Packing"}, {"body", "- [ ] socks"}});
    EXPECT_EQ(outcome.output, "Created a new note: Packing");
    ASSERT_TRUE(outcome.action);
    EXPECT_EQ(NoteToolbox::undo(*outcome.action->undo, f.store), NoteToolbox::UndoResult::done);
    EXPECT_EQ(f.store.visibleNotes().size(), 1);
}

TEST(NoteToolbox, ReadSearchTasksAndMemory) {
    Fixture f;
    f.add("Shopping list", "- [ ] milk 📅 2026-11-20\n- [ ] bread 📅 2026-11-25\n- [x] jam\n![image](vuro-img://IMG1)");
    f.add("Ideas", "A [plan](vuro-file://F1) for the garden");
    NoteToolbox box = f.toolbox(NoteAccess::read, false, 60);
    const QString read = Fixture::call(box, "read_note", {{"note", "shopping"}}).output;
    // Sixty characters, each calendar emoji counting once.
    EXPECT_EQ(read, "# Shopping list\n- [ ] milk 📅 2026-11-20\n- [ ] bread 📅 2026-1\n…(truncated)");
    box = f.toolbox(NoteAccess::read);
    EXPECT_EQ(Fixture::call(box, "read_note", {{"note", "Ideas"}}).output,
              "# Ideas\nFiles: plan\n\nA 📎 plan for the garden");
    EXPECT_EQ(Fixture::call(box, "search_notes", {{"query", "garden"}}).output, "“Ideas” — A 📎 plan for the garden");
    EXPECT_EQ(Fixture::call(box, "search_notes", {{"query", "bread zebra"}}).output.left(17), "“Shopping list” —");
    EXPECT_EQ(Fixture::call(box, "search_notes", {{"query", "zebra"}}).output,
              "No notes match “zebra”. Notes on the Shelf: Ideas; Shopping list");
    EXPECT_EQ(Fixture::call(box, "list_tasks", {{"when", "overdue"}}).output, "- [ ] milk (Shopping list) 📅 2026-11-20");
    EXPECT_EQ(Fixture::call(box, "list_tasks", {{"when", "upcoming"}}).output, "- [ ] bread (Shopping list) 📅 2026-11-25");
    EXPECT_EQ(Fixture::call(box, "list_tasks", {{"when", "open"}}).output.count('\n'), 1);

    QString saved;
    box.onMemoryChange = [&saved](const QString& memory) { saved = memory; };
    const auto first = Fixture::call(box, "remember", {{"fact", "Has a cat named Pamuk"}});
    EXPECT_EQ(saved, "- Has a cat named Pamuk");
    EXPECT_EQ(first.action->summary, "Remembered: Has a cat named Pamuk");
    EXPECT_EQ(Fixture::call(box, "remember", {{"fact", "Has a cat named Pamuk\n"}}).output, "Already remembered.");
    const auto* undo = std::get_if<AgentUndo::RestoreMemory>(&first.action->undo->value);
    ASSERT_TRUE(undo);
    EXPECT_EQ(undo->before, "");
}

}  // namespace
}  // namespace vuro
