#include "library/ui/NotesWindow.h"

#include "base/Clock.h"
#include "editor/ui/NoteEditor.h"
#include "library/LibraryModel.h"
#include "library/ui/NoteListView.h"
#include "library/ui/NotesSidebar.h"
#include "library/ui/TaskBoardView.h"
#include "notes/InMemoryNotePersistence.h"
#include "notes/NoteStore.h"
#include "support/Printers.h"
#include "support/Screenshot.h"

#include <QCheckBox>
#include <QDir>
#include <QTreeWidget>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace vuro;
using namespace std::chrono_literals;

namespace {

const QDateTime now(QDate(2026, 6, 15), QTime(14, 30));

// A week of someone's notes: plans, lists, an agent's digest, archived leftovers.
void fill(NoteStore& store, Clock::Override& clock) {
    struct Seed {
        const char* title;
        const char* body;
        NoteColor color;
        QStringList tags;
        const char* folder;
        int hoursAgo;
        bool agent = false;
        bool archived = false;
    };
    const Seed seeds[] = {
        {"Q3 roadmap", "Themes for the quarter\n- [ ] draft the plan 📅 2026-06-16\n- [ ] review with Deniz\n- [x] collect feedback",
         NoteColor::sky, {"work", "planning"}, "Work", 2},
        {"Groceries", "- [ ] oat milk\n- [ ] bread\n- [ ] lemons\n- [x] coffee beans", NoteColor::lemon, {"home"}, nullptr, 5},
        {"İstanbul trip", "Ferry from Kadıköy at 9\nMuseum pass: 4411\n- [ ] book the hotel 📅 2026-06-13", NoteColor::peach,
         {"travel"}, nullptr, 20},
        {"Standup notes", "Blocked on the API review\nShip the importer on Thursday", NoteColor::mint, {"work"}, "Work", 26},
        {"", "Morning digest\nThree new issues were opened overnight; two are about the sync plan.", NoteColor::lilac, {},
         nullptr, 1, true},
        {"Reading list", "- The Pragmatic Programmer\n- Thinking in Systems\n- A Pattern Language", NoteColor::sand, {"books"},
         nullptr, 72},
        {"Ideas for the garden", "Raised beds along the fence\nAsk about a rain barrel", NoteColor::mint, {"home"}, nullptr, 120},
        {"Budget 2026", "Rent, utilities, savings plan\n- [ ] compare insurance 📅 2026-06-20", NoteColor::rose, {"home", "money"},
         nullptr, 30},
        {"Interview questions", "What does a good week look like?\nHow do you plan releases?", NoteColor::slate, {"work"}, "Work",
         50},
        {"Old meeting plan", "Moved to the wiki", NoteColor::sand, {"work"}, nullptr, 400, false, true},
        {"Weekly review", "- [ ] inbox zero\n- [ ] plan next week 📅 2026-06-21 09:00", NoteColor::sky, {"planning"}, nullptr, 8},
        {"Car service", "Winter tyres off\n- [ ] call the garage 📅 2026-06-15", NoteColor::peach, {}, nullptr, 3},
    };
    const auto work = store.createFolder(QStringLiteral("Work"));
    for (const Seed& seed : seeds) {
        clock.set(now.addSecs(-3600LL * seed.hoursAgo));
        const NoteOrigin origin = seed.agent ? NoteOrigin::agent(QStringLiteral("A1"), QStringLiteral("R1"), QStringLiteral("Scout"))
                                             : NoteOrigin::local();
        const Note note = store.create(QString::fromUtf8(seed.title), QString::fromUtf8(seed.body), seed.color, origin);
        if (!seed.tags.isEmpty()) store.addTags(note.id, seed.tags);
        if (seed.folder && work) store.setFolder(note.id, work->id);
        if (seed.archived) store.setArchived(note.id, true);
    }
    clock.set(now);
}


struct Fixture {
    Clock::Override clock{now};
    std::shared_ptr<InMemoryNotePersistence> persistence = std::make_shared<InMemoryNotePersistence>();
    NoteStore store{persistence, 250ms, 10s};
    std::unique_ptr<NotesWindow> window;

