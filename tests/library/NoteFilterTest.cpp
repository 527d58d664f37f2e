#include "library/NoteFacts.h"
#include "library/NoteFilter.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace vuro;
using Search = NoteFilter::Search;

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }
QStringList list(std::initializer_list<const char*> items) {
    QStringList result;
    for (const char* item : items) result.append(u(item));
    return result;
}

TEST(NoteFilterParse, ReadsPhrasesTagsExclusionsAndWords) {
    struct Parts {
        QStringList words, phrases, tags, excluded;
    };
    struct Case {
        const char* query;
        Parts expected;
    } cases[] = {
        {"", {}},
        {"   ", {}},
        {"\"exact phrase\" word -skip #work", {list({"word"}), list({"exact phrase"}), list({"work"}), list({"skip"})}},
        {"“Smart Quotes” and \"mixed”", {list({"and"}), list({"smart quotes", "mixed"}), {}, {}}},
        {"”closing opens“", {{}, list({"closing opens"}), {}, {}}},
        // An unpaired quote ends the phrase search and stays in its word.
        {"\"open", {list({"\"open"}), {}, {}, {}}},
        {"a \"b\" \"c d", {list({"a", "\"c", "d"}), list({"b"}), {}, {}}},
        {"\"\" \"  \"", {}},
        {"\"  padded  \"", {{}, list({"padded"}), {}, {}}},
        {"x\"glued\"y", {list({"x", "y"}), list({"glued"}), {}, {}}},
        // A lone hyphen is a word; a hyphen with more is an exclusion, folded.
        {"-", {list({"-"}), {}, {}, {}}},
        {"-KAPI --x", {{}, {}, {}, list({"kapi", "-x"})}},
        {"#", {}},
        {"#Big! #\"Deep Work\"", {{}, list({"deep work"}), list({"big"}), {}}},
        {"ISTANBUL Café ＡＢＣ", {list({"istanbul", "cafe", "abc"}), {}, {}, {}}},
        {"tab\tand\nline", {list({"tab", "and", "line"}), {}, {}, {}}},
    };
    for (const auto& c : cases) {
        const Search parsed = NoteFilter::parse(u(c.query));
        EXPECT_EQ(parsed.words, c.expected.words) << c.query;
        EXPECT_EQ(parsed.phrases, c.expected.phrases) << c.query;
        EXPECT_EQ(parsed.tags, c.expected.tags) << c.query;
        EXPECT_EQ(parsed.excluded, c.expected.excluded) << c.query;
        EXPECT_EQ(parsed.required.size(), c.expected.words.size() + c.expected.phrases.size()) << c.query;
    }
}

// A fixed local noon keeps "today", a local calendar day, away from midnight.
const QDateTime now(QDate(2026, 6, 15), QTime(12, 0));

Note makeNote(const char* id, const char* title, const char* body, qint64 secondsAgo) {
    Note note;
    note.id = u(id);
    note.title = u(title);
    note.body = u(body);
    note.created = now.addSecs(-secondsAgo - 100);
    note.modified = now.addSecs(-secondsAgo);
    return note;
}

QList<Note> corpus() {
    Note istanbul = makeNote("ist", "İstanbul trip", "- [ ] book hotel 📅 2026-12-01\nKAPI code 4411", 3600);
    istanbul.tags = list({"travel"});
    istanbul.color = NoteColor::sky;
    Note hyphen = makeNote("hyph", "Re-read", "a well known text", 604800);
    hyphen.tags = list({"Work"});
    Note agent = makeNote("agent", "", "Daily digest\n![image](vuro-img://IMG1)", 604799);
    agent.origin = NoteOrigin::agent(u("A1"), u("R1"), u("Scout"));
    Note drop = makeNote("drop", "Report", "[report.pdf](vuro-file://F1)", 10 * 86400);
    drop.origin = NoteOrigin::drop(u("agent.A2"), u("D1"), u("Writer"));
    drop.tags = list({"work-items"});
    Note archived = makeNote("archived", "İstanbul archive", "old", 60);
    archived.archived = true;
    archived.tags = list({"travel"});
    Note done = makeNote("done", "Chores", "- [x] done thing", 2592001);
    done.folderID = u("F1");
    Note cafe = makeNote("cafe", "Café notes", "the “exact phrase” inside", 3 * 86400);
    return {istanbul, hyphen, agent, drop, archived, done, cafe};
}

