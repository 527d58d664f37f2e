#include "storage/DatabaseNotePersistence.h"

namespace vuro {

namespace {

// Agent notes keep their agent in the channel column behind this prefix; any other channel is a
// drop's.
const QString agentPrefix = QStringLiteral("agent.");

struct OriginColumns {
    std::optional<QString> channelID, dropID, senderName;
};

OriginColumns columnsOf(const NoteOrigin& origin) {
    if (const auto* drop = std::get_if<NoteOrigin::FromDrop>(&origin.value))
        return {drop->channelID, drop->dropID, drop->senderName};
    if (const auto* agent = std::get_if<NoteOrigin::FromAgent>(&origin.value))
        return {agentPrefix + agent->agentID, agent->runID, agent->agentName};
    return {};
}

NoteOrigin originOf(const OriginColumns& columns) {
    if (!columns.channelID) return NoteOrigin::local();
    const QString middle = columns.dropID.value_or(QString());
    const QString name = columns.senderName.value_or(QString());
    if (columns.channelID->startsWith(agentPrefix))
        return NoteOrigin::agent(columns.channelID->mid(agentPrefix.size()), middle, name);
    return NoteOrigin::drop(*columns.channelID, middle, name);
}

QStringList tagsOf(const QString& joined) {
    QStringList tags;
    for (const auto& piece : joined.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString tag = Note::normalizedTag(piece);
        if (!tag.isEmpty()) tags.append(tag);
    }
    return tags;
}

}  // namespace

const char* const DatabaseNotePersistence::selectNotes =
    R"(SELECT id, title, sealedBody, colorIndex, created, modified, archived, pinned, "order",
              originChannelID, originDropID, originSenderName, tags, folderID
       FROM StoredNote ORDER BY rowid)";

DatabaseNotePersistence::DatabaseNotePersistence(std::shared_ptr<VuroDatabase> database)
    : _database(std::move(database)) {}

Note DatabaseNotePersistence::noteFromRow(const SqliteStatement& row, QString body) {
    Note note;
    note.id = row.text(0);
    note.title = row.text(1);
    note.body = std::move(body);
    note.color = noteColorMasked(row.integer(3));
    note.created = row.date(4);
    note.modified = row.date(5);
    note.archived = row.integer(6) != 0;
    note.pinned = row.integer(7) != 0;
    note.order = row.real(8);
    note.origin = originOf({row.optionalText(9), row.optionalText(10), row.optionalText(11)});
    note.tags = tagsOf(row.text(12));
    note.folderID = row.optionalText(13);
    return note;
}

QList<Note> DatabaseNotePersistence::loadNotes() {
    const BodyCipher& cipher = _database->cipher();
    auto rows = _database->prepare(selectNotes);
    QList<Note> notes;
    while (rows.step()) notes.append(noteFromRow(rows, cipher.openText(rows.blob(sealedBodyColumn))));
    return notes;
}

void DatabaseNotePersistence::save(const Note& note) {
    const QByteArray sealed = _database->cipher().seal(note.body);
    const OriginColumns origin = columnsOf(note.origin);
    auto upsert = _database->prepare(
        R"(INSERT INTO StoredNote (id, title, sealedBody, colorIndex, created, modified, archived, pinned, "order",
                                   originChannelID, originDropID, originSenderName, tags, folderID)
           VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)
           ON CONFLICT (id) DO UPDATE SET
               title = excluded.title, sealedBody = excluded.sealedBody, colorIndex = excluded.colorIndex,
               created = excluded.created, modified = excluded.modified, archived = excluded.archived,
               pinned = excluded.pinned, "order" = excluded."order", originChannelID = excluded.originChannelID,
               originDropID = excluded.originDropID, originSenderName = excluded.originSenderName,
               tags = excluded.tags, folderID = excluded.folderID)");
    upsert.bindText(1, note.id)
        .bindText(2, note.title)
        .bindBlob(3, sealed)
        .bindInt(4, rawValue(note.color))
        .bindDate(5, note.created)
        .bindDate(6, note.modified)
        .bindInt(7, note.archived)
        .bindInt(8, note.pinned)
        .bindReal(9, note.order)
        .bindText(10, origin.channelID)
        .bindText(11, origin.dropID)
        .bindText(12, origin.senderName)
        .bindText(13, note.tags.join(QLatin1Char('\n')))
        .bindText(14, note.folderID);
    upsert.run();
}

void DatabaseNotePersistence::remove(const QString& id) {
    _database->prepare("DELETE FROM StoredNote WHERE id = ?1").bindText(1, id).run();
}

QList<NoteFolder> DatabaseNotePersistence::loadFolders() {
    auto rows = _database->prepare("SELECT id, name, created FROM StoredFolder ORDER BY rowid");
    QList<NoteFolder> folders;
    while (rows.step()) folders.append({rows.text(0), rows.text(1), rows.date(2)});
    return folders;
}

void DatabaseNotePersistence::saveFolder(const NoteFolder& folder) {
    _database
        ->prepare(R"(INSERT INTO StoredFolder (id, name, created) VALUES (?1, ?2, ?3)
                     ON CONFLICT (id) DO UPDATE SET name = excluded.name, created = excluded.created)")
        .bindText(1, folder.id)
        .bindText(2, folder.name)
        .bindDate(3, folder.created)
        .run();
}

void DatabaseNotePersistence::deleteFolder(const QString& id) {
    _database->prepare("DELETE FROM StoredFolder WHERE id = ?1").bindText(1, id).run();
}

}  // namespace vuro