    Fixture() {
        fill(store, clock);
        window = std::make_unique<NotesWindow>(store);
        window->resize(1280, 760);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        QTest::qWait(50);
    }
    LibraryModel& library() { return window->library(); }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {}) {
        NoteListView* list = window->list();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, list->visualRect(list->model()->index(row, 0)).center());
        QTest::qWait(20);
    }
};

TEST(NotesWindow, SearchNarrowsTheListAndShowsTheNote) {
    Fixture f;
    EXPECT_EQ(f.library().shown().size(), 11);
    f.window->focusSearch();
    QTest::keyClicks(f.window->searchLine(), QStringLiteral("plan #WORK"));
    QTest::qWait(50);
    QStringList found;
    for (const Note& note : f.library().shown()) found.append(note.title);
    EXPECT_EQ(found, (QStringList{"Q3 roadmap", "Interview questions"}));

    // Down from the search line's list: the first match opens in the editor.
    f.window->list()->setFocus();
    QTest::keyClick(f.window->list(), Qt::Key_Down);
    QTest::qWait(50);
    EXPECT_EQ(f.library().selectedIDs().size(), 1);
    EXPECT_TRUE(f.window->editor()->toPlainText().startsWith(QStringLiteral("Themes for the quarter")));
    test::screenshot(*f.window, QStringLiteral("notes-search"));

    // The note opens in the Shelf's editor: boxes for task marks, hidden Markdown marks.
    NoteEditor* editor = f.window->editor();
    EXPECT_TRUE(editor->toPlainText().contains(QStringLiteral("☐ draft the plan")));
    EXPECT_TRUE(editor->toPlainText().contains(QStringLiteral("☑ collect feedback")));

    // Typing goes to the store in the stored form; leaving the line writes its date mark.
    const QString id = f.library().selectedIDs().first();
    editor->setFocus();
    editor->moveCursor(QTextCursor::End);
    QTest::keyClick(editor, Qt::Key_Return);
    QTest::keyClicks(editor, QStringLiteral("- [ ] call Deniz tomorrow"));
    EXPECT_TRUE(f.store.note(id)->body.endsWith(QStringLiteral("\n- [ ] call Deniz tomorrow")));
    QTest::keyClick(editor, Qt::Key_Up);
    EXPECT_TRUE(f.store.note(id)->body.endsWith(QStringLiteral("\n- [ ] call Deniz 📅 2026-06-16")))
        << f.store.note(id)->body.toStdString();
    EXPECT_TRUE(editor->toPlainText().endsWith(QStringLiteral("☐ call Deniz 📅 2026-06-16")));

    f.window->searchLine()->clear();
    QTest::keyClicks(f.window->searchLine(), QStringLiteral("\"no such thing"));
    QTest::qWait(50);
    EXPECT_TRUE(f.library().shown().isEmpty());
}

TEST(NotesWindow, BulkSelectionArchivesTagsAndDeletesWithUndo) {
    Fixture f;
    f.clickRow(1);
    f.clickRow(4, Qt::ShiftModifier);
    f.clickRow(7, Qt::ControlModifier);
    ASSERT_EQ(f.library().selectedIDs().size(), 5);
    test::screenshot(*f.window, QStringLiteral("notes-bulk-selection"));

    const QStringList chosen = f.library().selectedIDs();
    f.window->addTagToSelection(QStringLiteral("Follow up"));
    for (const QString& id : chosen) EXPECT_TRUE(f.store.note(id)->tags.contains(QStringLiteral("Follow-up")));

    QTest::keyClick(f.window->list(), Qt::Key_Delete);
    QTest::qWait(50);
    EXPECT_EQ(f.library().shown().size(), 6);
    test::screenshot(*f.window, QStringLiteral("notes-deleted-undo"));
    QTest::keyClick(f.window.get(), Qt::Key_Z, Qt::ControlModifier);
    QTest::qWait(50);
    EXPECT_EQ(f.library().shown().size(), 11);

    f.library().selectAll();
    f.window->archiveSelection();
    QTest::qWait(50);
    EXPECT_TRUE(f.library().shown().isEmpty());
    EXPECT_EQ(f.library().counts().archive, 12);
}

