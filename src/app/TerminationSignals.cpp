#include "app/TerminationSignals.h"

#include "base/Log.h"

#include <QSocketNotifier>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace vuro {
namespace {
int pipeEnds[2] = {-1, -1};

void onSignal(int number) {
    const unsigned char byte = static_cast<unsigned char>(number);
    (void)!::write(pipeEnds[1], &byte, 1);  // async-signal-safe; a full pipe already has a request
}
}  // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, pipeEnds) != 0) {
        log(QStringLiteral("termination signals are not handled: no socket pair"));
        return;
    }
    _notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(_notifier, &QSocketNotifier::activated, this, [this] {
        unsigned char byte = 0;
        while (::read(pipeEnds[0], &byte, 1) == 1) Q_EMIT terminationRequested(byte);
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) ::sigaction(number, &action, nullptr);
}

TerminationSignals::~TerminationSignals() {
    if (!_notifier) return;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) ::sigaction(number, &action, nullptr);
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds[0] = pipeEnds[1] = -1;
}

}  // namespace vuro
