#pragma once

#include "notes/NoteColor.h"
#include "notes/NoteOrigin.h"

#include <QDateTime>
#include <QHashFunctions>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <optional>

namespace vuro {

// One sticky note: a plain copyable record. Hashing uses id alone, equality every field,
// so two versions of one note hash alike and compare unequal.
struct Note {
    QString id;
    QString title;
    QString body;
    NoteColor color = NoteColor::lemon;
    QDateTime created;
    QDateTime modified;
    bool archived = false;
    bool pinned = false;
    double order = 0;
    NoteOrigin origin;
    QStringList tags;
    std::optional<QString> folderID;

    // Title and body both empty after trimming white space.
    bool isEmpty() const;
    // The trimmed title, else the title derived from the body, else "Empty note".
    QString displayTitle() const;
    // The first line of the body that yields text, without tokens, heading and task marks or
    // inline Markdown, cut to 60 characters with "…"; empty when no line yields anything.
    static QString derivedTitle(const QString& body);
    // A tag as typed, normalised ("#Big idea!" → "Big-idea"); empty when nothing is left.
    static QString normalizedTag(const QString& tag);

    QJsonObject toJson() const;
    static Note fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const Note&) const = default;
};

inline size_t qHash(const Note& note, size_t seed = 0) { return qHash(note.id, seed); }

// A received note before it becomes a Note.
struct Drop {
    QString id;
    QString sourceID;
    QString senderID;
    QString senderName;
    QDateTime createdAt;
    QString text;

    QJsonObject toJson() const;
    static Drop fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const Drop&) const = default;
};

// A folder notes can be filed in. Folders are sorted by name (localised comparison), then id.
struct NoteFolder {
    QString id;
    QString name;
    QDateTime created;

    bool operator==(const NoteFolder&) const = default;
};

}  // namespace vuro
