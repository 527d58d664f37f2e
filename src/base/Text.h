#pragma once

#include <QString>

namespace vuro::Text {

// Folding for matching what people type against what is stored: "İ", "I" and "ı" become "i",
// then case, diacritics and width are folded ("İstanbul", "ISTANBUL", "ｉｓｔａｎｂｕｌ" → "istanbul").
QString fold(const QString& text);

// Counts user-perceived characters (grapheme clusters).
qsizetype characterCount(const QString& text);

// The first n user-perceived characters of text.
QString leftCharacters(const QString& text, qsizetype n);

// text as it is when it has at most n characters; else its first n characters followed by "…".
QString cut(const QString& text, qsizetype n);

// Trims white space and line ends from both ends (QString::trimmed also treats other separators).
QString trimmed(const QString& text);

}  // namespace vuro::Text
