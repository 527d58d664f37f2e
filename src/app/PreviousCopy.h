#pragma once

#include <QString>
#include <chrono>
#include <sys/types.h>

namespace vuro {

// A copy started to replace this program (after a language change) is given the old copy's
// process id as "-VuroRelaunchAfter <pid>" and waits here, before anything else, until the old
// copy has gone. An id that is now another program's (reused) or our own is not waited for.
class PreviousCopy {
public:
    // True while pid is a live process running the same executable as this one.
    static bool isRunning(pid_t pid);

    // Waits while pid runs, looking every step; false when it still runs at the deadline.
    static bool waitUntilGone(pid_t pid, std::chrono::milliseconds timeout = std::chrono::seconds(10),
                              std::chrono::milliseconds step = std::chrono::milliseconds(100));

    // The process entry's first step: reads VuroRelaunchAfter from the defaults and, when the
    // old copy outlives the wait, ends this one with status 0 so that the old one stays.
    static void waitIfReplacing();

    // The executable a process runs, as /proc tells it; empty when unknown or gone.
    static QString executableOf(pid_t pid);
};

}  // namespace vuro
