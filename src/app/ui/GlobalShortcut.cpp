#include "app/ui/GlobalShortcut.h"

#include "base/Log.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <xcb/xcb.h>

namespace vuro {
namespace {

constexpr unsigned short baseModifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;  // Control+Alt
// Caps Lock and Num Lock (usually Mod2) change the state bits of a press; the grab has to
// include every combination of them or the shortcut dies while one of them is on.
constexpr unsigned short lockModifiers[] = {0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2};

QNativeInterface::QX11Application* x11() {
    auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    return app ? app->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
    const xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    return screens.rem > 0 ? screens.data->root : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

}  // namespace

GlobalShortcut::GlobalShortcut(QObject* parent) : QObject(parent) {}

GlobalShortcut::~GlobalShortcut() { stop(); }

bool GlobalShortcut::start() {
    if (isActive()) return true;
    QNativeInterface::QX11Application* session = x11();
    if (!session || !session->connection() || !session->display()) {
        log(QStringLiteral("no global shortcut on this session; Tell Vuro opens from the tray menu"));
        return false;
    }
    xcb_connection_t* connection = session->connection();
    const xcb_window_t root = rootWindow(connection);
    _keycode = XKeysymToKeycode(session->display(), XK_space);
    if (root == XCB_WINDOW_NONE || _keycode == 0) return false;
    for (const unsigned short lock : lockModifiers) {
        const unsigned short mask = baseModifiers | lock;
        const xcb_void_cookie_t cookie =
            xcb_grab_key_checked(connection, 1, root, mask, _keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        // A checked request reports "taken by another client" here instead of through the
        // process-wide error handler.
        if (xcb_generic_error_t* error = xcb_request_check(connection, cookie)) {
            free(error);
            stop();
            log(QStringLiteral("Control+Alt+Space is taken by another program; Tell Vuro opens from the tray menu"));
            return false;
        }
        _grabbed.append(mask);
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
    return true;
}

void GlobalShortcut::stop() {
    if (QCoreApplication::instance()) QCoreApplication::instance()->removeNativeEventFilter(this);
    QNativeInterface::QX11Application* session = x11();
    if (!session || !session->connection()) {
        _grabbed.clear();
        return;
    }
    xcb_connection_t* connection = session->connection();
    const xcb_window_t root = rootWindow(connection);
    for (const unsigned short mask : std::as_const(_grabbed)) xcb_ungrab_key(connection, _keycode, root, mask);
    if (!_grabbed.isEmpty()) xcb_flush(connection);
    _grabbed.clear();
}

bool GlobalShortcut::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t" || _grabbed.isEmpty()) return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~0x80) != XCB_KEY_PRESS) return false;
    const auto* press = reinterpret_cast<const xcb_key_press_event_t*>(event);
    if (press->detail != _keycode || !_grabbed.contains(press->state & 0xff)) return false;
    Q_EMIT activated();
    return true;
}

}  // namespace vuro
