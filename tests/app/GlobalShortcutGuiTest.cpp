#include "app/ui/GlobalShortcut.h"

#include "support/Printers.h"

#include <QGuiApplication>
#include <cstdlib>
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <xcb/xcb.h>
// Xlib after gtest: its macros (None, Bool, …) would otherwise rename gtest's own names.
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace vuro {
namespace {

bool onX11() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

// A press as the X server delivers it for a grabbed key.
xcb_key_press_event_t press(xcb_keycode_t key, uint16_t state, uint8_t type = XCB_KEY_PRESS) {
    xcb_key_press_event_t event{};
    event.response_type = type;
    event.detail = key;
    event.state = state;
    return event;
}

xcb_keycode_t spaceKey() {
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return XKeysymToKeycode(x11->display(), XK_space);
}

TEST(GlobalShortcut, ControlAltSpaceFiresWhateverTheLockKeys) {
    if (!onX11()) GTEST_SKIP() << "needs an X11 session (the test script's Xvfb)";
    GlobalShortcut shortcut;
    ASSERT_TRUE(shortcut.start());
    QSignalSpy fired(&shortcut, &GlobalShortcut::activated);
    const xcb_keycode_t space = spaceKey();
    struct Case {
        const char* what;
        xcb_key_press_event_t event;
        bool fires;
    };
    const Case cases[] = {
        {"control+alt+space", press(space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1), true},
        {"with Num Lock on", press(space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_2), true},
        {"with Caps Lock on", press(space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_LOCK), true},
        {"with a mouse button held", press(space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_BUTTON_MASK_1), true},
        {"control+space", press(space, XCB_MOD_MASK_CONTROL), false},
        {"control+alt+another key", press(static_cast<xcb_keycode_t>(space + 1), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1), false},
        {"the release", press(space, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, XCB_KEY_RELEASE), false},
    };
    for (const Case& c : cases) {
        fired.clear();
        xcb_key_press_event_t event = c.event;
        EXPECT_EQ(shortcut.nativeEventFilter("xcb_generic_event_t", &event, nullptr), c.fires) << c.what;
        EXPECT_EQ(fired.count(), c.fires ? 1 : 0) << c.what;
    }
    shortcut.stop();
    xcb_key_press_event_t event = cases[0].event;
    EXPECT_FALSE(shortcut.nativeEventFilter("xcb_generic_event_t", &event, nullptr)) << "no longer held";
}

TEST(GlobalShortcut, AKeyHeldByAnotherProgramIsRefused) {
    if (!onX11()) GTEST_SKIP() << "needs an X11 session (the test script's Xvfb)";
    xcb_connection_t* other = xcb_connect(qgetenv("DISPLAY").constData(), nullptr);
    ASSERT_EQ(xcb_connection_has_error(other), 0);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(other)).data->root;
    const auto held = xcb_grab_key_checked(other, 1, root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1, spaceKey(),
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_EQ(xcb_request_check(other, held), nullptr);

    GlobalShortcut shortcut;
    EXPECT_FALSE(shortcut.start());
    EXPECT_FALSE(shortcut.isActive());
    // Once the other program lets go (a round trip makes sure the server has done it), it's ours.
    xcb_ungrab_key(other, spaceKey(), root, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
    xcb_disconnect(other);
    EXPECT_TRUE(shortcut.start());
}

}  // namespace
}  // namespace vuro
