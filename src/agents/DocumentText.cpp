#include "agents/DocumentText.h"

#include <QStringDecoder>
#include <QXmlStreamReader>
#include <optional>
#include <zip.h>

namespace vuro::DocumentText {
namespace {

// A zip member's bytes, or none when the archive or the member can't be read.
std::optional<QByteArray> zipMember(const QByteArray& bytes, const char* member) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* source = zip_source_buffer_create(bytes.constData(), static_cast<zip_uint64_t>(bytes.size()), 0, &error);
    if (!source) {
        zip_error_fini(&error);
        return std::nullopt;
    }
    zip_t* archive = zip_open_from_source(source, ZIP_RDONLY, &error);
    zip_error_fini(&error);
    if (!archive) {
        zip_source_free(source);
        return std::nullopt;
    }
    std::optional<QByteArray> result;
    zip_stat_t stat;
    zip_stat_init(&stat);
    // A member claiming more than 200 MB is refused rather than inflated into memory.
    constexpr zip_uint64_t largest = 200u * 1024u * 1024u;
    if (zip_stat(archive, member, 0, &stat) == 0 && (stat.valid & ZIP_STAT_SIZE) && stat.size <= largest) {
        if (zip_file_t* file = zip_fopen(archive, member, 0)) {
            QByteArray content(static_cast<qsizetype>(stat.size), Qt::Uninitialized);
            const zip_int64_t read = zip_fread(file, content.data(), stat.size);
            if (read == static_cast<zip_int64_t>(stat.size)) result = content;
            zip_fclose(file);
        }
    }
    zip_discard(archive);
    return result;
}

// Walks a word-processor XML: text of the text elements, with breaks where paragraphs end.
QString xmlText(const QByteArray& xml, const QString& textElement, const QStringList& paragraphElements,
                const QStringList& tabElements, const QStringList& breakElements, const QString& spaceElement) {
    QXmlStreamReader reader(xml);
    QString text;
    int insideText = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            const QString name = reader.qualifiedName().toString();
            if (name == textElement) ++insideText;
            else if (tabElements.contains(name)) text += QLatin1Char('\t');
            else if (breakElements.contains(name)) text += QLatin1Char('\n');
            else if (name == spaceElement) {
                const int count = qMax(1, reader.attributes().value(QStringLiteral("text:c")).toInt());
                text += QString(qMin(count, 1000), QLatin1Char(' '));
            }
            break;
        }
        case QXmlStreamReader::EndElement: {
            const QString name = reader.qualifiedName().toString();
            if (name == textElement) insideText = qMax(0, insideText - 1);
            else if (paragraphElements.contains(name)) text += QLatin1Char('\n');
            break;
        }
        case QXmlStreamReader::Characters:
            // ODT keeps text directly in paragraphs; DOCX only inside w:t.
            if (insideText > 0 || textElement.isEmpty()) text += reader.text();
            break;
        default:
            break;
        }
    }
    if (reader.hasError()) return {};
    return text.trimmed();
}

}  // namespace

QString fromDocx(const QByteArray& bytes) {
    const auto xml = zipMember(bytes, "word/document.xml");
    if (!xml) return {};
    return xmlText(*xml, QStringLiteral("w:t"), {QStringLiteral("w:p")}, {QStringLiteral("w:tab")},
                   {QStringLiteral("w:br"), QStringLiteral("w:cr")}, {});
}

QString fromOdt(const QByteArray& bytes) {
    const auto xml = zipMember(bytes, "content.xml");
    if (!xml) return {};
    // Only what stands inside the document body counts; styles and fonts come before it.
    const qsizetype body = xml->indexOf("<office:body");
    if (body < 0) return {};
    QByteArray wrapped = "<r xmlns:office=\"o\" xmlns:text=\"t\" xmlns:table=\"b\" xmlns:draw=\"d\" xmlns:svg=\"s\">";
    const qsizetype end = xml->lastIndexOf("</office:document-content>");
    wrapped += xml->mid(body, (end > body ? end : xml->size()) - body);
    wrapped += "</r>";
    return xmlText(wrapped, {}, {QStringLiteral("text:p"), QStringLiteral("text:h")}, {QStringLiteral("text:tab")},
                   {QStringLiteral("text:line-break")}, QStringLiteral("text:s"));
}

