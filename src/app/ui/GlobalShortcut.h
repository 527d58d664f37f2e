#pragma once

#include <QAbstractNativeEventFilter>
#include <QList>
#include <QObject>

namespace vuro {

// A key combination that reaches Vuro wherever the focus is, for opening the Tell Vuro bar.
//
// On an X11 session the key is grabbed on the root window and its presses are picked out of the
// X event stream. On Wayland a program can't grab keys; the desktop's own shortcut settings (or
// the GlobalShortcuts portal, which not every desktop offers yet) are the only way there, so
// start() says false and the tray menu's entry remains the way in. The same happens when another
// program holds the combination already. Main thread; the grab is let go when the object goes.
class GlobalShortcut : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT
public:
    // Control+Alt+Space: free on the common desktops, and easy with one hand.
    explicit GlobalShortcut(QObject* parent = nullptr);
    ~GlobalShortcut() override;

    // Grabs the key; false where this session can't (not X11, or the key is taken).
    bool start();
    void stop();
    bool isActive() const { return !_grabbed.isEmpty(); }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

Q_SIGNALS:
    void activated();

private:
    unsigned char _keycode = 0;
    QList<unsigned short> _grabbed;  // the modifier masks held, with and without Caps and Num Lock
};

}  // namespace vuro
