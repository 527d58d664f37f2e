#include "inbox/AwayDigest.h"

#include "base/Text.h"
#include "notes/TaskLine.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <algorithm>

namespace vuro {

namespace {

QString translate(const char* text, int n = -1) { return QCoreApplication::translate("AwayDigest", text, nullptr, n); }

AwayDigest::Group makeGroup(const QString& sourceID, const QList<Note>& arrivals,
                            const QHash<QString, DropSource>& sources) {
    AwayDigest::Group group;
    group.sourceID = sourceID;
    for (auto note = arrivals.crbegin(); note != arrivals.crend(); ++note) {
        group.notes.append(*note);
        if (const auto* person = std::get_if<NoteOrigin::FromDrop>(&note->origin.value))
            if (!person->senderName.isEmpty() && !group.senders.contains(person->senderName))
                group.senders.append(person->senderName);
        for (const TaskLine& task : TaskLine::all(note->body))
            if (!task.isDone) ++group.openTasks;
    }
    const auto source = sources.constFind(sourceID);
    if (source != sources.cend() && !source->name.isEmpty()) group.sourceName = source->name;
    else if (!group.senders.isEmpty()) group.sourceName = group.senders.first();
    return group;
}

}  // namespace

QString AwayDigest::sourceID(const Note& note) {
    if (const auto* agent = std::get_if<NoteOrigin::FromAgent>(&note.origin.value))
        return QStringLiteral("agent.") + agent->agentID;
    if (const auto* drop = std::get_if<NoteOrigin::FromDrop>(&note.origin.value)) return drop->channelID;
    return {};
}

AwayDigest AwayDigest::make(const QList<Note>& notes, const QHash<QString, DropSource>& sources) {
    QStringList order;  // sources by first arrival
    QHash<QString, QList<Note>> bySource;
    for (const Note& note : notes) {
        const QString id = sourceID(note);
        if (!bySource.contains(id)) order.append(id);
        bySource[id].append(note);
    }
    AwayDigest digest;
    for (const QString& id : order) digest.groups.append(makeGroup(id, bySource.value(id), sources));
    std::stable_sort(digest.groups.begin(), digest.groups.end(), [](const Group& a, const Group& b) {
        return a.notes.first().created > b.notes.first().created;
    });
    return digest;
}

int AwayDigest::noteCount() const {
    int count = 0;
    for (const Group& group : groups) count += int(group.notes.size());
    return count;
}

int AwayDigest::openTaskCount() const {
    int count = 0;
    for (const Group& group : groups) count += group.openTasks;
    return count;
}

QString AwayDigest::title() { return translate("While you were away"); }

QString AwayDigest::countsLine() const {
    const int notes = noteCount();
    QString line = groups.size() == 1 ? translate("%n notes", notes)
                                      : translate("%n notes from %1 agents", notes).arg(groups.size());
    if (const int tasks = openTaskCount(); tasks > 0) line += QLatin1Char(' ') + translate("%n new tasks", tasks);
    return line;
}

QString AwayDigest::line(const Note& note) {
    // Heading marks, then list bullets with an optional checkbox, numbered items and task glyphs.
    static const QRegularExpression marks(
        QStringLiteral("^(?:#{1,6}\\s*)?(?:(?:[-*+]|\\d+[.)])(?:\\s+|$))?(?:\\[[ xX]\\](?:\\s+|$))?[☐☑]?\\s*"));
    for (const QString& raw : note.body.split(QLatin1Char('\n'))) {
        QString text = Text::trimmed(raw);
        text.remove(marks);
        text = Text::trimmed(text);
        if (!text.isEmpty()) return Text::cut(text, 160);
    }
    return translate("Empty note");
}

}  // namespace vuro
