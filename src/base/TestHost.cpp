#include "base/TestHost.h"

#include <QtGlobal>
#include <atomic>

namespace vuro {
namespace {
std::atomic<int> overridden{-1};
}

bool isRunningTests() {
    const int value = overridden.load();
    if (value >= 0) return value == 1;
    return !qEnvironmentVariableIsEmpty("VURO_RUNNING_TESTS");
}

void setRunningTests(bool running) { overridden.store(running ? 1 : 0); }

}  // namespace vuro
