#include "editor/EditorStyleEngine.h"

#include "editor/EditorEditAccumulator.h"

#include <QRegularExpression>
#include <QUrl>

namespace vuro {

namespace {

QRegularExpression lines(const char* pattern) {
    QRegularExpression expression(QString::fromUtf8(pattern), QRegularExpression::MultilineOption);
    expression.optimize();
    return expression;
}

struct Patterns {
    QRegularExpression heading = lines("^(#{1,6}[ \\t]+)(.*)$");
    QRegularExpression link = lines("\\[([^\\]\\n]+)\\]\\(([^)\\s]+)\\)");
    QRegularExpression bold = lines("(\\*\\*|__)(?=\\S)(.+?)\\1");
    QRegularExpression italic = lines("(?<![\\*_])([\\*_])(?=[^\\*_\\s])(.+?)(?<=[^\\*_])\\1(?![\\*_])");
    QRegularExpression code = lines("`([^`\\n]+)`");
    QRegularExpression strike = lines("~~(?=\\S)(.+?)~~");
    QRegularExpression quote = lines("^(>[ \\t]?)(.*)$");
    QRegularExpression bullet = lines("^[ \\t]*([-*+])[ \\t]+");
    QRegularExpression imageToken = lines("!\\[image(?:\\|([0-9]+(?:\\.[0-9]+)?))?\\]\\(vuro-img://([A-Za-z0-9-]+)\\)");
    QRegularExpression fileToken = lines("\\[([^\\]\\n]*)\\]\\(vuro-file://([A-Za-z0-9-]{1,64})\\)");
};

const Patterns& patterns() {
    static const Patterns shared;
    return shared;
}

class Builder {
public:
    Builder(EditorStyling& out, qsizetype base, const EditorRange& caretLine, qsizetype caret, bool reveals)
        : _out(out), _base(base), _caretLine(caretLine), _caret(caret), _reveals(reveals) {}

    EditorRange absolute(qsizetype start, qsizetype length) const { return {_base + start, length}; }

    void span(qsizetype start, qsizetype length, EditorSpanRole role, int level = 0, const QString& url = {}) {
        if (length > 0) _out.spans.append({absolute(start, length), role, level, url});
    }

    void mark(qsizetype start, qsizetype length, EditorMarkerKind kind) {
        if (length <= 0) return;
        const EditorRange range = absolute(start, length);
        const bool nearCaret = range.intersects(_caretLine) || (_caret >= range.location && _caret <= range.end());
        const bool hidden = !(_reveals && nearCaret);
        _out.marks.append({range, kind, hidden});
        if (hidden) _out.hidden.append(range);
    }

    void hide(qsizetype start, qsizetype length) {
        if (length > 0) _out.hidden.append(absolute(start, length));
    }

private:
    EditorStyling& _out;
    qsizetype _base;
    EditorRange _caretLine;
    qsizetype _caret;
    bool _reveals;
};

template <typename Apply>
void each(const QRegularExpression& expression, const QString& text, Apply apply) {
    auto matches = expression.globalMatch(text);
    while (matches.hasNext()) apply(matches.next());
}

void styleTokens(const QString& text, Builder& out) {
    if (!text.contains(QLatin1String("vuro-img://")) && !text.contains(QLatin1String("vuro-file://"))) return;
    QList<EditorRange> tokens;
    for (const auto* expression : {&patterns().imageToken, &patterns().fileToken})
        each(*expression, text, [&](const QRegularExpressionMatch& m) {
            tokens.append({m.capturedStart(0), m.capturedLength(0)});
        });
    for (const EditorRange& token : EditorEditAccumulator::normalize(tokens, text.size())) {
        out.span(token.location, token.length, EditorSpanRole::embed);
        out.span(token.location, 1, EditorSpanRole::embedHead);
        out.hide(token.location + 1, token.length - 1);
    }
}

void stylePatterns(const QString& text, Builder& out) {
    const Patterns& p = patterns();
    using K = EditorMarkerKind;
    each(p.heading, text, [&](const QRegularExpressionMatch& m) {
        const int level = static_cast<int>(m.captured(1).count(QLatin1Char('#')));
        out.span(m.capturedStart(0), m.capturedLength(0), EditorSpanRole::heading, level);
        out.mark(m.capturedStart(1), m.capturedLength(1), K::block);
    });
    each(p.link, text, [&](const QRegularExpressionMatch& m) {
        const QString url = m.captured(2);
        out.span(m.capturedStart(1), m.capturedLength(1), EditorSpanRole::link, 0,
                 EditorStyleEngine::isAllowedLink(url) ? url : QString());
        out.mark(m.capturedStart(0), 1, K::inlineMark);
        out.mark(m.capturedEnd(1), m.capturedEnd(0) - m.capturedEnd(1), K::inlineMark);
    });
    const auto enclosed = [&](const QRegularExpression& expression, EditorSpanRole role, qsizetype markLength) {
        each(expression, text, [&](const QRegularExpressionMatch& m) {
            out.span(m.capturedStart(0), m.capturedLength(0), role);
            out.mark(m.capturedStart(0), markLength, K::inlineMark);
            out.mark(m.capturedEnd(0) - markLength, markLength, K::inlineMark);
        });
    };
    enclosed(p.bold, EditorSpanRole::bold, 2);
    enclosed(p.italic, EditorSpanRole::italic, 1);
    enclosed(p.code, EditorSpanRole::code, 1);
    enclosed(p.strike, EditorSpanRole::strikethrough, 2);
    each(p.quote, text, [&](const QRegularExpressionMatch& m) {
        out.span(m.capturedStart(2), m.capturedLength(2), EditorSpanRole::quote);
        out.mark(m.capturedStart(1), m.capturedLength(1), K::block);
    });
    each(p.bullet, text, [&](const QRegularExpressionMatch& m) {
        out.span(m.capturedStart(1), m.capturedLength(1), EditorSpanRole::bullet);
    });
}

bool mayHoldMarkdown(const QString& text) {
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '*': case '_': case '`': case '~': case '#': case '>': case '-': case '+': case '[': return true;
        default: break;
        }
    }
    return false;
}

}  // namespace

bool EditorStyleEngine::isAllowedLink(const QString& url) {
    const QString scheme = QUrl(url).scheme().toLower();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https") || scheme == QLatin1String("mailto");
}

EditorStyling EditorStyleEngine::style(const QString& text, qsizetype base, const EditorRange& caretLine,
                                       qsizetype caretOffset, bool revealsMarks) {
    EditorStyling result;
    Builder out(result, base, caretLine, caretOffset, revealsMarks);
    styleTokens(text, out);
    if (mayHoldMarkdown(text)) stylePatterns(text, out);
    result.hidden = EditorEditAccumulator::normalize(result.hidden, base + text.size());
    return result;
}

}  // namespace vuro
