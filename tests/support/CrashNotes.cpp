#include "support/CrashNotes.h"

namespace vuro::test {

Note crashNote(const QString& id, int version) {
    Note note;
    note.id = id;
    note.title = id;
    const QString unit = QStringLiteral("%1 v%2 ").arg(id).arg(version);
    note.body = unit.repeated(1 + int(qHash(unit) % 400));
    note.created = note.modified = QDateTime::fromMSecsSinceEpoch(1'700'000'000'000 + version, Qt::UTC);
    note.order = version;
    return note;
}

int crashNoteVersion(const Note& note) {
    const QString unit = note.body.section(QLatin1Char(' '), 0, 1);  // "<id> v<version>"
    bool ok = false;
    const int version = unit.section(QStringLiteral(" v"), 1).toInt(&ok);
    if (!ok || crashNote(note.id, version) != note) return -1;
    return version;
}

}  // namespace vuro::test
