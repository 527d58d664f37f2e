#include "notes/InlineMarkdown.h"

#include <QHash>
#include <md4c.h>

namespace vuro {
namespace {

// A no-break space in front keeps the parser from reading block syntax ("- ", "1. ", "> ", "#")
// while counting as white space for the emphasis rules, so "_a_" stays emphasis.
constexpr char16_t guard = u'\u00A0';

QString decodeEntity(const QString& entity) {
    static const QHash<QString, QString> named{
        {QStringLiteral("&amp;"), QStringLiteral("&")},   {QStringLiteral("&lt;"), QStringLiteral("<")},
        {QStringLiteral("&gt;"), QStringLiteral(">")},    {QStringLiteral("&quot;"), QStringLiteral("\"")},
        {QStringLiteral("&apos;"), QStringLiteral("'")},  {QStringLiteral("&nbsp;"), QString(QChar(0x00A0))},
        {QStringLiteral("&copy;"), QString(QChar(0x00A9))}, {QStringLiteral("&mdash;"), QString(QChar(0x2014))},
        {QStringLiteral("&ndash;"), QString(QChar(0x2013))}, {QStringLiteral("&hellip;"), QString(QChar(0x2026))},
    };
    if (const auto it = named.constFind(entity); it != named.cend()) return *it;
    if (entity.startsWith(QLatin1String("&#")) && entity.endsWith(QLatin1Char(';'))) {
        const bool hex = entity.size() > 3 && (entity[2] == QLatin1Char('x') || entity[2] == QLatin1Char('X'));
        bool ok = false;
        const uint code = entity.mid(hex ? 3 : 2, entity.size() - (hex ? 4 : 3)).toUInt(&ok, hex ? 16 : 10);
        if (!ok || code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return QString(QChar(0xFFFD));
        const char32_t scalar = code;
        return QString::fromUcs4(&scalar, 1);
    }
    return entity;
}

int onText(MD_TEXTTYPE type, const MD_CHAR* text, MD_SIZE size, void* userdata) {
    auto* out = static_cast<QString*>(userdata);
    const QString piece = QString::fromUtf8(text, static_cast<qsizetype>(size));
    switch (type) {
    case MD_TEXT_ENTITY: out->append(decodeEntity(piece)); break;
    case MD_TEXT_NULLCHAR: out->append(QChar(0xFFFD)); break;
    case MD_TEXT_BR:
    case MD_TEXT_SOFTBR: out->append(QLatin1Char(' ')); break;
    default: out->append(piece); break;
    }
    return 0;
}

}  // namespace

std::optional<QString> InlineMarkdown::plainText(const QString& line) {
    const QByteArray utf8 = (QString(QChar(guard)) + line).toUtf8();
    MD_PARSER parser{};
    parser.abi_version = 0;
    parser.flags = MD_FLAG_STRIKETHROUGH | MD_FLAG_NOHTMLBLOCKS;
    parser.enter_block = [](MD_BLOCKTYPE, void*, void*) { return 0; };
    parser.leave_block = [](MD_BLOCKTYPE, void*, void*) { return 0; };
    parser.enter_span = [](MD_SPANTYPE, void*, void*) { return 0; };
    parser.leave_span = [](MD_SPANTYPE, void*, void*) { return 0; };
    parser.text = onText;
    QString out;
    if (md_parse(utf8.constData(), static_cast<MD_SIZE>(utf8.size()), &parser, &out) != 0) return std::nullopt;
    if (!out.startsWith(QChar(guard))) return std::nullopt;
    return out.mid(1);
}

}  // namespace vuro
