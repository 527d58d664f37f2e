#pragma once

#include "editor/EditorRange.h"

#include <QList>
#include <QString>

namespace vuro {

// What a styled range asks of the view. Later spans add to earlier ones on the same characters.
enum class EditorSpanRole {
    heading,        // level 1…6: larger, semibold
    link,           // the visible text: underlined; url set when the scheme is allowed
    bold,
    italic,         // slanted
    code,           // monospaced, faint background
    strikethrough,
    quote,          // slanted a little less than italic
    bullet,         // the bullet character: ink at half strength
    embed,          // a whole image or file token: faint ink, drawn by the overlays as a chip
    embedHead,      // the token's first character: next to no width, where the chip is drawn
};

struct EditorSpan {
    EditorRange range;
    EditorSpanRole role;
    int level = 0;  // heading level
    QString url;    // link target

    bool operator==(const EditorSpan&) const = default;
};

enum class EditorMarkerKind { block, inlineMark };

// A Markdown mark. Hidden marks take no room and are not drawn; the characters stay in the
// text for the caret, the selection and copying. Every mark is drawn in the muted colour.
struct EditorMark {
    EditorRange range;
    EditorMarkerKind kind = EditorMarkerKind::inlineMark;
    bool hidden = true;

    bool operator==(const EditorMark&) const = default;
};

struct EditorStyling {
    QList<EditorSpan> spans;
    QList<EditorMark> marks;
    QList<EditorRange> hidden;  // hidden marks and token tails, sorted and merged
};

// Live Markdown styling of a piece of a note's text: headings, links, bold, italic, code,
// strikethrough, quotes, bullets, and image and file tokens. Pure and reentrant; the regular
// expressions are built once. Positions in the result are absolute: base + offset in text.
class EditorStyleEngine {
public:
    // caretLine is the caret's whole line, caretOffset the caret; with revealsMarks on, the
    // marks touching either stay visible.
    static EditorStyling style(const QString& text, qsizetype base, const EditorRange& caretLine,
                               qsizetype caretOffset, bool revealsMarks);

    static bool isAllowedLink(const QString& url);
};

}  // namespace vuro
