#include "agents/NoteToolbox.h"

#include "agents/Agent.h"
#include "agents/NoteTitleMatch.h"
#include "agents/NoteTools.h"
#include "base/Ids.h"
#include "base/Text.h"
#include "commands/CommandExecutor.h"
#include "library/NoteFilter.h"
#include "library/NotesSection.h"
#include "notes/NoteStore.h"
#include "notes/NoteTokens.h"
#include "notes/TaskDue.h"
#include "notes/TaskLine.h"

#include <QRegularExpression>
#include <QSet>

namespace vuro {
namespace {

constexpr int quotedLineLimit = 359;
constexpr int archiveLimit = 10;

// Leading list, task, heading and quote marks of a line, and its trailing date mark.
const QRegularExpression& leadingMarks() {
    static const QRegularExpression pattern(
        QStringLiteral("^[ \\t]*(?:(?:#{1,6}|>|[-*+•]|\\d{1,3}[.)]|\\[[ xX]\\]|☐|☑)[ \\t]+)+"));
    return pattern;
}
const QRegularExpression& trailingDate() {
    static const QRegularExpression pattern(QStringLiteral("\\s*📅\\s*\\d{4}-\\d{2}-\\d{2}(?:\\s+\\d{1,2}:\\d{2})?\\s*$"));
    return pattern;
}

// A line split into its marks and its words, so that words can change while marks stay.
struct MarkedLine {
    QString prefix;
    QString content;
    QString suffix;
};

MarkedLine marked(const QString& line) {
    MarkedLine result;
    QString rest = line;
    if (const auto match = leadingMarks().match(rest); match.hasMatch()) {
        result.prefix = match.captured(0);
        rest = rest.mid(match.capturedLength(0));
    }
    if (const auto match = trailingDate().match(rest); match.hasMatch()) {
        result.suffix = match.captured(0);
        rest = rest.left(match.capturedStart(0));
    }
    result.content = rest;
    return result;
}

QString stripped(const QString& text) { return Text::trimmed(marked(Text::trimmed(text)).content); }

QString quoted(const QString& text) { return QStringLiteral("“") + Text::cut(text, quotedLineLimit) + QStringLiteral("”"); }

QString quotedList(const QStringList& items) {
    QStringList out;
    for (const QString& item : items) out.append(quoted(item));
    return out.join(QStringLiteral(", "));
}

QStringList splitNames(const QString& text) {
    QStringList names;
    for (const QString& piece : text.split(QLatin1Char(';'))) {
        const QString name = Text::trimmed(piece);
        if (!name.isEmpty()) names.append(name);
    }
    return names;
}

QStringList splitTags(const QString& text) {
    QStringList tags;
    for (const QString& piece : text.split(QLatin1Char(','))) {
        const QString tag = Note::normalizedTag(piece);
        if (!tag.isEmpty() && !tags.contains(tag)) tags.append(tag);
    }
    return tags;
}

// Where a piece stands in a note's lines: the line it equals, else the one line it is part of.
struct LineHit {
    int count = 0;     // lines that hold the piece
    int index = -1;    // the line, when exactly one
    bool whole = false;  // the piece is the whole content of that line
};

LineHit locate(const QStringList& lines, const QString& piece) {
    const QString wanted = stripped(piece);
    LineHit exact;
    LineHit partial;
    if (wanted.isEmpty()) return {};
    for (int i = 0; i < lines.size(); ++i) {
        const QString content = stripped(lines[i]);
        if (content.isEmpty()) continue;
        if (content == wanted) {
            ++exact.count;
            exact.index = i;
        } else if (content.contains(wanted)) {
            ++partial.count;
            partial.index = i;
        }
    }
    if (exact.count > 0) return {exact.count, exact.count == 1 ? exact.index : -1, true};
    return {partial.count, partial.count == 1 ? partial.index : -1, false};
}

// The line with one sentence taken out, blanks tidied; empty when no words are left.
QString withoutSentence(const QString& line, const QString& sentence) {
    MarkedLine parts = marked(line);
    QString content = parts.content;
    const QString words = stripped(sentence);
    content.remove(content.indexOf(words), words.size());
    content.replace(QRegularExpression(QStringLiteral("[ \\t]{2,}")), QStringLiteral(" "));
    content = Text::trimmed(content);
    if (content.isEmpty() || content == QLatin1String(".")) return {};
    return parts.prefix + content + parts.suffix;
}

bool speaksOfTags(const QString& request) {
    const QString folded = Text::fold(request);
    for (const char* word : {"etiket", "etiquet", "label", "タグ", "标签", "標籤"})
        if (folded.contains(QString::fromUtf8(word))) return true;
    if (request.contains(QLatin1Char('#'))) return true;
    for (const QString& word : folded.split(QRegularExpression(QStringLiteral("[^\\p{L}\\p{N}]+")), Qt::SkipEmptyParts))
        if (word.startsWith(QLatin1String("tag"))) return true;
    return false;
}

bool speaksOfFolders(const QString& request) {
    const QString folded = Text::fold(request);
    for (const char* word : {"klasor", "folder", "ordner", "dossier", "carpeta", "フォルダ", "文件夹", "資料夾"})
        if (folded.contains(QString::fromUtf8(word))) return true;
    return false;
}

std::optional<AgentUndo> undoOf(const CommandExecutor::Outcome& outcome, const NoteStore& store) {
    if (!outcome.undo || !outcome.noteID) return std::nullopt;
    const auto note = store.note(*outcome.noteID);
    const QString after = note ? note->body : QString();
    if (const auto* restore = std::get_if<CommandExecutor::Undo::RestoreBody>(&outcome.undo->value))
        return AgentUndo{AgentUndo::RestoreBody{restore->noteID, restore->body, after}};
    return AgentUndo{AgentUndo::DeleteNote{*outcome.noteID, after}};
}

}  // namespace

NoteToolbox::NoteToolbox(NoteStore& store, NoteAccess access, int outputLimit, std::function<QDateTime()> now,
                         QString memory, bool turkish)
    : _store(&store), _access(access), _outputLimit(outputLimit), _now(std::move(now)), _memory(std::move(memory)),
      _turkish(turkish) {}

QList<AgentToolDefinition> NoteToolbox::tools(NoteAccess access, bool onDevice, const QString& request, bool turkish) {
    QStringList names;
    if (access != NoteAccess::none)
        names << QStringLiteral("list_notes") << QStringLiteral("search_notes") << QStringLiteral("read_note")
              << QStringLiteral("list_tasks");
    if (access == NoteAccess::readWrite) {
        names << QStringLiteral("add_task") << QStringLiteral("create_note") << QStringLiteral("append_to_note")
              << QStringLiteral("fix_notes") << QStringLiteral("archive_notes") << QStringLiteral("complete_task");
        if (!onDevice || speaksOfTags(request)) names << QStringLiteral("tag_notes");
        if (!onDevice || speaksOfFolders(request)) names << QStringLiteral("move_notes");
        if (!onDevice) names << QStringLiteral("remove_lines") << QStringLiteral("replace_line");
    }
    names << QStringLiteral("remember");
    QList<AgentToolDefinition> result;
    for (const QString& name : names) result.append(*NoteTools::spec(name, turkish));
    return result;
}

QString NoteToolbox::tr(const char* english, const char* turkish) const {
    return QString::fromUtf8(_turkish ? turkish : english);
}

QString NoteToolbox::cut(const QString& output) const {
    if (Text::characterCount(output) <= _outputLimit) return output;
    return Text::leftCharacters(output, _outputLimit) + tr("\n…(truncated)", "\n…(kırpıldı)");
}

QList<Note> NoteToolbox::shelf() const { return _store ? _store->visibleNotes() : QList<Note>{}; }

QString NoteToolbox::shownTitle(const Note& note) const { return note.displayTitle(); }

QString NoteToolbox::notesReference() const {
    QStringList titles;
    for (const Note& note : shelf()) {
        if (titles.size() == 12) break;
        titles.append(shownTitle(note));
    }
    return titles.join(QStringLiteral("; "));
}

std::optional<Note> NoteToolbox::find(const QString& title) const { return NoteTitleMatch::find(title, shelf()); }

QString NoteToolbox::notFound(const QString& title) const {
    return tr("No note called “%1”. Notes: %2", "“%1” adlı not yok. Notlar: %2")
        .arg(Text::cut(title, quotedLineLimit), notesReference());
}

AgentAction NoteToolbox::action(const QString& tool, const QString& summary, const std::optional<QString>& noteID,
                                std::optional<AgentUndo> undo) const {
    return AgentAction{newId(), tool, summary, noteID, std::move(undo), false};
}

QString NoteToolbox::readable(const QString& body, bool turkish) {
    QString text = body;
    const auto images = NoteTokens::imageTokens(text);
    for (auto it = images.crbegin(); it != images.crend(); ++it)
        text.replace(it->start, it->length, turkish ? QStringLiteral("[resim]") : QStringLiteral("[image]"));
    const auto files = NoteTokens::fileTokens(text);
    for (auto it = files.crbegin(); it != files.crend(); ++it)
        text.replace(it->start, it->length, QStringLiteral("📎 ") + it->name);
    return text;
}

QCoro::Task<std::optional<AgentToolOutcome>> NoteToolbox::run(AgentToolCall call) {
    const auto found = NoteTools::spec(call.name, _turkish);
    if (!found) co_return AgentToolOutcome{QStringLiteral("Unknown tool: ") + call.name, std::nullopt, {}};
    if (found->writes && _access != NoteAccess::readWrite)
        co_return AgentToolOutcome{tr("Not allowed: you can't change the user's notes.",
                                      "İzin yok: kullanıcının notlarını değiştiremezsin."),
                                   std::nullopt,
                                   {}};
    static const QSet<QString> readers = {QStringLiteral("list_notes"), QStringLiteral("search_notes"),
                                          QStringLiteral("read_note"), QStringLiteral("list_tasks")};
    if (readers.contains(call.name) && _access == NoteAccess::none)
        co_return AgentToolOutcome{
            tr("Not allowed: you can't see the user's notes.", "İzin yok: kullanıcının notlarını göremezsin."),
            std::nullopt,
            {}};
    if (!_store) co_return std::nullopt;
    for (auto it = call.arguments.begin(); it != call.arguments.end(); ++it) it.value() = Text::trimmed(it.value());
    const auto arg = [&call](const char* key) { return call.argument(QString::fromLatin1(key)); };
    const QString& name = call.name;
    if (name == QLatin1String("list_notes")) co_return listNotes();
    if (name == QLatin1String("search_notes")) co_return searchNotes(arg("query"));
    if (name == QLatin1String("read_note")) co_return readNote(arg("note"));
    if (name == QLatin1String("list_tasks")) co_return listTasks(arg("when"));
    if (name == QLatin1String("add_task")) co_return addTask(arg("task"), arg("note"));
    if (name == QLatin1String("create_note")) co_return createNote(arg("title"), arg("body"));
    if (name == QLatin1String("append_to_note")) co_return appendToNote(arg("note"), arg("text"));
    if (name == QLatin1String("fix_notes")) co_return co_await fixNotes(arg("notes"));
    if (name == QLatin1String("archive_notes")) co_return archiveNotes(arg("notes"));
    if (name == QLatin1String("complete_task")) co_return completeTask(arg("task"));
    if (name == QLatin1String("tag_notes")) co_return co_await tagNotes(arg("notes"), arg("tags"), arg("remove"));
    if (name == QLatin1String("move_notes")) co_return moveNotes(arg("notes"), arg("folder"));
    if (name == QLatin1String("remove_lines")) co_return removeLines(arg("note"), arg("lines"));
    if (name == QLatin1String("replace_line")) co_return replaceLine(arg("note"), arg("line"), arg("text"));
    co_return remember(arg("fact"));
}

AgentToolOutcome NoteToolbox::listNotes() const {
    const QList<Note> notes = shelf();
    if (notes.isEmpty())
        return {tr("The Shelf is empty: the user has no notes yet.", "Raf boş: kullanıcının henüz notu yok."), {}, {}};
    QString out = tr("%1 notes on the Shelf:\n", "Raf'ta %1 not var:\n").arg(notes.size());
    QStringList lines;
    for (const Note& note : notes.mid(0, 15)) {
        QString line = QStringLiteral("• “") + shownTitle(note) + QStringLiteral("”");
        QStringList rest = readable(note.body, _turkish).split(QLatin1Char('\n'));
        if (!rest.isEmpty()) rest.removeFirst();
        QStringList pieces;
        for (const QString& piece : rest)
            if (!Text::trimmed(piece).isEmpty()) pieces.append(Text::trimmed(piece));
        const QString preview = Text::leftCharacters(pieces.join(QLatin1Char(' ')), 70);
        if (!preview.isEmpty()) line += QStringLiteral(" — ") + preview;
        int open = 0;
        for (const TaskLine& task : TaskLine::all(note.body))
            if (!task.isDone) ++open;
        if (open > 0) line += tr(" (%1 open tasks)", " (%1 açık görev)").arg(open);
        for (const QString& tag : note.tags) line += QStringLiteral(" #") + tag;
        lines.append(line);
    }
    out += lines.join(QLatin1Char('\n'));
    if (!_store->folders().isEmpty()) {
        QStringList folders;
        for (const NoteFolder& folder : _store->folders()) folders.append(QStringLiteral("“") + folder.name + QStringLiteral("”"));
        out += tr("\nFolders: ", "\nKlasörler: ") + folders.join(QStringLiteral(", "));
    }
    if (notes.size() > 15) out += tr("\n… and %1 more.", "\n… %1 not daha.").arg(notes.size() - 15);
    return {cut(out), {}, {}};
}

AgentToolOutcome NoteToolbox::searchNotes(const QString& query) const {
    const QList<Note> notes = shelf();
    const QDateTime now = _now();
    const auto search = [&](const QString& text) {
        QList<Note> hits;
        const NoteFilter::Search parsed = NoteFilter::parse(text);
        for (const Note& note : notes)
            if (NoteFilter::matches(note, NotesSection::all(), parsed, NoteFilter{}, now)) hits.append(note);
        return hits;
    };
    QList<Note> hits = search(query);
    const QStringList words = query.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (hits.isEmpty() && words.size() >= 2) {
        QSet<QString> seen;
        for (const QString& word : words)
            for (const Note& note : search(word))
                if (!seen.contains(note.id)) {
                    seen.insert(note.id);
                    hits.append(note);
                }
    }
    if (hits.isEmpty()) {
        QString out = tr("No notes match “%1”.", "“%1” geçen not yok.").arg(Text::cut(query, quotedLineLimit));
        out += notes.isEmpty() ? tr(" The Shelf is empty.", " Raf boş.")
                               : tr(" Notes on the Shelf: %1", " Raf'taki notlar: %1").arg(notesReference());
        return {cut(out), {}, {}};
    }
    QStringList lines;
    for (const Note& note : hits) {
        QString snippet = Text::leftCharacters(readable(note.body, _turkish), 90);
        snippet.replace(QLatin1Char('\n'), QLatin1Char(' '));
        lines.append(QStringLiteral("“") + shownTitle(note) + QStringLiteral("” — ") + snippet);
    }
    return {cut(lines.join(QLatin1Char('\n'))), {}, {}};
}

AgentToolOutcome NoteToolbox::readNote(const QString& title) const {
    const auto note = find(title);
    if (!note) return {cut(notFound(title)), {}, {}};
    QString out = QStringLiteral("# ") + shownTitle(*note) + QLatin1Char('\n');
    if (!note->tags.isEmpty()) {
        QStringList tags;
        for (const QString& tag : note->tags) tags.append(QStringLiteral("#") + tag);
        out += tags.join(QLatin1Char(' ')) + QLatin1Char('\n');
    }
    const auto files = NoteTokens::fileTokens(note->body);
    if (!files.isEmpty()) {
        QStringList names;
        for (const FileToken& file : files) names.append(file.name);
        out += tr("Files: ", "Dosyalar: ") + names.join(QStringLiteral(", ")) + QStringLiteral("\n\n");
    }
    out += readable(note->body, _turkish);
    return {cut(out), {}, {}};
}

AgentToolOutcome NoteToolbox::listTasks(const QString& when) const {
    const QDateTime now = _now();
    QStringList lines;
    for (const Note& note : shelf()) {
        for (const TaskLine& task : TaskLine::all(note.body)) {
            if (task.isDone) continue;
            const auto parsed = TaskDue::parse(task.text);
            std::optional<qint64> days;
            bool overdue = false;
            if (parsed) {
                days = parsed->due.daysFromToday(now);
                overdue = parsed->due.hour ? (parsed->due.date().isValid() && parsed->due.date() < now)
                                           : (days && *days < 0);
            }
            bool wanted = true;
            if (when == QLatin1String("today")) wanted = overdue || (days && *days <= 0);
            else if (when == QLatin1String("overdue")) wanted = overdue;
            else if (when == QLatin1String("upcoming")) wanted = !overdue && days && *days >= 0 && *days <= 7;
            if (!wanted) continue;
            QString line = QStringLiteral("- [ ] ") + (parsed ? parsed->text : task.text) + QStringLiteral(" (") +
                           shownTitle(note) + QLatin1Char(')');
            if (parsed) line += QLatin1Char(' ') + parsed->due.mark();
            lines.append(line);
        }
    }
    if (lines.isEmpty()) return {tr("No tasks.", "Görev yok."), {}, {}};
    return {cut(lines.join(QLatin1Char('\n'))), {}, {}};
}

AgentToolOutcome NoteToolbox::addTask(const QString& task, const QString& note) {
    if (!note.isEmpty() && NoteTitleMatch::words(note).isEmpty())
        return {tr("Say which note to add to.", "Hangi nota ekleneceğini söyle."), {}, {}};
    CommandIntent intent;
    intent.action = CommandIntent::Action::addTask;
    intent.text = task;
    intent.noteHint = note;
    const auto outcome = CommandExecutor::execute(intent, *_store, _turkish, _now());
    if (!outcome.undo) return {outcome.message, {}, {}};
    return {outcome.message, action(QStringLiteral("add_task"), outcome.message, outcome.noteID, undoOf(outcome, *_store)),
            {}};
}

AgentToolOutcome NoteToolbox::createNote(const QString& title, const QString& body) {
    if (const auto existing = NoteTitleMatch::same(title, shelf())) {
        if (body.isEmpty())
            return {tr("A note called “%1” already exists; use add_task to add to it.",
                       "“%1” adlı bir not zaten var; eklemek için add_task kullan.")
                        .arg(shownTitle(*existing)),
                    {},
                    {}};
        AgentToolOutcome appended = appendToNote(shownTitle(*existing), body);
        appended.output += tr(" (The note already existed, so this was added to it.)",
                              " (Not zaten vardı, bu yüzden ona eklendi.)");
        if (appended.action) appended.action->tool = QStringLiteral("create_note");
        return appended;
    }
    CommandIntent intent;
    intent.action = CommandIntent::Action::createNote;
    intent.title = title;
    intent.text = body;
    const auto outcome = CommandExecutor::execute(intent, *_store, _turkish, _now());
    if (!outcome.undo) return {outcome.message, {}, {}};
    return {outcome.message,
            action(QStringLiteral("create_note"), outcome.message, outcome.noteID, undoOf(outcome, *_store)),
            {}};
}

AgentToolOutcome NoteToolbox::appendToNote(const QString& noteTitle, const QString& text) {
    if (noteTitle.isEmpty()) return {tr("Say which note to add to.", "Hangi nota ekleneceğini söyle."), {}, {}};
    const auto note = find(noteTitle);
    if (!note) return {cut(notFound(noteTitle)), {}, {}};
    QStringList lines;
    for (const QString& line : text.split(QLatin1Char('\n')))
        if (!Text::trimmed(line).isEmpty()) lines.append(Text::trimmed(line));
    if (lines.isEmpty()) return {tr("Give the text to add.", "Eklenecek metni ver."), {}, {}};
    const QString before = note->body;
    CommandExecutor::Outcome outcome;
    for (const QString& line : lines) outcome = CommandExecutor::appendTo(*_store->note(note->id), line, *_store, _turkish, _now());
    const QString after = _store->note(note->id)->body;
    if (after == before) return {outcome.message, {}, {}};
    const QString title = shownTitle(*note);
    const QString summary = lines.size() == 1 ? tr("Added a line to %1", "%1 notuna bir satır eklendi").arg(title)
                                              : tr("Added %1 lines to %2", "%2 notuna %1 satır eklendi").arg(lines.size()).arg(title);
    const QString output = lines.size() == 1 ? outcome.message : summary + QLatin1Char('.');
    return {output, action(QStringLiteral("append_to_note"), summary, note->id, AgentUndo{AgentUndo::RestoreBody{note->id, before, after}}),
            {}};
}

AgentToolOutcome NoteToolbox::completeTask(const QString& task) {
    CommandIntent intent;
    intent.action = CommandIntent::Action::completeTask;
    intent.text = task;
    const auto outcome = CommandExecutor::execute(intent, *_store, _turkish, _now());
    if (!outcome.undo) return {outcome.message, {}, {}};
    return {outcome.message,
            action(QStringLiteral("complete_task"), outcome.message, outcome.noteID, undoOf(outcome, *_store)),
            {}};
}

AgentToolOutcome NoteToolbox::archiveNotes(const QString& notes) {
    const QStringList names = splitNames(notes);
    if (names.isEmpty())
        return {cut(tr("Name the notes to archive. Notes: %1", "Arşive kaldırılacak notları adlarıyla söyle. Notlar: %1")
                        .arg(notesReference())),
                {},
                {}};
    QStringList archived, skipped, missing;
    QList<AgentAction> actions;
    for (int i = 0; i < names.size(); ++i) {
        if (i >= archiveLimit) {
            skipped.append(names[i]);
            continue;
        }
        const auto note = find(names[i]);
        if (!note) {
            missing.append(names[i]);
            continue;
        }
        _store->setArchived(note->id, true);
        const QString title = shownTitle(*note);
        archived.append(title);
        actions.append(action(QStringLiteral("archive_notes"),
                              tr("Moved to the Archive: %1", "Arşive kaldırıldı: %1").arg(title), note->id,
                              AgentUndo{AgentUndo::UnarchiveNote{note->id}}));
    }
    QStringList sentences;
    if (!archived.isEmpty())
        sentences.append(tr("Moved to the Archive: %1. The user can bring them back from the Archive.",
                            "Arşive kaldırıldı: %1. Kullanıcı Arşiv'den geri getirebilir.")
                             .arg(quotedList(archived)));
    if (!skipped.isEmpty())
        sentences.append(tr("Not archived (at most 10 at once): %1.", "Arşive kaldırılmadı (bir seferde en çok 10): %1.")
                             .arg(quotedList(skipped)));
    if (!missing.isEmpty())
        sentences.append(tr("No such note: %1. Notes: %2", "Böyle bir not yok: %1. Notlar: %2")
                             .arg(quotedList(missing), notesReference()));
    AgentToolOutcome outcome{cut(sentences.join(QLatin1Char(' '))), {}, {}};
    if (!actions.isEmpty()) {
        outcome.action = actions.takeFirst();
        outcome.moreActions = actions;
    }
    return outcome;
}

AgentToolOutcome NoteToolbox::moveNotes(const QString& notes, const QString& folderName) {
    const QStringList names = splitNames(notes);
    if (names.isEmpty())
        return {cut(tr("Name the notes to move. Notes: %1", "Taşınacak notları adlarıyla söyle. Notlar: %1")
                        .arg(notesReference())),
                {},
                {}};
    std::optional<NoteFolder> folder;
    bool created = false;
    if (!folderName.isEmpty()) {
        const QString wanted = Text::fold(folderName);
        for (const NoteFolder& each : _store->folders())
            if (Text::fold(Text::trimmed(each.name)) == wanted) folder = each;
        if (!folder) {
            folder = _store->createFolder(folderName);
            if (!folder) return {tr("Could not create the folder.", "Klasör açılamadı."), {}, {}};
            created = true;
        }
    }
    QStringList moved, already, skipped, missing;
    QList<AgentAction> actions;
    for (int i = 0; i < names.size(); ++i) {
        if (i >= archiveLimit) {
            skipped.append(names[i]);
            continue;
        }
        const auto note = find(names[i]);
        if (!note) {
            missing.append(names[i]);
            continue;
        }
        const QString title = shownTitle(*note);
        const std::optional<QString> target = folder ? std::optional(folder->id) : std::nullopt;
        const std::optional<QString> current =
            note->folderID && _store->folder(*note->folderID) ? note->folderID : std::nullopt;
        if (current == target) {
            already.append(title);
            continue;
        }
        _store->setFolder(note->id, target);
        moved.append(title);
        const QString summary = folder ? tr("Moved %1 to the folder %2", "%1, %2 klasörüne taşındı").arg(title, folder->name)
                                       : tr("Took %1 out of its folder.", "%1 klasöründen çıkarıldı.").arg(title);
        actions.append(action(QStringLiteral("move_notes"), summary, note->id,
                              AgentUndo{AgentUndo::RestoreFolder{note->id, current, target}}));
    }
    QStringList sentences;
    if (created) sentences.append(tr("Created the folder “%1”.", "“%1” klasörü açıldı.").arg(folder->name));
    if (!moved.isEmpty()) {
        if (folder)
            sentences.append(tr("Moved to “%1”: %2. The user sees it in the Notes window.",
                                "“%1” klasörüne taşındı: %2. Kullanıcı Notlar penceresinde görür.")
                                 .arg(folder->name, quotedList(moved)));
        else
            sentences.append(tr("Taken out of their folder: %1.", "Klasöründen çıkarıldı: %1.").arg(quotedList(moved)));
    }
    if (!already.isEmpty()) sentences.append(tr("Already there: %1.", "Zaten orada: %1.").arg(quotedList(already)));
    if (!skipped.isEmpty())
        sentences.append(tr("Not moved (at most 10 at once): %1.", "Taşınmadı (bir seferde en çok 10): %1.")
                             .arg(quotedList(skipped)));
    if (!missing.isEmpty())
        sentences.append(tr("No such note: %1. Notes: %2", "Böyle bir not yok: %1. Notlar: %2")
                             .arg(quotedList(missing), notesReference()));
    AgentToolOutcome outcome{cut(sentences.join(QLatin1Char(' '))), {}, {}};
    if (!actions.isEmpty()) {
        outcome.action = actions.takeFirst();
        outcome.moreActions = actions;
    }
    return outcome;
}

AgentToolOutcome NoteToolbox::removeLines(const QString& noteTitle, const QString& linesText) {
    if (noteTitle.isEmpty())
        return {tr("Say which note to delete lines from.", "Hangi nottan silineceğini söyle."), {}, {}};
    if (linesText.isEmpty())
        return {tr("Give the lines to delete, copied from the note.", "Silinecek satırları nottan kopyalayarak ver."), {}, {}};
    const auto note = find(noteTitle);
    if (!note) return {cut(notFound(noteTitle)), {}, {}};
    const QString title = shownTitle(*note);
    QStringList pieces;
    for (const QString& piece : linesText.split(QRegularExpression(QStringLiteral("[\\n;]"))))
        if (!Text::trimmed(piece).isEmpty()) pieces.append(Text::trimmed(piece));

    QStringList lines = note->body.split(QLatin1Char('\n'));
    QList<bool> removed(lines.size(), false);
    QStringList deleted, missing, ambiguous;
    int wholeLines = 0;
    int sentences = 0;
    for (const QString& piece : pieces) {
        QStringList live;
        QList<int> liveIndex;
        for (int i = 0; i < lines.size(); ++i)
            if (!removed[i]) {
                live.append(lines[i]);
                liveIndex.append(i);
            }
        const LineHit hit = locate(live, piece);
        if (hit.count == 0) {
            missing.append(piece);
            continue;
        }
        if (hit.count > 1) {
            ambiguous.append(piece);
            continue;
        }
        const int index = liveIndex[hit.index];
        deleted.append(piece);
        if (hit.whole) {
            removed[index] = true;
            ++wholeLines;
            continue;
        }
        const QString rest = withoutSentence(lines[index], piece);
        if (rest.isEmpty()) {
            removed[index] = true;
            ++wholeLines;
        } else {
            lines[index] = rest;
            ++sentences;
        }
    }
    QStringList kept;
    for (int i = 0; i < lines.size(); ++i)
        if (!removed[i]) kept.append(lines[i]);
    const QString after = kept.join(QLatin1Char('\n'));
    if (!deleted.isEmpty() && Text::trimmed(after).isEmpty())
        return {tr("Not deleted: that would leave “%1” empty. To remove the whole note, archive it.",
                   "Silinmedi: “%1” boş kalırdı. Notun tamamını kaldırmak için arşivle.")
                    .arg(title),
                {},
                {}};
    if (deleted.isEmpty()) {
        QString out = tr("Nothing was deleted.", "Hiçbir şey silinmedi.");
        if (!missing.isEmpty()) out += tr(" Not in “%1”: %2.", " “%1” notunda yok: %2.").arg(title, quotedList(missing));
        if (!ambiguous.isEmpty())
            out += tr(" In several lines (quote the whole line): %1.",
                      " Birden çok satırda geçiyor (satırın tamamını ver): %1.")
                       .arg(quotedList(ambiguous));
        return {cut(out), {}, {}};
    }
    _store->setBody(note->id, after);
    QString out = tr("Deleted from “%1”: %2.", "“%1” notundan silindi: %2.").arg(title, quotedList(deleted));
    if (!missing.isEmpty()) out += tr(" Not found: %1.", " Bulunamadı: %1.").arg(quotedList(missing));
    if (!ambiguous.isEmpty())
        out += tr(" Not deleted, in several lines (quote the whole line): %1.",
                  " Silinmedi, birden çok satırda geçiyor (satırın tamamını ver): %1.")
                   .arg(quotedList(ambiguous));
    out += tr(" The note now:\n", " Notun şimdiki hali:\n") + readable(after, _turkish);
    QString summary;
    if (sentences > 0) summary = tr("Edited %1", "%1 düzenlendi").arg(title);
    else if (wholeLines == 1) summary = tr("Removed a line from %1", "%1 notundan bir satır silindi").arg(title);
    else summary = tr("Removed %1 lines from %2", "%2 notundan %1 satır silindi").arg(wholeLines).arg(title);
    return {cut(out),
            action(QStringLiteral("remove_lines"), summary, note->id,
                   AgentUndo{AgentUndo::RestoreBody{note->id, note->body, after}}),
            {}};
}

AgentToolOutcome NoteToolbox::replaceLine(const QString& noteTitle, const QString& line, const QString& text) {
    if (noteTitle.isEmpty()) return {tr("Say which note to change.", "Hangi notun değişeceğini söyle."), {}, {}};
    if (line.isEmpty())
        return {tr("Give the line to change, copied from the note.", "Değişecek satırı nottan kopyalayarak ver."), {}, {}};
    if (text.isEmpty())
        return {tr("Give the new text. To delete the line, use remove_lines.",
                   "Yeni metni ver. Satırı silmek için remove_lines kullan."),
                {},
                {}};
    const auto note = find(noteTitle);
    if (!note) return {cut(notFound(noteTitle)), {}, {}};
    const QString title = shownTitle(*note);
    QStringList lines = note->body.split(QLatin1Char('\n'));
    const LineHit hit = locate(lines, line);
    if (hit.count == 0)
        return {cut(tr("“%1” isn't in “%2”. The note:\n", "“%1” “%2” notunda yok. Not:\n")
                        .arg(Text::cut(line, quotedLineLimit), title) +
                    readable(note->body, _turkish)),
                {},
                {}};
    if (hit.count > 1)
        return {tr("“%1” matches %2 lines; quote the whole line.", "“%1” %2 satıra uyuyor; satırın tamamını ver.")
                    .arg(Text::cut(line, quotedLineLimit))
                    .arg(hit.count),
                {},
                {}};
    const MarkedLine parts = marked(lines[hit.index]);
    const QString newWords = stripped(text);
    const QString oldWords = stripped(line);
    // Only the words change: blanks around them and every other sentence of the line stay.
    QString content = parts.content;
    content.replace(content.indexOf(oldWords), oldWords.size(), newWords);
    const QString newLine = parts.prefix + content + parts.suffix;
    if (newLine == lines[hit.index] || newWords.isEmpty())
        return {tr("The line already says that.", "Satır zaten böyle."), {}, {}};
    lines[hit.index] = newLine;
    const QString after = lines.join(QLatin1Char('\n'));
    _store->setBody(note->id, after);
    const QString out = tr("Changed in “%1”: “%2” → “%3”. The note now:\n",
                           "“%1” notunda değişti: “%2” → “%3”. Notun şimdiki hali:\n")
                            .arg(title, Text::cut(oldWords, quotedLineLimit), Text::cut(newWords, quotedLineLimit)) +
                        readable(after, _turkish);
    return {cut(out),
            action(QStringLiteral("replace_line"), tr("Changed a line in %1", "%1 notunda bir satır değişti").arg(title),
                   note->id, AgentUndo{AgentUndo::RestoreBody{note->id, note->body, after}}),
            {}};
}

AgentToolOutcome NoteToolbox::remember(const QString& fact) {
    Agent scratch;
    scratch.memory = _memory;
    const QString before = _memory;
    if (!scratch.remember(fact)) return {tr("Already remembered.", "Bu zaten hafızanda."), {}, {}};
    _memory = scratch.memory;
    if (onMemoryChange) onMemoryChange(_memory);
    const QString line = Text::trimmed(fact).replace(QLatin1Char('\n'), QLatin1Char(' '));
    return {tr("Saved to memory.", "Hafızana kaydedildi."),
            action(QStringLiteral("remember"), tr("Remembered: %1", "Hatırlandı: %1").arg(line), std::nullopt,
                   AgentUndo{AgentUndo::RestoreMemory{QString(), before}}),
            {}};
}

QCoro::Task<AgentToolOutcome> NoteToolbox::fixNotes(QString notes) {
    if (!proofread)
        co_return AgentToolOutcome{tr("Proofreading isn't available right now.", "Düzeltme şu an kullanılamıyor."), {}, {}};
    QList<Note> targets;
    QStringList missing;
    const QStringList names = splitNames(notes);
    if (names.isEmpty()) targets = shelf();
    for (const QString& name : names) {
        if (const auto note = find(name)) targets.append(*note);
        else missing.append(name);
    }
    QStringList fixed, unchanged;
    QList<AgentAction> actions;
    for (const Note& target : targets) {
        if (proofreadCalls <= 0) break;
        --proofreadCalls;
        const QString corrected = co_await proofread(target.body);
        if (!_store) co_return AgentToolOutcome{};
        const auto now = _store->note(target.id);
        // The user may have typed while the model worked: their text wins.
        if (!now || now->body != target.body || corrected.isEmpty() || corrected == target.body) {
            unchanged.append(shownTitle(target));
            continue;
        }
        _store->setBody(target.id, corrected);
        fixed.append(shownTitle(target));
        actions.append(action(QStringLiteral("fix_notes"), tr("Fixed: %1", "Düzeltildi: %1").arg(shownTitle(target)),
                              target.id, AgentUndo{AgentUndo::RestoreBody{target.id, target.body, corrected}}));
    }
    QStringList sentences;
    if (!fixed.isEmpty()) sentences.append(tr("Fixed: %1.", "Düzeltildi: %1.").arg(quotedList(fixed)));
    if (!unchanged.isEmpty()) sentences.append(tr("Nothing to fix: %1.", "Düzeltilecek bir şey yok: %1.").arg(quotedList(unchanged)));
    if (!missing.isEmpty())
        sentences.append(tr("No such note: %1. Notes: %2", "Böyle bir not yok: %1. Notlar: %2")
                             .arg(quotedList(missing), notesReference()));
    AgentToolOutcome outcome{cut(sentences.join(QLatin1Char(' '))), {}, {}};
    if (!actions.isEmpty()) {
        outcome.action = actions.takeFirst();
        outcome.moreActions = actions;
    }
    co_return outcome;
}

QCoro::Task<AgentToolOutcome> NoteToolbox::tagNotes(QString notes, QString tags, QString remove) {
    const QStringList adding = splitTags(tags);
    const QStringList removing = splitTags(remove);
    const QStringList names = splitNames(notes);
    QList<Note> targets;
    QStringList missing, skipped;
    if (names.isEmpty()) {
        for (const Note& note : shelf()) {
            const bool wanted = removing.isEmpty() || adding.size() > 0
                                    ? note.tags.isEmpty()
                                    : std::any_of(removing.begin(), removing.end(),
                                                  [&note](const QString& tag) { return note.tags.contains(tag, Qt::CaseInsensitive); });
            if (wanted) targets.append(note);
        }
        if (targets.isEmpty()) {
            if (!removing.isEmpty() && adding.isEmpty())
                co_return AgentToolOutcome{tr("No note has those tags.", "Bu etiketlerde not yok."), {}, {}};
            co_return AgentToolOutcome{tr("Every note on the Shelf already has tags.", "Raf'taki notların hepsinin etiketi var."), {}, {}};
        }
    }
    if (adding.isEmpty() && removing.isEmpty() && !suggestTags)
        co_return AgentToolOutcome{tr("Give the tags to add.", "Eklenecek etiketleri söyle."), {}, {}};
    for (const QString& name : names) {
        if (const auto note = find(name)) targets.append(*note);
        else missing.append(name);
    }
    if (targets.isEmpty() && missing.isEmpty())
        co_return AgentToolOutcome{cut(tr("Name the notes to tag. Notes: %1", "Etiketlenecek notları adlarıyla söyle. Notlar: %1")
                                           .arg(notesReference())),
                                   {},
                                   {}};
    while (targets.size() > archiveLimit) skipped.append(shownTitle(targets.takeLast()));
    QStringList items, already, unpicked;
    QList<AgentAction> actions;
    const QStringList inUse = _store->allTags();
    for (const Note& target : targets) {
        QStringList add = adding;
        if (adding.isEmpty() && removing.isEmpty()) {
            QStringList picked;
            bool failed = false;
            try {
                picked = co_await suggestTags(target, inUse);
            } catch (...) {
                failed = true;
            }
            if (!_store) co_return AgentToolOutcome{};
            add = splitTags(picked.join(QLatin1Char(',')));
            if (failed || add.isEmpty()) {
                unpicked.append(shownTitle(target));
                continue;
            }
        }
        const auto current = _store->note(target.id);
        if (!current) continue;
        const QStringList before = current->tags;
        if (!add.isEmpty()) _store->addTags(target.id, add);
        if (!removing.isEmpty()) _store->removeTags(target.id, removing);
        const QStringList after = _store->note(target.id)->tags;
        const QString title = shownTitle(*current);
        if (after == before) {
            already.append(title);
            continue;
        }
        QStringList hashed;
        for (const QString& tag : after) hashed.append(QStringLiteral("#") + tag);
        items.append(title + QStringLiteral(": ") + (hashed.isEmpty() ? tr("no tags", "etiket yok") : hashed.join(QLatin1Char(' '))));
        QStringList summaries;
        QStringList gained, lost;
        for (const QString& tag : after)
            if (!before.contains(tag)) gained.append(QStringLiteral("#") + tag);
        for (const QString& tag : before)
            if (!after.contains(tag)) lost.append(QStringLiteral("#") + tag);
        if (!gained.isEmpty()) summaries.append(tr("Tagged %1: %2", "%1 etiketlendi: %2").arg(title, gained.join(QLatin1Char(' '))));
        if (!lost.isEmpty()) summaries.append(tr("Removed %1 from %2", "%2 notundan %1 kaldırıldı").arg(lost.join(QLatin1Char(' ')), title));
        actions.append(action(QStringLiteral("tag_notes"), summaries.join(QStringLiteral("; ")), target.id,
                              AgentUndo{AgentUndo::RestoreTags{target.id, before, after}}));
    }
    QStringList sentences;
    if (!items.isEmpty())
        sentences.append(tr("Tags now: %1. The user sees them in the Notes window.",
                            "Etiketler artık: %1. Kullanıcı Notlar penceresinde görür.")
                             .arg(items.join(QStringLiteral("; "))));
    if (!already.isEmpty()) sentences.append(tr("Already tagged that way: %1.", "Zaten böyle etiketli: %1.").arg(quotedList(already)));
    if (!unpicked.isEmpty()) sentences.append(tr("Could not pick tags for: %1.", "Etiket seçilemedi: %1.").arg(quotedList(unpicked)));
    if (!skipped.isEmpty())
        sentences.append(tr("Not tagged this time (at most 10 at once): %1.",
                            "Bu sefer etiketlenmedi (bir seferde en çok 10): %1.")
                             .arg(quotedList(skipped)));
    if (!missing.isEmpty())
        sentences.append(tr("No such note: %1. Notes: %2", "Böyle bir not yok: %1. Notlar: %2")
                             .arg(quotedList(missing), notesReference()));
    AgentToolOutcome outcome{cut(sentences.join(QLatin1Char(' '))), {}, {}};
    if (!actions.isEmpty()) {
        outcome.action = actions.takeFirst();
        outcome.moreActions = actions;
    }
    co_return outcome;
}

NoteToolbox::UndoResult NoteToolbox::undo(const AgentUndo& undo, NoteStore& store) {
    return std::visit(
        [&store](const auto& value) -> UndoResult {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, AgentUndo::RestoreBody>) {
                const auto note = store.note(value.noteID);
                if (!note || note->body != value.after) return UndoResult::noteChanged;
                store.setBody(value.noteID, value.before, false);
                return UndoResult::done;
            } else if constexpr (std::is_same_v<T, AgentUndo::DeleteNote>) {
                const auto note = store.note(value.noteID);
                if (!note || note->body != value.after) return UndoResult::noteChanged;
                store.remove(value.noteID);
                return UndoResult::done;
            } else if constexpr (std::is_same_v<T, AgentUndo::UnarchiveNote>) {
                const auto note = store.note(value.noteID);
                if (!note || !note->archived) return UndoResult::noteChanged;
                store.setArchived(value.noteID, false);
                return UndoResult::done;
            } else if constexpr (std::is_same_v<T, AgentUndo::RestoreTags>) {
                const auto note = store.note(value.noteID);
                if (!note || note->tags != value.after) return UndoResult::noteChanged;
                store.removeTags(value.noteID, note->tags);
                store.addTags(value.noteID, value.before);
                return UndoResult::done;
            } else if constexpr (std::is_same_v<T, AgentUndo::RestoreFolder>) {
                const auto note = store.note(value.noteID);
                if (!note) return UndoResult::noteChanged;
                const auto existing = [&store](const std::optional<QString>& id) -> std::optional<QString> {
                    return id && store.folder(*id) ? id : std::nullopt;
                };
                if (existing(note->folderID) != existing(value.after)) return UndoResult::noteChanged;
                store.setFolder(value.noteID, existing(value.before));
                return UndoResult::done;
            } else {
                return UndoResult::noteChanged;  // memory and jobs are put back by the agent center
            }
        },
        undo.value);
}

}  // namespace vuro
