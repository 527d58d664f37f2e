#include "inbox/AwaySummarizer.h"

#include "base/Error.h"
#include "base/Log.h"
#include "base/Text.h"

#include <QPointer>

namespace vuro {

AwaySummarizer::AwaySummarizer(std::shared_ptr<AwaySummaryProvider> provider, std::function<bool()> isEnabled,
                               bool turkish, QObject* parent)
    : QObject(parent), _provider(std::move(provider)), _isEnabled(std::move(isEnabled)), _turkish(turkish) {}

QString AwaySummarizer::fingerprint(const AwayDigest::Group& group) {
    QStringList parts;
    for (const Note& note : group.notes)
        parts.append(note.id + QLatin1Char('@') + QString::number(note.modified.toMSecsSinceEpoch()));
    return parts.join(QLatin1Char(','));
}

QString AwaySummarizer::instruction(bool turkish) {
    return turkish ? QStringLiteral("Bir mesajlaşma uygulamasının özet asistanısın. Verilen mesajları tek kısa Türkçe "
                                    "cümlede özetle. Kişi adlarını koru, yorum ekleme, yalnızca özeti yaz.")
                   : QStringLiteral("You summarize messages for a messaging app. Summarize the given messages in one "
                                    "short sentence. Keep people's names, add no commentary, write only the summary.");
}

QString AwaySummarizer::input(const AwayDigest::Group& group) {
    QStringList lines;
    for (auto note = group.notes.crbegin(); note != group.notes.crend(); ++note) {
        const QString text = Text::cut(Text::trimmed(note->body), 1000);
        const auto* person = std::get_if<NoteOrigin::FromDrop>(&note->origin.value);
        const QString sender = person ? person->senderName : group.sourceName;
        lines.append(sender.isEmpty() ? text : sender + QStringLiteral(": ") + text);
    }
    return lines.join(QStringLiteral("\n\n"));
}

std::optional<AwaySummarizer::State> AwaySummarizer::state(const QString& groupKey) const {
    const auto found = _states.constFind(groupKey);
    if (found == _states.cend()) return std::nullopt;
    return *found;
}

void AwaySummarizer::summarize(const AwayDigest::Group& group) {
    if (!_provider || !_isEnabled || !_isEnabled() || group.notes.isEmpty()) return;
    const QString groupKey = key(group);
    const QString print = fingerprint(group);
    if (const auto current = state(groupKey); current && current->kind != State::Kind::failed &&
                                              current->fingerprint == print)
        return;
    const quint64 request = _nextRequest++;
    _tasks.insert(groupKey, request);
    _states.insert(groupKey, State{State::Kind::working, print, {}});
    Q_EMIT statesChanged();
    run(QPointer<AwaySummarizer>(this), _provider, groupKey, request, instruction(_turkish), input(group));
}

void AwaySummarizer::cancelAll() {
    _tasks.clear();
    // A summary cut short is no summary: working states go, finished ones stay.
    const qsizetype removed = _states.removeIf([](const auto& item) { return item.value().kind == State::Kind::working; });
    if (removed > 0) Q_EMIT statesChanged();
}

QCoro::Task<> AwaySummarizer::run(QPointer<AwaySummarizer> self, std::shared_ptr<AwaySummaryProvider> provider,
                                  QString key, quint64 request, QString instruction, QString input) {
    std::optional<QString> summary;
    try {
        const QString answer = Text::trimmed(co_await provider->respond(instruction, input));
        if (!answer.isEmpty()) summary = answer;
    } catch (const Error& error) {
        log(QStringLiteral("away summary failed — ") + error.message());
    } catch (const std::exception& error) {
        log(QStringLiteral("away summary failed — ") + QString::fromUtf8(error.what()));
    } catch (...) {
        log(QStringLiteral("away summary failed"));
    }
    if (self) self->finish(key, request, summary);
}

void AwaySummarizer::finish(const QString& key, quint64 request, std::optional<QString> summary) {
    if (_tasks.value(key) != request) return;  // cancelled or superseded
    _tasks.remove(key);
    State& state = _states[key];
    state.kind = summary ? State::Kind::done : State::Kind::failed;
    state.summary = summary.value_or(QString());
    Q_EMIT statesChanged();
}

}  // namespace vuro
