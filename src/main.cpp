#include "app/AppLanguage.h"
#include "app/AppPaths.h"
#include "app/InstanceLock.h"
#include "app/PreviousCopy.h"
#include "app/ReopenChannel.h"
#include "app/TerminationSignals.h"
#include "app/ui/AppDelegate.h"
#include "base/Defaults.h"
#include "base/TestHost.h"

#include <QApplication>

using namespace vuro;

// The order matters: a copy that replaces another waits first, and a second copy hands over
// before it opens a display connection or touches any store.
int main(int argc, char* argv[]) {
    PreviousCopy::waitIfReplacing();

    if (!isRunningTests()) {
        const InstanceLock::Result lock = InstanceLock::shared().acquire();
        if (const auto* held = std::get_if<InstanceLock::HeldBy>(&lock)) InstanceLock::handOver(held->pid);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vuro"));
    QApplication::setDesktopFileName(QLatin1String(AppPaths::appID));
    // A tray program: closing the last window leaves it running.
    QApplication::setQuitOnLastWindowClosed(false);
    AppLanguage(Defaults::standard()).apply();

    AppDelegate delegate;

    ReopenChannel reopen;
    if (!isRunningTests()) {
        QObject::connect(&reopen, &ReopenChannel::reopenRequested, &delegate, &AppDelegate::handleReopen);
        reopen.listen();
    }
    TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &delegate, &AppDelegate::terminateNow);

    QMetaObject::invokeMethod(&delegate, &AppDelegate::applicationDidFinishLaunching, Qt::QueuedConnection);
    return QApplication::exec();
}
