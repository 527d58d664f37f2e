#pragma once

#include <QRect>

namespace vuro {

// What a deck's controller asks of its window at the screen edge.
class DeckPanelPort {
public:
    virtual ~DeckPanelPort() = default;
    // Takes the frame at once, without animation; content is laid out before the next paint.
    virtual void setFrame(const QRect& frame) = 0;
    virtual QRect frame() const = 0;
    virtual void orderFront() = 0;       // shown, without taking the keyboard
    virtual void orderOut() = 0;
    virtual void makeKeyAndFront() = 0;  // shown and given the keyboard
    virtual bool isKey() const = 0;
};

}  // namespace vuro
