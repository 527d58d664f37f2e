#pragma once

#include "base/Async.h"
#include "commands/CommandExecutor.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <variant>

namespace vuro {

class AIProvider;
class NoteStore;
struct GeneratedCommand;

// The state behind the one-line "Tell Vuro" bar: the sentence being typed, and what became of
// the last one sent. A sent sentence goes to the assistant provider with the titles of the
// notes, comes back as one command and is carried out on the notes at once. Sending again drops
// the answer still awaited; a finished command can be undone once. Failures of the provider are
// shown as its sentence and change nothing. Main thread.
class CommandBarModel : public QObject {
    Q_OBJECT
public:
    struct Idle {};
    struct Thinking {};
    struct Done {
        CommandExecutor::Outcome outcome;
    };
    struct Failed {
        QString text;
    };
    using Phase = std::variant<Idle, Thinking, Done, Failed>;

    // The provider and the store must outlive the model.
    CommandBarModel(NoteStore& store, const AIProvider& provider, bool turkish, QObject* parent = nullptr);
    ~CommandBarModel() override;

    const QString& text() const { return _text; }
    void setText(const QString& text);
    const Phase& phase() const { return _phase; }
    // Done with something to put back that hasn't been put back yet.
    bool canUndo() const;
    bool undone() const { return _undone; }

    // Sends the current text; blank text does nothing.
    void send();
    // Drops the answer still awaited and goes back to idle.
    void cancel();
    // Puts back what the last command changed; false when there is nothing (left) to undo.
    bool undo();

    // What the provider is told about the task, and the request that carries the sentence.
    static QString systemText(bool turkish);
    static QString request(const QStringList& noteTitles, const QString& sentence, bool turkish);
    // The titles the model may choose from, at most maxTitles of the notes not archived.
    QStringList noteTitles() const;
    static constexpr int maxTitles = 100;

Q_SIGNALS:
    void textChanged();
    void phaseChanged();

private:
    static QCoro::Task<> run(QPointer<CommandBarModel> self, CancelToken token, QCoro::Task<GeneratedCommand> command);
    void finish(const GeneratedCommand& command);
    void setPhase(Phase phase);

    QString _text;
    Phase _phase = Idle{};
    bool _undone = false;
    NoteStore& _store;
    const AIProvider& _provider;
    bool _turkish;
    CancelToken _task;
};

}  // namespace vuro
