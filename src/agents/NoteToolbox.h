#pragma once

#include "agents/AgentToolCall.h"
#include "agents/AgentToolOutcome.h"
#include "agents/AgentToolDefinition.h"
#include "agents/AgentUndo.h"
#include "agents/NoteAccess.h"

#include <QDateTime>
#include <QPointer>
#include <QStringList>
#include <functional>
#include <optional>
#include <qcoro/qcorotask.h>

namespace vuro {

class NoteStore;
struct Note;

// How an agent reads and changes the user's notes during one run: the tool list for the model
// and the run function behind it. Every answer is words for the model in the user's language;
// a refusal or a bad argument is an output, never an exception. Each change comes back as an
// AgentAction whose AgentUndo can put it back while the note is still as the tool left it.
// Made anew for each run; main thread. The store must outlive the toolbox.
class NoteToolbox {
public:
    enum class UndoResult { done, noteChanged };

    NoteToolbox(NoteStore& store, NoteAccess access, int outputLimit, std::function<QDateTime()> now, QString memory,
                bool turkish);

    // Called with the new memory after remember changed it.
    std::function<void(const QString&)> onMemoryChange;
    // Corrects one note's text; none leaves fix_notes without a proofreader.
    std::function<QCoro::Task<QString>(QString)> proofread;
    // Picks tags for a note from the tags in use; none makes tag_notes ask for tags.
    std::function<QCoro::Task<QStringList>(Note, QStringList)> suggestTags;
    int proofreadCalls = 16;

    // The tools of a run for an agent with this access. On the on-device route tag_notes and
    // move_notes are offered only when the request speaks of tags or folders, and the two
    // line-editing tools not at all.
    static QList<AgentToolDefinition> tools(NoteAccess access, bool onDevice, const QString& request, bool turkish);

    // The outcome of a call, or none when the name isn't a note tool.
    QCoro::Task<std::optional<AgentToolOutcome>> run(AgentToolCall call);

    // Puts a note back when it is still exactly as the tool left it.
    static UndoResult undo(const AgentUndo& undo, NoteStore& store);

    const QString& memory() const { return _memory; }

    // Readable form of a body for a model: image tokens as "[image]", file tokens as "📎 name".
    static QString readable(const QString& body, bool turkish);

private:
    QString tr(const char* english, const char* turkish) const;
    QString cut(const QString& output) const;
    QList<Note> shelf() const;
    QString notesReference() const;
    QString shownTitle(const Note& note) const;
    std::optional<Note> find(const QString& title) const;
    QString notFound(const QString& title) const;
    AgentAction action(const QString& tool, const QString& summary, const std::optional<QString>& noteID,
                       std::optional<AgentUndo> undo) const;

    AgentToolOutcome listNotes() const;
    AgentToolOutcome searchNotes(const QString& query) const;
    AgentToolOutcome readNote(const QString& title) const;
    AgentToolOutcome listTasks(const QString& when) const;
    AgentToolOutcome addTask(const QString& task, const QString& note);
    AgentToolOutcome createNote(const QString& title, const QString& body);
    AgentToolOutcome appendToNote(const QString& note, const QString& text);
    AgentToolOutcome completeTask(const QString& task);
    AgentToolOutcome archiveNotes(const QString& notes);
    AgentToolOutcome moveNotes(const QString& notes, const QString& folder);
    AgentToolOutcome removeLines(const QString& note, const QString& lines);
    AgentToolOutcome replaceLine(const QString& note, const QString& line, const QString& text);
    AgentToolOutcome remember(const QString& fact);
    QCoro::Task<AgentToolOutcome> fixNotes(QString notes);
    QCoro::Task<AgentToolOutcome> tagNotes(QString notes, QString tags, QString remove);

    QPointer<NoteStore> _store;
    NoteAccess _access;
    int _outputLimit;
    std::function<QDateTime()> _now;
    QString _memory;
    bool _turkish;
};

}  // namespace vuro
