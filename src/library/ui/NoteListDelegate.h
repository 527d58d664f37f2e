#pragma once

#include <QStyledItemDelegate>

namespace vuro {

// One row of the note list: the note's colour, its title and edit date, and a preview line.
// Selection comes from the library's own selection, not from the view's.
class NoteListDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // "14:05" today, "Yesterday", a weekday within the week, else the short date.
    static QString dateText(const QDateTime& date, const QDateTime& now);
};

}  // namespace vuro
