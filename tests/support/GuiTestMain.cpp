#include "base/TestHost.h"

#include <QApplication>
#include <gmock/gmock.h>

// Widget tests run on a QApplication; the test script gives them an X server (Xvfb with jwm).
int main(int argc, char** argv) {
    vuro::setRunningTests(true);
    QApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
