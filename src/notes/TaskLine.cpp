#include "notes/TaskLine.h"

#include "notes/DueDateParser.h"

#include <QSet>

namespace vuro {

namespace {

constexpr char16_t openGlyph = u'\u2610';  // ☐
constexpr char16_t doneGlyph = u'\u2611';  // ☑

bool isBlank(QChar c) { return c == u' ' || c == u'\t'; }

qsizetype skipBlanks(QStringView line, qsizetype at) {
    while (at < line.size() && isBlank(line[at])) ++at;
    return at;
}

// "[\t ]*[-*+][\t ]+\[([ xX])\](?:[\t ]+(.*))?" over the whole line, without its one
// trailing carriage return.
std::optional<TaskLine> parseMarkdown(QStringView line) {
    if (line.endsWith(u'\r')) line.chop(1);
    const qsizetype bullet = skipBlanks(line, 0);
    if (bullet >= line.size()) return std::nullopt;
    const QChar b = line[bullet];
    if (b != u'-' && b != u'*' && b != u'+') return std::nullopt;
    const qsizetype box = skipBlanks(line, bullet + 1);
    if (box == bullet + 1 || box + 3 > line.size()) return std::nullopt;
    if (line[box] != u'[' || line[box + 2] != u']') return std::nullopt;
    const QChar mark = line[box + 1];
    if (mark != u' ' && mark != u'x' && mark != u'X') return std::nullopt;
    const qsizetype after = box + 3;
    QStringView rest;
    if (after < line.size()) {
        if (!isBlank(line[after])) return std::nullopt;
        rest = line.mid(after);
        // "." stops at a line feed, and "$" matches only before a final one.
        const qsizetype feed = rest.indexOf(u'\n');
        if (feed >= 0) {
            if (feed != rest.size() - 1) return std::nullopt;
            rest.chop(1);
        }
    }
    TaskLine task;
    task.indent = line.left(bullet).toString();
    task.text = rest.trimmed().toString();
    task.isDone = mark != u' ';
    task.style = TaskLine::Style::markdown;
    return task;
}

std::optional<TaskLine> parseGlyph(QStringView line) {
    const qsizetype at = skipBlanks(line, 0);
    if (at >= line.size()) return std::nullopt;
    const QChar glyph = line[at];
    if (glyph != openGlyph && glyph != doneGlyph) return std::nullopt;
    TaskLine task;
    task.indent = line.left(at).toString();
    task.text = line.mid(at + 1).trimmed().toString();
    task.isDone = glyph == doneGlyph;
    task.style = TaskLine::Style::glyph;
    return task;
}

// Applies change to line index of body when it is a task; the body as it was otherwise.
template <typename Change>
QString changeLine(const QString& body, int index, Change change) {
    if (index < 0) return body;
    // Walk to the line without splitting the whole body: toggles happen in long notes too.
    qsizetype start = 0;
    for (int i = 0; i < index; ++i) {
        start = body.indexOf(u'\n', start);
        if (start < 0) return body;
        ++start;
    }
    qsizetype end = body.indexOf(u'\n', start);
    if (end < 0) end = body.size();
    const QStringView line = QStringView(body).mid(start, end - start);
    const auto task = TaskLine::parse(line);
    if (!task) return body;
    const std::optional<QString> replaced = change(line, *task);
    if (!replaced || *replaced == line) return body;
    QString result = body;
    result.replace(start, end - start, *replaced);
    return result;
}

}  // namespace

std::optional<TaskLine> TaskLine::parse(QStringView line) {
    if (auto task = parseMarkdown(line)) return task;
    return parseGlyph(line);
}

QList<TaskLine> TaskLine::all(const QString& body) {
    QList<TaskLine> tasks;
    int index = 0;
    for (const QStringView line : QStringView(body).split(u'\n')) {
        if (auto task = parse(line)) {
            task->lineIndex = index;
            tasks.append(std::move(*task));
        }
        ++index;
    }
    return tasks;
}

TaskLine::Progress TaskLine::progress(const QString& body) {
    Progress progress;
    for (const TaskLine& task : all(body)) {
        ++progress.total;
        if (task.isDone) ++progress.done;
    }
    return progress;
}

QString TaskLine::rewrite(QStringView line, const TaskLine& task, bool done, const QString& text) {
    QString result = task.indent;
    if (task.style == Style::markdown) {
        const qsizetype bullet = skipBlanks(line, 0);
        result += bullet < line.size() ? line[bullet] : QChar(u'-');
        result += done ? u" [x]" : u" [ ]";
    } else {
        result += QChar(done ? doneGlyph : openGlyph);
    }
    if (!text.isEmpty()) {
        result += u' ';
        result += text;
    }
    if (line.endsWith(u'\r')) result += u'\r';
    return result;
}

QString TaskLine::setDone(bool done, int index, const QString& body) {
    return changeLine(body, index, [done](QStringView line, const TaskLine& task) -> std::optional<QString> {
        if (task.isDone == done) return std::nullopt;
        return rewrite(line, task, done, task.text);
    });
}

QString TaskLine::setText(const QString& text, int index, bool done, const QString& body) {
    return changeLine(body, index, [&text, done](QStringView line, const TaskLine& task) -> std::optional<QString> {
        return rewrite(line, task, done, text);
    });
}

QString TaskLine::applyDueDates(const QString& newBody, const std::optional<QString>& oldBody, const QDateTime& now,
                                const Calendar& calendar) {
    if (!newBody.contains(u"[ ]") && !newBody.contains(QChar(openGlyph))) return newBody;
    QSet<QStringView> oldLines;
    if (oldBody)
        for (const QStringView line : QStringView(*oldBody).split(u'\n')) oldLines.insert(line);
    QString body = newBody;
    const QList<QStringView> lines = QStringView(newBody).split(u'\n');
    for (int index = 0; index < lines.size(); ++index) {
        const QStringView line = lines[index];
        if (oldLines.contains(line)) continue;
        const auto task = parse(line);
        if (!task || task->isDone || task->text.isEmpty() || task->text.contains(u"\U0001F4C5")) continue;
        const auto found = DueDateParser::find(task->text, now, calendar);
        if (!found) continue;
        const QString text = found->due.appending(found->remainder(task->text));
        if (text != task->text) body = setText(text, index, false, body);
    }
    return body;
}

}  // namespace vuro