TEST(NotesWindow, SidebarSectionsAndKeyboard) {
    Fixture f;
    NotesSidebar* sidebar = f.window->sidebar();
    ASSERT_TRUE(sidebar->itemFor(NotesSection::archive()));
    EXPECT_EQ(sidebar->itemFor(NotesSection::all())->text(1), QStringLiteral("11"));
    EXPECT_EQ(sidebar->itemFor(NotesSection::tasks())->text(1), QStringLiteral("6"));
    EXPECT_EQ(sidebar->itemFor(NotesSection::agents())->text(1), QStringLiteral("1"));
    EXPECT_EQ(sidebar->itemFor(NotesSection::tag(QStringLiteral("work")))->text(1), QStringLiteral("3"));

    QTest::keyClick(f.window.get(), Qt::Key_4, Qt::ControlModifier);
    QTest::qWait(50);
    ASSERT_EQ(f.library().shown().size(), 1);
    EXPECT_EQ(f.library().shown().first().title, QStringLiteral("Old meeting plan"));
    sidebar->setFocus();
    sidebar->setCurrentItem(sidebar->itemFor(NotesSection::agents()));
    QTest::qWait(50);
    EXPECT_EQ(f.library().section(), NotesSection::agents());
    test::screenshot(*f.window, QStringLiteral("notes-from-agents"));
}

QStringList boardRows(QTreeWidget* tree) {
    QStringList rows;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* heading = tree->topLevelItem(i);
        rows.append(heading->text(0));
        for (int j = 0; j < heading->childCount(); ++j) rows.append(QStringLiteral("  ") + heading->child(j)->text(0));
    }
    return rows;
}

TEST(NotesWindow, TasksSectionShowsTheBoardAndTicksThroughTheStore) {
    Fixture f;
    QTest::keyClick(f.window.get(), Qt::Key_2, Qt::ControlModifier);
    QTest::qWait(50);
    QTreeWidget* tree = f.window->taskBoard()->tree();
    ASSERT_TRUE(tree->isVisible());
    EXPECT_EQ(boardRows(tree), (QStringList{"Overdue", "  book the hotel", "Today", "  call the garage", "Tomorrow",
                                            "  draft the plan", "Next 7 Days", "  compare insurance", "  plan next week",
                                            "No Date", "  review with Deniz", "  oat milk", "  bread", "  lemons",
                                            "  inbox zero"}));
    test::screenshot(*f.window, QStringLiteral("notes-tasks"));

    // Space on a task ticks it in its note.
    QTreeWidgetItem* garage = tree->topLevelItem(1)->child(0);
    tree->setFocus();
    tree->setCurrentItem(garage);
    QTest::keyClick(tree, Qt::Key_Space);
    QTest::qWait(50);
    const auto car = std::find_if(f.store.notes().cbegin(), f.store.notes().cend(),
                                  [](const Note& note) { return note.title == QStringLiteral("Car service"); });
    ASSERT_NE(car, f.store.notes().cend());
    EXPECT_TRUE(car->body.contains(QStringLiteral("- [x] call the garage")));
    EXPECT_FALSE(boardRows(tree).contains(QStringLiteral("  call the garage")));

    f.window->taskBoard()->showDone()->setChecked(true);
    QTest::qWait(50);
    const QStringList withDone = boardRows(tree);
    ASSERT_TRUE(withDone.contains(QStringLiteral("Done")));
    EXPECT_TRUE(withDone.contains(QStringLiteral("  call the garage")));
    EXPECT_TRUE(withDone.contains(QStringLiteral("  coffee beans")));
}

}  // namespace
