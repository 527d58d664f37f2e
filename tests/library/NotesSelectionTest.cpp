#include "library/NotesSelection.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;
using NotesSelection::State;

namespace {

const QStringList shown{"a", "b", "c", "d", "e"};

struct Step {
    char kind;  // c click, s shift-click, k control-click, A select all, r retain (to `shown` minus "c")
    const char* id;
};

struct Case {
    const char* name;
    std::vector<Step> steps;
    QStringList selected;  // in the order shown
    const char* anchor;    // "" for none
    const char* primary;
};

TEST(NotesSelection, ClicksShiftClicksAndControlClicks) {
    const Case cases[] = {
        {"click", {{'c', "b"}}, {"b"}, "b", "b"},
        {"click replaces", {{'c', "b"}, {'k', "d"}, {'c', "e"}}, {"e"}, "e", "e"},
        {"shift down", {{'c', "b"}, {'s', "d"}}, {"b", "c", "d"}, "b", "d"},
        {"shift up", {{'c', "d"}, {'s', "a"}}, {"a", "b", "c", "d"}, "d", "a"},
        {"shift again from the same anchor", {{'c', "c"}, {'s', "e"}, {'s', "a"}}, {"a", "b", "c"}, "c", "a"},
        {"shift without anchor is a click", {{'s', "c"}}, {"c"}, "c", "c"},
        {"shift on itself", {{'c', "c"}, {'s', "c"}}, {"c"}, "c", "c"},
        {"control adds and moves the anchor", {{'c', "a"}, {'k', "c"}}, {"a", "c"}, "c", "c"},
        {"shift after control ranges from the new anchor", {{'c', "a"}, {'k', "c"}, {'s', "e"}}, {"c", "d", "e"}, "c", "e"},
        {"control removes the shown note: next below", {{'c', "a"}, {'k', "d"}, {'k', "b"}, {'k', "b"}},
         {"a", "d"}, "b", "d"},
        {"control removes the shown note: above when none below", {{'c', "a"}, {'k', "e"}, {'k', "e"}}, {"a"}, "e", "a"},
        {"control removes a note not shown", {{'c', "a"}, {'k', "b"}, {'k', "a"}}, {"b"}, "a", "b"},
        {"control removes the last", {{'c', "a"}, {'k', "a"}}, {}, "a", ""},
        {"select all keeps the shown note", {{'c', "c"}, {'A', ""}}, {"a", "b", "c", "d", "e"}, "c", "c"},
        {"select all from nothing", {{'A', ""}}, {"a", "b", "c", "d", "e"}, "a", "a"},
        {"retain drops hidden notes and moves the shown one", {{'c', "e"}, {'s', "c"}, {'r', ""}}, {"d", "e"}, "e", "d"},
        {"retain drops a hidden anchor", {{'c', "c"}, {'s', "e"}, {'r', ""}}, {"d", "e"}, "", "e"},
    };
    QStringList withoutC = shown;
    withoutC.removeAll(QStringLiteral("c"));
    for (const auto& c : cases) {
        State state;
        for (const Step& step : c.steps) {
            const QString id = QString::fromUtf8(step.id);
            switch (step.kind) {
            case 'c': state.click(id); break;
            case 's': state.shiftClick(id, shown); break;
            case 'k': state.controlClick(id, shown); break;
            case 'A': state.selectAll(shown); break;
            case 'r': state.retain(withoutC); break;
            }
        }
        EXPECT_EQ(state.selectedInOrder(shown), c.selected) << c.name;
        EXPECT_EQ(state.anchor.value_or(QString()), QString::fromUtf8(c.anchor)) << c.name;
        EXPECT_EQ(state.primary.value_or(QString()), QString::fromUtf8(c.primary)) << c.name;
    }
}

}  // namespace