struct MatchCase {
    const char* name;
    NotesSection section;
    const char* query;
    NoteFilter filter;
    QStringList expected;
};

NoteFilter withColors(std::set<NoteColor> colors) { NoteFilter f; f.colors = std::move(colors); return f; }
NoteFilter withSource(NoteFilter::Source source) { NoteFilter f; f.source = std::move(source); return f; }
NoteFilter withContent(std::set<NoteFilter::Content> content) { NoteFilter f; f.content = std::move(content); return f; }
NoteFilter withPeriod(NoteFilter::Period period) { NoteFilter f; f.period = period; return f; }
NoteFilter withTags(QStringList tags) { NoteFilter f; f.tags = std::move(tags); return f; }

TEST(NoteFilterMatches, SectionFiltersAndSearchTogether) {
    using C = NoteFilter::Content;
    using P = NoteFilter::Period;
    using S = NoteFilter::Source;
    const MatchCase cases[] = {
        {"empty search passes all shown", NotesSection::all(), "", {}, list({"ist", "hyph", "agent", "drop", "done", "cafe"})},
        {"turkish capital", NotesSection::all(), "ISTANBUL", {}, list({"ist"})},
        {"dotless and plain", NotesSection::all(), "kapı", {}, list({"ist"})},
        {"archive only in archive", NotesSection::archive(), "istanbul", {}, list({"archived"})},
        {"archive with a filter", NotesSection::archive(), "", withContent({C::openTasks}), {}},
        {"archive under its tag section", NotesSection::tag(u("travel")), "", {}, list({"ist"})},
        {"lone hyphen is a word", NotesSection::all(), "-", {}, list({"ist", "hyph", "agent", "drop", "done"})},
        {"phrase", NotesSection::all(), "\"exact phrase\"", {}, list({"cafe"})},
        {"unclosed quote matches little", NotesSection::all(), "\"exact", {}, {}},
        {"diacritics", NotesSection::all(), "CAFE", {}, list({"cafe"})},
        {"words all required", NotesSection::all(), "hotel 4411", {}, list({"ist"})},
        {"words all required, one missing", NotesSection::all(), "hotel nothing", {}, {}},
        {"tag prefix", NotesSection::all(), "#work", {}, list({"hyph", "drop"})},
        {"tag and exclusion", NotesSection::all(), "#WORK -known", {}, list({"drop"})},
        {"exclusion alone", NotesSection::all(), "-istanbul -vuro", {}, list({"hyph", "done", "cafe"})},
        {"tasks section", NotesSection::tasks(), "", {}, list({"ist", "done"})},
        {"agents section", NotesSection::agents(), "", {}, list({"agent", "drop"})},
        {"folder section", NotesSection::folder(u("F1")), "", {}, list({"done"})},
        {"tag section compares whole names", NotesSection::tag(u("#work")), "", {}, list({"hyph"})},
        {"colours", NotesSection::all(), "", withColors({NoteColor::sky, NoteColor::rose}), list({"ist"})},
        {"one agent", NotesSection::all(), "", withSource(S::agent(u("A2"))), list({"drop"})},
        {"any agent", NotesSection::all(), "", withSource(S::agents()), list({"agent", "drop"})},
        {"mine", NotesSection::all(), "", withSource(S::mine()), list({"ist", "hyph", "done", "cafe"})},
        {"open tasks", NotesSection::all(), "", withContent({C::openTasks}), list({"ist"})},
        {"due tasks", NotesSection::all(), "", withContent({C::dueTasks}), list({"ist"})},
        {"images", NotesSection::all(), "", withContent({C::images}), list({"agent"})},
        {"attachments", NotesSection::all(), "", withContent({C::attachments}), list({"drop"})},
        {"untagged", NotesSection::all(), "", withContent({C::untagged}), list({"agent", "done", "cafe"})},
        {"all content members", NotesSection::all(), "", withContent({C::untagged, C::images}), list({"agent"})},
        {"today", NotesSection::all(), "", withPeriod(P::today), list({"ist"})},
        // 604,800 seconds ago exactly is out; one second less is in.
        {"week", NotesSection::all(), "", withPeriod(P::week), list({"ist", "agent", "cafe"})},
        {"month", NotesSection::all(), "", withPeriod(P::month), list({"ist", "hyph", "agent", "drop", "cafe"})},
        {"filter tags", NotesSection::all(), "", withTags(list({"#Work"})), list({"hyph"})},
    };
    const QList<Note> notes = corpus();
    for (const auto& c : cases) {
        const Search search = NoteFilter::parse(u(c.query));
        QStringList found;
        for (const Note& note : notes)
            if (NoteFilter::matches(note, c.section, search, c.filter, now)) found.append(note.id);
        EXPECT_EQ(found, c.expected) << c.name;
    }
}

