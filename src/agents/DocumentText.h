#pragma once

#include <QByteArray>
#include <QString>

namespace vuro::DocumentText {

// Plain text of word-processor files, for handing them to a model. Each returns an empty text
// when the bytes are not a readable file of that format; none of them throws.
// Paragraphs end in a newline; tabs and line breaks inside a paragraph are kept.
QString fromDocx(const QByteArray& bytes);  // word/document.xml inside the zip
QString fromOdt(const QByteArray& bytes);   // content.xml inside the zip
QString fromRtf(const QByteArray& bytes);   // control words and non-text groups stripped

// Picks the reader by media type, then by the file's first bytes: a zip holding word/document.xml
// is DOCX, one holding content.xml is ODT, "{\rtf" is RTF. Anything else gives an empty text.
QString extract(const QByteArray& bytes, const QString& mediaType);

}  // namespace vuro::DocumentText
