#include "commands/CommandExecutor.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace vuro {
namespace {

using Action = CommandIntent::Action;

const QDateTime now(QDate(2026, 11, 21), QTime(9, 0));

struct Fixture {
    std::shared_ptr<InMemoryNotePersistence> persistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{persistence};

    QString add(const QString& title, const QString& body) { return store.create(title, body).id; }
    std::optional<Note> titled(const QString& title) const {
        for (const Note& note : store.notes())
            if (note.displayTitle() == title) return note;
        return std::nullopt;
    }
    CommandExecutor::Outcome run(Action action, const QString& hint, const QString& text, const QString& title = {}) {
        return CommandExecutor::execute(CommandIntent{action, hint, text, title, std::nullopt}, store, false, now);
    }
};

TEST(CommandExecutor, AddsTasksWithDateMarksToTheNamedListOrTheDefault) {
    struct Case {
        const char* what;
        QString hint;
        QString text;
        QString note;           // the note that should hold the line afterwards
        QString expectedBody;   // its body
        QString message;
    };
    const QList<Case> cases = {
        {"date words become a mark", "my shopping list", "milk tomorrow at 10", "Shopping list",
         "- [ ] bread\n- [ ] milk 📅 2026-11-22 10:00", "Added “milk 📅 2026-11-22 10:00” to Shopping list."},
        {"a phrase that is the whole text keeps its words", "shopping", "tomorrow at 10", "Shopping list",
         "- [ ] bread\n- [ ] tomorrow at 10 📅 2026-11-22 10:00",
         "Added “tomorrow at 10 📅 2026-11-22 10:00” to Shopping list."},
        {"a task without a date", "Shopping list", "eggs", "Shopping list", "- [ ] bread\n- [ ] eggs",
         "Added “eggs” to Shopping list."},
        {"no hint and no To-dos note creates it", "", "call Ann", "To-dos", "- [ ] call Ann",
         "Created To-dos with “call Ann”."},
        {"an unknown list is created under its name", "Garden", "water roses", "Garden", "- [ ] water roses",
         "Created Garden with “water roses”."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Fixture f;
        f.add("Shopping list", "- [ ] bread\n\n");
        f.add("Ideas", "paint the fence");
        const auto outcome = f.run(Action::addTask, c.hint, c.text);
        EXPECT_EQ(outcome.message, c.message);
        const auto note = f.titled(c.note);
        ASSERT_TRUE(note);
        EXPECT_EQ(note->body, c.expectedBody);
        EXPECT_EQ(outcome.noteID, note->id);
        ASSERT_TRUE(outcome.undo);
        EXPECT_TRUE(CommandExecutor::undo(*outcome.undo, f.store));
        const auto after = f.store.note(note->id);
        if (c.note == "Shopping list") {
            EXPECT_EQ(after->body, "- [ ] bread\n\n");
        } else {
            EXPECT_FALSE(f.store.visibleNotes().contains(*note));
        }
    }
}

TEST(CommandExecutor, AppendsCreatesAndCannotTell) {
    Fixture f;
    const QString list = f.add("Packing", "- [ ] socks");
    const QString plain = f.add("Journal", "Rainy day.");

    auto outcome = f.run(Action::appendToNote, "packing", "charger");
    EXPECT_EQ(f.store.note(list)->body, "- [ ] socks\n- [ ] charger");  // a list stays a list
    outcome = f.run(Action::appendToNote, "journal", "Walked the dog.");
    EXPECT_EQ(outcome.message, "Added to Journal.");
    EXPECT_EQ(f.store.note(plain)->body, "Rainy day.\nWalked the dog.");
    outcome = f.run(Action::appendToNote, "Recipes", "pancakes");
    EXPECT_EQ(outcome.message, "Created Recipes.");
    outcome = f.run(Action::createNote, "", "Dune\nSolaris", "Book recommendations");
    EXPECT_EQ(outcome.message, "Created a new note: Book recommendations");
    EXPECT_EQ(f.titled("Book recommendations")->body, "Dune\nSolaris");

    for (const auto& [action, text, title] : QList<std::tuple<Action, QString, QString>>{
             {Action::addTask, "  ", ""}, {Action::createNote, "", " "}, {Action::unknown, "milk", ""},
             {Action::appendToNote, "\n", ""}}) {
        const int before = f.store.notes().size();
        outcome = f.run(action, "Packing", text, title);
        EXPECT_EQ(outcome.message, "I couldn't tell what to add.");
        EXPECT_FALSE(outcome.undo);
        EXPECT_EQ(f.store.notes().size(), before);
    }
}

TEST(CommandExecutor, CompletesTheBestMatchingOpenTask) {
    Fixture f;
    const QString a = f.add("Errands", "- [ ] buy milk 📅 2026-11-22\n- [x] call the bank\n- [ ] post the letter");
    const QString b = f.add("Work", "- [ ] call the plumber");
    f.add("Old", "- [ ] call the bank");
    f.store.setArchived(f.titled("Old")->id, true);

    auto outcome = f.run(Action::completeTask, "", "milk");
    EXPECT_EQ(outcome.message, "Marked “buy milk” as done.");
    EXPECT_EQ(f.store.note(a)->body, "- [x] buy milk 📅 2026-11-22\n- [x] call the bank\n- [ ] post the letter");

    // The done and archived "call the bank" lines don't count.
    outcome = f.run(Action::completeTask, "", "call bank");
    EXPECT_EQ(outcome.message, "Marked “call the plumber” as done.");
    EXPECT_EQ(f.store.note(b)->body, "- [x] call the plumber");
    EXPECT_TRUE(CommandExecutor::undo(*outcome.undo, f.store));
    EXPECT_EQ(f.store.note(b)->body, "- [ ] call the plumber");

    outcome = f.run(Action::completeTask, "", "feed the cat");
    EXPECT_EQ(outcome.message, "I couldn't find an open task like “feed the cat”.");
    EXPECT_FALSE(outcome.undo);
}

TEST(CommandExecutor, TurkishWordsAndDefaultList) {
    Fixture f;
    const auto outcome = CommandExecutor::execute(
        CommandIntent{Action::addTask, "", "Ali'yi ara yarın sabah", "", std::nullopt}, f.store, true, now);
    EXPECT_EQ(outcome.message, "Yapılacaklar oluşturuldu: “Ali'yi ara 📅 2026-11-22 09:00”.");
    ASSERT_TRUE(outcome.due);
    EXPECT_EQ(*outcome.due, TaskDue(2026, 11, 22, 9, 0));
}

}  // namespace
}  // namespace vuro
