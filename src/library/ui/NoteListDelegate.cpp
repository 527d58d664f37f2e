#include "library/ui/NoteListDelegate.h"

#include "base/Clock.h"
#include "base/TimeText.h"
#include "library/ui/NoteListModel.h"
#include "library/ui/NotePalette.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

namespace vuro {

namespace {
constexpr int margin = 10;
constexpr int swatch = 12;
}  // namespace

QString NoteListDelegate::dateText(const QDateTime& date, const QDateTime& now) {
    const QLocale locale;
    const QDate day = date.toLocalTime().date();
    const qint64 days = day.daysTo(now.toLocalTime().date());
    if (days == 0) {
        return shortTime(date.toLocalTime().time(), locale);
    }
    if (days == 1) return QApplication::translate("NoteList", "Yesterday");
    if (days > 1 && days < 7) return locale.dayName(day.dayOfWeek(), QLocale::LongFormat);
    return locale.toString(day, QLocale::ShortFormat);
}

QSize NoteListDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    const QFontMetrics metrics(option.font);
    return {240, margin * 2 + metrics.height() * 2 + 4};
}

void NoteListDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect rect = option.rect;
    const QPalette& palette = option.palette;
    const bool selected = index.data(NoteListModel::SelectedRole).toBool();
    const bool primary = index.data(NoteListModel::PrimaryRole).toBool();
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);

    if (selected) {
        QColor fill = palette.color(QPalette::Highlight);
        fill.setAlpha(primary ? 90 : 55);
        painter->fillRect(rect, fill);
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
        painter->fillRect(rect, palette.color(QPalette::AlternateBase));
    }
    if (focused) {
        painter->setPen(QPen(palette.color(QPalette::Highlight), 1, Qt::DotLine));
        painter->drawRect(rect.adjusted(1, 1, -2, -2));
    }

    const QColor paper = NotePalette::paper(static_cast<NoteColor>(index.data(NoteListModel::ColorRole).toInt() & 7));
    const QRect dot(rect.left() + margin, rect.top() + margin + 3, swatch, swatch);
    painter->setPen(paper.darker(135));
    painter->setBrush(paper);
    painter->drawEllipse(dot);

    QFont titleFont = option.font;
    titleFont.setBold(true);
    const QFontMetrics titleMetrics(titleFont);
    const QFontMetrics metrics(option.font);
    const int textLeft = dot.right() + margin;
    const QString date = dateText(index.data(NoteListModel::ModifiedRole).toDateTime(), Clock::now());
    const int dateWidth = metrics.horizontalAdvance(date);
    const QRect dateRect(rect.right() - margin - dateWidth, rect.top() + margin, dateWidth, titleMetrics.height());
    const QRect titleRect(textLeft, rect.top() + margin, dateRect.left() - margin - textLeft, titleMetrics.height());
    const QRect previewRect(textLeft, titleRect.bottom() + 4, rect.right() - margin - textLeft, metrics.height());

    QString title = index.data(Qt::DisplayRole).toString();
    if (index.data(NoteListModel::PinnedRole).toBool()) title.prepend(QStringLiteral("📌 "));
    painter->setFont(titleFont);
    painter->setPen(palette.color(QPalette::Text));
    painter->drawText(titleRect, Qt::AlignLeft | Qt::AlignVCenter, titleMetrics.elidedText(title, Qt::ElideRight, titleRect.width()));

    painter->setFont(option.font);
    painter->setPen(palette.color(QPalette::PlaceholderText));
    painter->drawText(dateRect, Qt::AlignRight | Qt::AlignVCenter, date);
    const QString preview = index.data(NoteListModel::PreviewRole).toString();
    painter->drawText(previewRect, Qt::AlignLeft | Qt::AlignVCenter, metrics.elidedText(preview, Qt::ElideRight, previewRect.width()));

    painter->setPen(palette.color(QPalette::Midlight));
    painter->drawLine(rect.bottomLeft() + QPoint(textLeft - rect.left(), 0), rect.bottomRight());
    painter->restore();
}

}  // namespace vuro
