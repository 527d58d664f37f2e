#include "commands/CommandExecutor.h"

#include "agents/NoteTitleMatch.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "notes/DueDateParser.h"
#include "notes/NoteStore.h"
#include "notes/TaskLine.h"

namespace vuro {
namespace {

struct Words {
    bool turkish;
    QString cannotTell() const {
        return turkish ? QStringLiteral("Neyin ekleneceğini anlayamadım.") : QStringLiteral("I couldn't tell what to add.");
    }
    QString added(const QString& text, const QString& note) const {
        return turkish ? QStringLiteral("“%1”, %2 notuna eklendi.").arg(text, note)
                       : QStringLiteral("Added “%1” to %2.").arg(text, note);
    }
    QString createdWith(const QString& note, const QString& text) const {
        return turkish ? QStringLiteral("%1 oluşturuldu: “%2”.").arg(note, text)
                       : QStringLiteral("Created %1 with “%2”.").arg(note, text);
    }
    QString appended(const QString& note) const {
        return turkish ? QStringLiteral("%1 notuna eklendi.").arg(note) : QStringLiteral("Added to %1.").arg(note);
    }
    QString created(const QString& note) const {
        return turkish ? QStringLiteral("%1 oluşturuldu.").arg(note) : QStringLiteral("Created %1.").arg(note);
    }
    QString createdNew(const QString& note) const {
        return (turkish ? QStringLiteral("Yeni not oluşturuldu: ") : QStringLiteral("Created a new note: ")) + note;
    }
    QString noTask(const QString& text) const {
        return turkish ? QStringLiteral("“%1” gibi açık bir görev bulamadım.").arg(text)
                       : QStringLiteral("I couldn't find an open task like “%1”.").arg(text);
    }
    QString completed(const QString& task) const {
        return turkish ? QStringLiteral("“%1” tamamlandı olarak işaretlendi.").arg(task)
                       : QStringLiteral("Marked “%1” as done.").arg(task);
    }
};

// The text of a task line: date words become a mark; a phrase that is the whole text stays.
struct BuiltTask {
    QString text;
    std::optional<TaskDue> due;
};

BuiltTask buildTask(const QString& text, const std::optional<TaskDue>& given, const QDateTime& now) {
    if (text.contains(QStringLiteral("📅"))) {
        const auto parsed = TaskDue::parse(text);
        return {text, parsed ? std::optional(parsed->due) : given};
    }
    if (const auto found = DueDateParser::find(text, now)) return {found->due.appending(found->remainder(text)), found->due};
    if (given) return {given->appending(text), given};
    return {text, std::nullopt};
}

QString withoutTrailingNewlines(QString body) {
    while (body.endsWith(QLatin1Char('\n')) || body.endsWith(QLatin1Char('\r'))) body.chop(1);
    return body;
}

QString appendedLine(const QString& body, const QString& line) {
    const QString kept = withoutTrailingNewlines(body);
    return kept.isEmpty() ? line : kept + QLatin1Char('\n') + line;
}

CommandExecutor::Outcome addTaskTo(const std::optional<Note>& note, const QString& name, const BuiltTask& task,
                                   NoteStore& store, const Words& words) {
    const QString line = QStringLiteral("- [ ] ") + task.text;
    if (note) {
        store.setBody(note->id, appendedLine(note->body, line));
        return {words.added(task.text, note->displayTitle()), note->id,
                CommandExecutor::Undo{CommandExecutor::Undo::RestoreBody{note->id, note->body}}, task.due};
    }
    const Note created = store.create(name, line);
    return {words.createdWith(created.displayTitle(), task.text), created.id,
            CommandExecutor::Undo{CommandExecutor::Undo::DeleteNote{created.id}}, task.due};
}

CommandExecutor::Outcome createNote(const QString& title, const QString& text, NoteStore& store, const Words& words) {
    if (title.isEmpty() && text.isEmpty()) return {words.cannotTell(), {}, {}, {}};
    const Note created = store.create(title, text);
    return {words.createdNew(created.displayTitle()), created.id,
            CommandExecutor::Undo{CommandExecutor::Undo::DeleteNote{created.id}}, {}};
}

CommandExecutor::Outcome completeTask(const QString& text, NoteStore& store, const Words& words) {
    const auto parsed = TaskDue::parse(text);
    const QStringList wanted = NoteTitleMatch::words(parsed ? parsed->text : text);
    double bestScore = 0;
    std::optional<Note> bestNote;
    std::optional<TaskLine> bestTask;
    for (const Note& note : store.notes()) {
        if (note.archived) continue;
        for (const TaskLine& task : TaskLine::all(note.body)) {
            if (task.isDone) continue;
            const auto taskParsed = TaskDue::parse(task.text);
            const double score =
                NoteTitleMatch::coverage(wanted, NoteTitleMatch::words(taskParsed ? taskParsed->text : task.text));
            if (score > 0 && score >= bestScore) {
                bestScore = score;
                bestNote = note;
                bestTask = task;
            }
        }
    }
    if (!bestTask) return {words.noTask(text), {}, {}, {}};
    store.setBody(bestNote->id, TaskLine::setDone(true, bestTask->lineIndex, bestNote->body), false);
    const auto taskParsed = TaskDue::parse(bestTask->text);
    return {words.completed(taskParsed ? taskParsed->text : bestTask->text), bestNote->id,
            CommandExecutor::Undo{CommandExecutor::Undo::RestoreBody{bestNote->id, bestNote->body}}, {}};
}

}  // namespace

QString CommandExecutor::defaultListTitle(bool turkish) {
    return turkish ? QStringLiteral("Yapılacaklar") : QStringLiteral("To-dos");
}

CommandExecutor::Outcome CommandExecutor::execute(const CommandIntent& intent, NoteStore& store, bool turkish,
                                                  const QDateTime& now) {
    const Words words{turkish};
    const QString text = Text::trimmed(intent.text);
    const QString hint = Text::trimmed(intent.noteHint);
    const QDateTime moment = now.isValid() ? now : Clock::now();
    const auto findNote = [&store](const QString& title) { return NoteTitleMatch::find(title, store.visibleNotes()); };
    switch (intent.action) {
    case CommandIntent::Action::addTask: {
        if (text.isEmpty()) return {words.cannotTell(), {}, {}, {}};
        const QString name = hint.isEmpty() ? defaultListTitle(turkish) : hint;
        return addTaskTo(findNote(name), name, buildTask(text, intent.due, moment), store, words);
    }
    case CommandIntent::Action::appendToNote: {
        if (text.isEmpty()) return {words.cannotTell(), {}, {}, {}};
        if (hint.isEmpty()) return createNote({}, text, store, words);
        if (const auto note = findNote(hint)) return appendTo(*note, text, store, turkish, moment);
        const Note created = store.create(hint, text);
        return {words.created(created.displayTitle()), created.id, Undo{Undo::DeleteNote{created.id}}, {}};
    }
    case CommandIntent::Action::createNote:
        return createNote(Text::trimmed(intent.title), text, store, words);
    case CommandIntent::Action::completeTask:
        if (text.isEmpty()) return {words.cannotTell(), {}, {}, {}};
        return completeTask(text, store, words);
    case CommandIntent::Action::unknown:
        break;
    }
    return {words.cannotTell(), {}, {}, {}};
}

CommandExecutor::Outcome CommandExecutor::appendTo(const Note& note, const QString& text, NoteStore& store,
                                                   bool turkish, const QDateTime& now) {
    const Words words{turkish};
    const QString line = Text::trimmed(text);
    if (line.isEmpty()) return {words.cannotTell(), {}, {}, {}};
    if (!TaskLine::all(note.body).isEmpty())  // a list stays a list
        return addTaskTo(note, note.displayTitle(), buildTask(line, std::nullopt, now.isValid() ? now : Clock::now()),
                         store, words);
    store.setBody(note.id, appendedLine(note.body, line));
    return {words.appended(note.displayTitle()), note.id, Undo{Undo::RestoreBody{note.id, note.body}}, {}};
}

bool CommandExecutor::undo(const Undo& undo, NoteStore& store) {
    if (const auto* restore = std::get_if<Undo::RestoreBody>(&undo.value)) {
        if (!store.note(restore->noteID)) return false;
        store.setBody(restore->noteID, restore->body, false);
        return true;
    }
    const auto& remove = std::get<Undo::DeleteNote>(undo.value);
    if (!store.note(remove.noteID)) return false;
    store.remove(remove.noteID);
    return true;
}

}  // namespace vuro
