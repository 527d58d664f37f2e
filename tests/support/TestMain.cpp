#include "base/TestHost.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

// Test programs of logic run on a QCoreApplication so that timers, coroutines and sockets work.
int main(int argc, char** argv) {
    vuro::setRunningTests(true);
    QCoreApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
