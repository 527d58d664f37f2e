#pragma once

#include <QList>
#include <QRegularExpression>
#include <QSet>
#include <QString>
#include <optional>

namespace vuro {

// A file token in a body: `[NAME](vuro-file://ID)`. start and length cover the whole token.
struct FileToken {
    QString id;
    QString name;
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const FileToken&) const = default;
};

// An image token in a body: `![image](vuro-img://ID)` or `![image|W](vuro-img://ID)`.
struct ImageToken {
    QString id;
    std::optional<double> width;
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const ImageToken&) const = default;
};

// The grammar of the tokens that stand in a note's body for sealed images and attached files.
// Every reader of a body (titles, the orphan sweep, the editor, the tools) goes through here so
// that they all agree on what is a token. The compiled expressions are built once per process
// and are safe to use from any thread.
class NoteTokens {
public:
    static constexpr QLatin1StringView imageScheme{"vuro-img"};
    static constexpr QLatin1StringView fileScheme{"vuro-file"};
    // The characters an identifier of either token may hold.
    static constexpr QLatin1StringView identifierAlphabet{
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-"};

    static const QRegularExpression& fileTokenPattern();
    static const QRegularExpression& imageTokenPattern();

    // Tokens in order of appearance.
    static QList<FileToken> fileTokens(const QString& text);
    static QList<ImageToken> imageTokens(const QString& text);

    // The identifiers a body refers to, for the orphan sweep.
    static QSet<QString> fileIDs(const QString& text);
    static QSet<QString> imageIDs(const QString& text);

    // The written form of an image token. A missing, non-positive or non-finite width writes no
    // width; a whole width is written as an integer, any other with one decimal.
    static QString imageToken(const QString& id, std::optional<double> width = std::nullopt);
    static QString fileToken(const QString& name, const QString& id);

    // Whether an identifier is one a token can carry: 1 to 64 characters of the alphabet.
    static bool isValidIdentifier(const QString& id);
};

}  // namespace vuro