TEST(NoteFilterMatches, TodayIsTheCalendarDayNotTwentyFourHours) {
    const QDateTime lateEvening(QDate(2026, 6, 15), QTime(23, 59));
    Note note = makeNote("n", "t", "b", 0);
    const NoteFilter today = withPeriod(NoteFilter::Period::today);
    note.modified = lateEvening.addSecs(-23 * 3600 - 58 * 60);  // 00:01 the same day
    EXPECT_TRUE(NoteFilter::matches(note, NotesSection::all(), {}, today, lateEvening));
    note.modified = lateEvening.addSecs(-24 * 3600 + 60);  // 00:00 the same day
    EXPECT_TRUE(NoteFilter::matches(note, NotesSection::all(), {}, today, lateEvening));
    note.modified = lateEvening.addSecs(-24 * 3600);  // 23:59 the day before
    EXPECT_FALSE(NoteFilter::matches(note, NotesSection::all(), {}, today, lateEvening));
}

TEST(NoteFactsCache, RecomputesOnlyWhenTheNoteChanges) {
    NoteFactsCache cache;
    Note note = makeNote("n", "Title", "first body", 0);
    const NoteFacts* before = &cache.facts(note);
    EXPECT_TRUE(before->haystack.contains("first"));
    EXPECT_EQ(&cache.facts(note), before);  // unchanged: the same entry, not a recomputation

    note.body = u("second body");
    EXPECT_TRUE(cache.facts(note).haystack.contains("second"));
    note.tags = list({"Fresh"});
    EXPECT_EQ(cache.facts(note).tagKeys, list({"fresh"}));
    note.origin = NoteOrigin::agent(u("A"), u("R"), u("Agent"));
    EXPECT_EQ(cache.facts(note).agentID, u("A"));

    cache.prune({});
    EXPECT_EQ(cache.size(), 0);
}

QStringList ids(const QList<Note>& notes) {
    QStringList result;
    for (const Note& note : notes) result.append(note.id);
    return result;
}

TEST(NoteFilterSorted, StableByEachKey) {
    Note a = makeNote("a", "banana", "", 50);
    Note b = makeNote("b", "Apple", "", 10);
    Note c = makeNote("c", "note 10", "", 30);
    Note d = makeNote("d", "note 2", "", 30);  // same edit time as c
    Note e = makeNote("e", "Banana", "", 5);   // same title as a but for case, edited later
    Note f = makeNote("f", "", "", 40);        // shows "Empty note"
    a.order = 3; b.order = -1; c.order = 0.5; d.order = 0.5; e.order = 2; f.order = 9;
    a.created = now.addDays(-1); b.created = now.addDays(-3); c.created = now.addDays(-2);
    d.created = now.addDays(-2); e.created = now.addDays(-9); f.created = now.addDays(-4);
    const QList<Note> notes{a, b, c, d, e, f};

    struct Case {
        NoteFilter::Sort sort;
        QStringList expected;
    } cases[] = {
        {NoteFilter::Sort::edited, list({"e", "b", "c", "d", "f", "a"})},
        {NoteFilter::Sort::created, list({"a", "c", "d", "b", "f", "e"})},
        {NoteFilter::Sort::shelf, list({"b", "c", "d", "e", "a", "f"})},
        {NoteFilter::Sort::title, list({"b", "e", "a", "f", "d", "c"})},
    };
    for (const auto& row : cases) EXPECT_EQ(ids(NoteFilter::sorted(notes, row.sort)), row.expected) << int(row.sort);
    EXPECT_TRUE(NoteFilter::sorted({}, NoteFilter::Sort::title).isEmpty());
}

}  // namespace