QString fromRtf(const QByteArray& bytes) {
    if (!bytes.startsWith("{\\rtf")) return {};
    // Groups whose content is not document text: font and colour tables, style sheets, document
    // information, pictures, and every "\*" destination a reader may ignore.
    static const QStringList skipped = {
        QStringLiteral("fonttbl"),  QStringLiteral("colortbl"), QStringLiteral("stylesheet"), QStringLiteral("info"),
        QStringLiteral("pict"),     QStringLiteral("header"),   QStringLiteral("footer"),     QStringLiteral("listtable"),
        QStringLiteral("listoverridetable"), QStringLiteral("themedata"), QStringLiteral("datastore"),
        QStringLiteral("latentstyles"), QStringLiteral("generator"), QStringLiteral("object")};
    QStringDecoder cp1252("windows-1252");
    QString text;
    QByteArray pendingBytes;  // \'hh escapes, decoded together so multi-byte runs stay intact
    const auto flushBytes = [&] {
        if (pendingBytes.isEmpty()) return;
        text += cp1252.isValid() ? cp1252.decode(pendingBytes) : QString::fromLatin1(pendingBytes);
        pendingBytes.clear();
    };
    struct Group {
        bool skip = false;
        int unicodeSkip = 1;
    };
    QList<Group> groups{Group{}};
    int skipAfterUnicode = 0;
    const qsizetype n = bytes.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char c = bytes[i];
        const bool skipping = groups.last().skip;
        if (c == '{') {
            flushBytes();
            groups.append(groups.last());
            skipAfterUnicode = 0;
            continue;
        }
        if (c == '}') {
            flushBytes();
            if (groups.size() > 1) groups.removeLast();
            skipAfterUnicode = 0;
            continue;
        }
        if (c == '\\' && i + 1 < n) {
            const char next = bytes[i + 1];
            if (next == '\'' && i + 3 < n) {
                bool ok = false;
                const int value = bytes.mid(i + 2, 2).toInt(&ok, 16);
                i += 3;
                if (skipAfterUnicode > 0) {
                    --skipAfterUnicode;
                } else if (ok && !skipping) {
                    pendingBytes += static_cast<char>(value);
                }
                continue;
            }
            flushBytes();
            if (next == '\\' || next == '{' || next == '}') {
                if (!skipping) text += QLatin1Char(next);
                ++i;
                continue;
            }
            if (next == '*') {
                groups.last().skip = true;
                ++i;
                continue;
            }
            if (!std::isalpha(static_cast<unsigned char>(next))) {
                if (next == '~' && !skipping) text += QChar(0x00A0);
                if ((next == '\n' || next == '\r') && !skipping) text += QLatin1Char('\n');
                ++i;
                continue;
            }
            qsizetype j = i + 1;
            while (j < n && std::isalpha(static_cast<unsigned char>(bytes[j]))) ++j;
            const QString word = QString::fromLatin1(bytes.mid(i + 1, j - i - 1));
            qsizetype k = j;
            if (k < n && (bytes[k] == '-' || std::isdigit(static_cast<unsigned char>(bytes[k])))) {
                ++k;
                while (k < n && std::isdigit(static_cast<unsigned char>(bytes[k]))) ++k;
            }
            const QByteArray parameter = bytes.mid(j, k - j);
            if (k < n && bytes[k] == ' ') ++k;  // the delimiting blank belongs to the control word
            i = k - 1;
            if (skipped.contains(word)) {
                groups.last().skip = true;
            } else if (word == QLatin1String("uc")) {
                groups.last().unicodeSkip = parameter.toInt();
            } else if (word == QLatin1String("u")) {
                int code = parameter.toInt();
                if (code < 0) code += 65536;
                if (!skipping) text += QChar(static_cast<char16_t>(code));
                skipAfterUnicode = groups.last().unicodeSkip;
            } else if (!skipping) {
                if (word == QLatin1String("par") || word == QLatin1String("line") || word == QLatin1String("sect") ||
                    word == QLatin1String("row"))
                    text += QLatin1Char('\n');
                else if (word == QLatin1String("tab") || word == QLatin1String("cell"))
                    text += QLatin1Char('\t');
                else if (word == QLatin1String("emdash"))
                    text += QChar(0x2014);
                else if (word == QLatin1String("endash"))
                    text += QChar(0x2013);
                else if (word == QLatin1String("bullet"))
                    text += QChar(0x2022);
            }
            continue;
        }
        if (c == '\n' || c == '\r') continue;
        if (skipAfterUnicode > 0) {
            --skipAfterUnicode;
            continue;
        }
        if (!skipping) {
            flushBytes();
            text += QLatin1Char(c);
        }
    }
    flushBytes();
    return text.trimmed();
}

QString extract(const QByteArray& bytes, const QString& mediaType) {
    if (mediaType.contains(QLatin1String("wordprocessingml"))) return fromDocx(bytes);
    if (mediaType.contains(QLatin1String("opendocument.text"))) return fromOdt(bytes);
    if (mediaType.contains(QLatin1String("rtf")) || bytes.startsWith("{\\rtf")) return fromRtf(bytes);
    if (bytes.startsWith("PK")) {
        const QString docx = fromDocx(bytes);
        return docx.isEmpty() ? fromOdt(bytes) : docx;
    }
    return {};
}

}  // namespace vuro::DocumentText
