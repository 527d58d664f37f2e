#include "notes/NoteTokens.h"

#include <cmath>

namespace vuro {

namespace {

constexpr QLatin1StringView fileMarker{"vuro-file://"};
constexpr QLatin1StringView imageMarker{"vuro-img://"};

}  // namespace

const QRegularExpression& NoteTokens::fileTokenPattern() {
    static const QRegularExpression pattern(QStringLiteral(R"(\[([^\]\n]*)\]\(vuro-file://([A-Za-z0-9-]{1,64})\))"));
    return pattern;
}

const QRegularExpression& NoteTokens::imageTokenPattern() {
    static const QRegularExpression pattern(QStringLiteral(R"(!\[image(?:\|([0-9]+(?:\.[0-9]+)?))?\]\()") +
                                            imageScheme + QStringLiteral(R"(://([A-Za-z0-9-]+)\))"));
    return pattern;
}

QList<FileToken> NoteTokens::fileTokens(const QString& text) {
    QList<FileToken> tokens;
    // Most bodies hold no file at all; this keeps the expression off the typing path.
    if (!text.contains(fileMarker)) return tokens;
    auto matches = fileTokenPattern().globalMatch(text);
    while (matches.hasNext()) {
        const auto match = matches.next();
        tokens.append({match.captured(2), match.captured(1), match.capturedStart(0), match.capturedLength(0)});
    }
    return tokens;
}

QList<ImageToken> NoteTokens::imageTokens(const QString& text) {
    QList<ImageToken> tokens;
    if (!text.contains(imageMarker)) return tokens;
    auto matches = imageTokenPattern().globalMatch(text);
    while (matches.hasNext()) {
        const auto match = matches.next();
        std::optional<double> width;
        if (match.hasCaptured(1)) width = match.captured(1).toDouble();
        tokens.append({match.captured(2), width, match.capturedStart(0), match.capturedLength(0)});
    }
    return tokens;
}

QSet<QString> NoteTokens::fileIDs(const QString& text) {
    QSet<QString> ids;
    for (const auto& token : fileTokens(text)) ids.insert(token.id);
    return ids;
}

QSet<QString> NoteTokens::imageIDs(const QString& text) {
    QSet<QString> ids;
    for (const auto& token : imageTokens(text)) ids.insert(token.id);
    return ids;
}

QString NoteTokens::imageToken(const QString& id, std::optional<double> width) {
    const QString tail = QStringLiteral("](") + imageScheme + QStringLiteral("://") + id + QLatin1Char(')');
    if (!width || !std::isfinite(*width) || *width <= 0) return QStringLiteral("![image") + tail;
    // A whole width is written without decimals; 'f' with precision 0 keeps huge values exact
    // where a cast to an integer type would overflow.
    const bool whole = std::floor(*width) == *width;
    return QStringLiteral("![image|") + QString::asprintf(whole ? "%.0f" : "%.1f", *width) + tail;
}

QString NoteTokens::fileToken(const QString& name, const QString& id) {
    // The visible name can hold neither "]" nor a line end, or the token would not read back.
    QString visible = name;
    visible.remove(QLatin1Char(']'));
    visible.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    return QLatin1Char('[') + visible + QStringLiteral("](") + fileScheme + QStringLiteral("://") + id + QLatin1Char(')');
}

bool NoteTokens::isValidIdentifier(const QString& id) {
    if (id.isEmpty() || id.size() > 64) return false;
    for (const QChar c : id)
        if (!identifierAlphabet.contains(c)) return false;
    return true;
}

}  // namespace vuro
