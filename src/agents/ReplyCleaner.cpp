#include "agents/ReplyCleaner.h"

#include "base/Text.h"

#include <QSet>
#include <QStringList>
#include <algorithm>

namespace vuro::ReplyCleaner {
namespace {

constexpr qsizetype shortestPeriod = 12;
constexpr qsizetype longestPeriod = 160;
constexpr qsizetype window = 600;
constexpr qsizetype repeatedLineLength = 30;

const QStringList& labels() {
    static const QStringList all = {
        QStringLiteral("sen:"),       QStringLiteral("you:"),   QStringLiteral("asistan:"),
        QStringLiteral("assistant:"), QStringLiteral("sen yanıtlamıştın:"), QStringLiteral("you replied:"),
        QStringLiteral("kullanıcı:"), QStringLiteral("user:"),  QStringLiteral("kullanıcı yazmıştı:"),
        QStringLiteral("the user wrote:")};
    return all;
}

// The length of the label the line starts with, or 0.
qsizetype labelLength(const QString& trimmedLine) {
    const QString lower = trimmedLine.toLower();
    for (const QString& label : labels())
        if (lower.startsWith(label)) return label.size();
    return 0;
}

}  // namespace

qsizetype loopCut(const QList<uint>& scalars) {
    const qsizetype n = scalars.size();
    if (n < 3 * shortestPeriod) return -1;
    const auto* s = scalars.constData();
    for (qsizetype start = std::max<qsizetype>(0, n - window); start < n; ++start) {
        for (qsizetype period = shortestPeriod; period <= longestPeriod && start + 3 * period <= n; ++period) {
            if (std::equal(s + start, s + start + period, s + start + period) &&
                std::equal(s + start, s + start + period, s + start + 2 * period))
                return start + period;
        }
    }
    return -1;
}

QString clean(const QString& text) {
    QStringList lines = text.split(QLatin1Char('\n'));
    bool changed = false;
    {
        const QString first = Text::trimmed(lines.first());
        if (const qsizetype length = labelLength(first)) {
            lines.first() = Text::trimmed(first.mid(length));
            changed = true;
        }
    }
    QStringList kept;
    QSet<QString> seen;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString trimmedLine = Text::trimmed(lines[i]);
        if (i > 0 && labelLength(trimmedLine) > 0) {
            changed = true;
            break;
        }
        const bool long_ = Text::characterCount(trimmedLine) >= repeatedLineLength;
        if (long_ && seen.contains(trimmedLine)) {
            changed = true;
            break;
        }
        if (long_) seen.insert(trimmedLine);
        kept.append(lines[i]);
    }
    QString joined = kept.join(QLatin1Char('\n'));
    const QList<uint> scalars = joined.toUcs4();
    if (const qsizetype cut = loopCut(scalars); cut >= 0) {
        joined = QString::fromUcs4(reinterpret_cast<const char32_t*>(scalars.constData()), cut);
        changed = true;
    }
    return changed ? Text::trimmed(joined) : joined;
}

}  // namespace vuro::ReplyCleaner
