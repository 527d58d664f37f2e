#include "base/TestHost.h"

#include <QApplication>
#include <cstring>
#include <gmock/gmock.h>

// Widget tests run on a QApplication; the test script gives them an X server (Xvfb with jwm).
// Listing the tests (CTest does it at every run, also without a display) needs no screen.
int main(int argc, char** argv) {
    vuro::setRunningTests(true);
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--gtest_list_tests") == 0) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
