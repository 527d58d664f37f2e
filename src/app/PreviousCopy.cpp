#include "app/PreviousCopy.h"

#include "base/Defaults.h"
#include "base/Log.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <unistd.h>

namespace vuro {

QString PreviousCopy::executableOf(pid_t pid) {
    QString target = QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget();
    // A program replaced on disk while it runs still counts as that program.
    const QLatin1String deleted(" (deleted)");
    if (target.endsWith(deleted)) target.chop(deleted.size());
    return target;
}

bool PreviousCopy::isRunning(pid_t pid) {
    if (pid <= 0) return false;
    if (::kill(pid, 0) != 0 && errno != EPERM) return false;
    const QString theirs = executableOf(pid);  // empty for a zombie or another user's process
    return !theirs.isEmpty() && theirs == executableOf(::getpid());
}

bool PreviousCopy::waitUntilGone(pid_t pid, std::chrono::milliseconds timeout, std::chrono::milliseconds step) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (isRunning(pid)) {
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(step);
    }
    return true;
}

void PreviousCopy::waitIfReplacing() {
    const int previous = Defaults::standard().intValue(QStringLiteral("VuroRelaunchAfter"));
    if (previous <= 0 || previous == ::getpid()) return;
    if (!waitUntilGone(previous)) {
        log(QStringLiteral("the copy being replaced (pid %1) is still running; leaving it be").arg(previous));
        std::exit(0);
    }
}

}  // namespace vuro
