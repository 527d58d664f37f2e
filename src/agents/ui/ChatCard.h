#pragma once

#include <QFrame>

namespace vuro {

// A rounded panel painted from the palette, the ground of bubbles, chips and cards in a chat.
class ChatCard : public QFrame {
    Q_OBJECT
public:
    enum class Fill { userBubble, card, attention };

    explicit ChatCard(Fill fill, QWidget* parent = nullptr);

    static constexpr int radius = 10;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Fill _fill;
};

}  // namespace vuro
