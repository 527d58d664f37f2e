#pragma once

#include "base/Calendar.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringView>
#include <optional>

namespace vuro {

// One task line of a note body: "- [ ] text" (also "*" or "+", "x" or "X" for done) or
// "☐ text" / "☑ text". Tasks are not records of their own: these functions read and rewrite
// lines of a body in place, keeping everything they don't own (bullet, indent, carriage return).
// Pure functions; any thread. Lines that don't parse are left as they are, never an error.
struct TaskLine {
    enum class Style { markdown, glyph };

    int lineIndex = 0;  // zero-based, in the body split at "\n"
    QString indent;     // leading blanks and tabs
    QString text;       // trimmed, date mark included
    bool isDone = false;
    Style style = Style::markdown;

    struct Progress {
        int done = 0;
        int total = 0;
        bool operator==(const Progress&) const = default;
    };

    // The Markdown form first, then the glyph form; anything else is no task. lineIndex is 0.
    static std::optional<TaskLine> parse(QStringView line);
    static QList<TaskLine> all(const QString& body);
    static Progress progress(const QString& body);

    // Rebuilds line, which parsed as task, with the given state and text.
    static QString rewrite(QStringView line, const TaskLine& task, bool done, const QString& text);

    // The body with one task line changed; the body as it was when index is out of range, the
    // line is no task any more, or nothing would change.
    static QString setDone(bool done, int index, const QString& body);
    static QString setText(const QString& text, int index, bool done, const QString& body);

    // Writes a date mark into each open task line of newBody that isn't in oldBody and names a
    // date in words ("- [ ] call Ann tomorrow" → "- [ ] call Ann 📅 2026-05-02"). Lines that were
    // already there are never rewritten, so a phrase the user left in on purpose stays.
    static QString applyDueDates(const QString& newBody, const std::optional<QString>& oldBody, const QDateTime& now,
                                 const Calendar& calendar = {});

    bool operator==(const TaskLine&) const = default;
};

}  // namespace vuro
