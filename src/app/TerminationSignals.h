#pragma once

#include <QObject>

class QSocketNotifier;

namespace vuro {

// Turns SIGTERM, SIGINT and SIGHUP (a session ending, Ctrl-C in a terminal) into a Qt signal on
// the main thread, so that the program leaves through its quit path and writes unsaved notes
// instead of dying in the middle of a debounce. One instance per process.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested(int signalNumber);

private:
    QSocketNotifier* _notifier = nullptr;
};

}  // namespace vuro
