#pragma once

#include <QWidget>

namespace vuro {

// One line of text that asks for its whole width and, given less, ends in "…"; the whole text
// is then its tooltip.
class ElidedLabel : public QWidget {
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    void setText(const QString& text);
    const QString& text() const { return _text; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString _text;
};

}  // namespace vuro
