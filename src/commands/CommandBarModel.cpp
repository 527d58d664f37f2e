#include "commands/CommandBarModel.h"

#include "base/Clock.h"
#include "base/Error.h"
#include "base/Text.h"
#include "models/AIProvider.h"
#include "notes/NoteStore.h"

namespace vuro {

CommandBarModel::CommandBarModel(NoteStore& store, const AIProvider& provider, bool turkish, QObject* parent)
    : QObject(parent), _store(store), _provider(provider), _turkish(turkish) {}

CommandBarModel::~CommandBarModel() { _task.cancel(); }

void CommandBarModel::setText(const QString& text) {
    if (text == _text) return;
    _text = text;
    Q_EMIT textChanged();
}

bool CommandBarModel::canUndo() const {
    const auto* done = std::get_if<Done>(&_phase);
    return done && done->outcome.undo && !_undone;
}

QString CommandBarModel::systemText(bool turkish) {
    if (turkish)
        return QStringLiteral(
            "Bir not uygulamasının asistanısın. Kullanıcının tek satırlık isteğini yapılandırılmış bir eyleme çevir.\n"
            "addTask: yapılacak bir şey ekle. appendToNote: var olan bir nota düz bilgi ekle. createNote: yeni bir not "
            "başlat. completeTask: bir şeyi yapıldı olarak işaretle.\n"
            "Kullanıcı bir nottan ya da listeden söz ederse adını noteHint alanına yaz; mümkünse verilen not adlarından "
            "birini seç.\n"
            "Görevi ya da içeriği text alanına kullanıcının kendi sözleriyle, tarih ve saat sözcüklerini koruyarak yaz; "
            "noteHint'i text içinde tekrarlama.");
    return QStringLiteral(
        "You are the assistant of a notes app. Turn the user's one-line request into a structured action.\n"
        "addTask: add something to do. appendToNote: add plain information to an existing note. createNote: start a "
        "new note. completeTask: mark something as done.\n"
        "If the user mentions a note or list, put its name in noteHint, choosing one of the given note names when "
        "possible.\n"
        "Put the task or content in text using the user's own words and keeping date and time words; do not repeat "
        "noteHint in text.");
}

QString CommandBarModel::request(const QStringList& noteTitles, const QString& sentence, bool turkish) {
    const QString notes = turkish ? QStringLiteral("Notlar: ") : QStringLiteral("Notes: ");
    const QString ask = turkish ? QStringLiteral("İstek: ") : QStringLiteral("Request: ");
    return notes + noteTitles.join(QStringLiteral("; ")) + QLatin1Char('\n') + ask + sentence;
}

QStringList CommandBarModel::noteTitles() const {
    QStringList titles;
    for (const Note& note : _store.visibleNotes()) {
        if (titles.size() == maxTitles) break;
        const QString title = note.displayTitle();
        if (!title.isEmpty() && !titles.contains(title)) titles.append(title);
    }
    return titles;
}

void CommandBarModel::send() {
    const QString sentence = Text::trimmed(_text);
    if (sentence.isEmpty()) return;
    _task.cancel();
    _task = CancelToken();
    _undone = false;
    // Carrying out a command on a store that can't save would report a change that never lands.
    if (!_store.isWritable()) {
        setPhase(Failed{_store.lastError().value_or(tr("Your notes can't be changed right now."))});
        return;
    }
    if (const AIAvailability availability = _provider.availability(); !availability.isAvailable()) {
        setPhase(Failed{*availability.problem});
        return;
    }
    setPhase(Thinking{});
    run(QPointer(this), _task, _provider.generateCommand(systemText(_turkish), request(noteTitles(), sentence, _turkish)));
}

void CommandBarModel::cancel() {
    _task.cancel();
    if (std::holds_alternative<Thinking>(_phase)) setPhase(Idle{});
}

bool CommandBarModel::undo() {
    if (!canUndo()) return false;
    const CommandExecutor::Undo record = *std::get<Done>(_phase).outcome.undo;
    const bool undid = CommandExecutor::undo(record, _store);
    _undone = true;
    Q_EMIT phaseChanged();
    return undid;
}

QCoro::Task<> CommandBarModel::run(QPointer<CommandBarModel> self, CancelToken token, QCoro::Task<GeneratedCommand> command) {
    std::optional<GeneratedCommand> generated;
    QString failure;
    try {
        generated = co_await std::move(command);
    } catch (const Error& error) {
        failure = error.message();
    } catch (...) {
        failure = tr("The assistant couldn't carry out this request.");
    }
    if (!stillWanted(self, token)) co_return;
    if (generated)
        self->finish(*generated);
    else
        self->setPhase(Failed{failure});
}

void CommandBarModel::finish(const GeneratedCommand& command) {
    const CommandIntent intent{CommandIntent::actionFromRaw(command.action), command.noteHint, command.text, command.title,
                               std::nullopt};
    setPhase(Done{CommandExecutor::execute(intent, _store, _turkish, Clock::now())});
}

void CommandBarModel::setPhase(Phase phase) {
    _phase = std::move(phase);
    Q_EMIT phaseChanged();
}

}  // namespace vuro
