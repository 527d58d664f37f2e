#pragma once

namespace vuro {

// True inside a test program: real services, stores, locks and windows stay away.
// Set by the test main, or by a non-empty VURO_RUNNING_TESTS in the environment.
bool isRunningTests();
void setRunningTests(bool running);

}  // namespace vuro
