#include "base/TestHost.h"

#include <QApplication>
#include <gmock/gmock.h>

// Widget tests run on a QApplication; the test script gives them an X server (Xvfb with jwm).
int main(int argc, char** argv) {
    vuro::setRunningTests(true);
    // Without a display (listing the tests, a plain ctest run) widgets still work off screen;
    // the test script provides Xvfb for the real thing.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
