#include "notes/Note.h"

#include "base/Json.h"
#include "base/Text.h"
#include "notes/InlineMarkdown.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace vuro {
namespace {

constexpr qsizetype titleLength = 60;
constexpr qsizetype tagLength = 32;

bool needsMarkdown(const QString& line) {
    for (const QChar c : line) {
        switch (c.unicode()) {
        case '*': case '_': case '`': case '[': case '\\': case '&': case '<': return true;
        default: break;
        }
    }
    return false;
}

QString titleOfLine(QString line) {
    static const QRegularExpression headingMark(QStringLiteral("^#{1,6}\\s*"));
    line = Text::trimmed(line);
    line.remove(headingMark);
    if (needsMarkdown(line)) line = InlineMarkdown::plainText(line).value_or(line);
    return Text::trimmed(line);
}

bool isTagTrimmed(QChar c) {
    static const QString set = QStringLiteral("#\"'“”‘’`.,;:!?()[]{}*•·-–—_/\\");
    return c.isSpace() || set.contains(c);
}

QString trimTag(const QString& text) {
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && isTagTrimmed(text[start])) ++start;
    while (end > start && isTagTrimmed(text[end - 1])) --end;
    return text.mid(start, end - start);
}

NoteColor decodeColor(const QJsonObject& object) {
    const qint64 raw = Json::requireInteger(object, QStringLiteral("color"));
    const auto color = noteColorFromRaw(raw >= 0 && raw <= 7 ? static_cast<int>(raw) : -1);
    if (!color) throw DecodingError(QStringLiteral("Cannot initialize NoteColor from invalid Int value %1").arg(raw));
    return *color;
}

}  // namespace

bool Note::isEmpty() const { return Text::trimmed(title).isEmpty() && Text::trimmed(body).isEmpty(); }

QString Note::displayTitle() const {
    if (const QString trimmedTitle = Text::trimmed(title); !trimmedTitle.isEmpty()) return trimmedTitle;
    if (const QString derived = derivedTitle(body); !derived.isEmpty()) return derived;
    return QCoreApplication::translate("vuro::Note", "Empty note");
}

QString Note::derivedTitle(const QString& body) {
    for (const QString& line : body.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString title = titleOfLine(line);
        if (!title.isEmpty()) return Text::cut(title, titleLength);
    }
    return {};
}

QString Note::normalizedTag(const QString& tag) {
    const QStringList words = trimTag(tag).split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    return trimTag(Text::leftCharacters(trimTag(words.join(QLatin1Char('-'))), tagLength));
}

QJsonObject Note::toJson() const {
    QJsonObject object{
        {QStringLiteral("id"), id},
        {QStringLiteral("title"), title},
        {QStringLiteral("body"), body},
        {QStringLiteral("color"), rawValue(color)},
        {QStringLiteral("created"), Json::fromDate(created)},
        {QStringLiteral("modified"), Json::fromDate(modified)},
        {QStringLiteral("archived"), archived},
        {QStringLiteral("pinned"), pinned},
        {QStringLiteral("order"), order},
        {QStringLiteral("origin"), origin.toJson()},
        {QStringLiteral("tags"), Json::fromStrings(tags)},
    };
    if (folderID) object.insert(QStringLiteral("folderID"), *folderID);
    return object;
}

Note Note::fromJson(const QJsonObject& object) {
    Note note;
    note.id = Json::requireString(object, QStringLiteral("id"));
    note.title = Json::requireString(object, QStringLiteral("title"));
    note.body = Json::requireString(object, QStringLiteral("body"));
    note.color = decodeColor(object);
    note.created = Json::requireDate(object, QStringLiteral("created"));
    note.modified = Json::requireDate(object, QStringLiteral("modified"));
    note.archived = Json::requireBool(object, QStringLiteral("archived"));
    note.pinned = Json::requireBool(object, QStringLiteral("pinned"));
    note.order = Json::requireDouble(object, QStringLiteral("order"));
    note.origin = NoteOrigin::fromJson(Json::requireObject(object, QStringLiteral("origin")));
    note.tags = Json::toStrings(Json::requireArray(object, QStringLiteral("tags")));
    note.folderID = Json::optionalString(object, QStringLiteral("folderID"));
    return note;
}

QJsonObject Drop::toJson() const {
    return {
        {QStringLiteral("id"), id},
        {QStringLiteral("sourceID"), sourceID},
        {QStringLiteral("senderID"), senderID},
        {QStringLiteral("senderName"), senderName},
        {QStringLiteral("createdAt"), Json::fromDate(createdAt)},
        {QStringLiteral("text"), text},
    };
}

Drop Drop::fromJson(const QJsonObject& object) {
    Drop drop;
    drop.id = Json::requireString(object, QStringLiteral("id"));
    drop.sourceID = Json::requireString(object, QStringLiteral("sourceID"));
    drop.senderID = Json::requireString(object, QStringLiteral("senderID"));
    drop.senderName = Json::requireString(object, QStringLiteral("senderName"));
    drop.createdAt = Json::requireDate(object, QStringLiteral("createdAt"));
    drop.text = Json::requireString(object, QStringLiteral("text"));
    return drop;
}

}  // namespace vuro
