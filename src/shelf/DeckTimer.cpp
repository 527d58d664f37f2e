#include "shelf/DeckTimer.h"

namespace vuro {

QtDeckTimer::QtDeckTimer() {
    _timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&_timer, &QTimer::timeout, [this] {
        // The job may restart or stop this timer, so it runs from a copy.
        const auto job = _job;
        if (job) job();
    });
}

void QtDeckTimer::start(std::chrono::milliseconds delay, bool repeating, std::function<void()> job) {
    _job = std::move(job);
    _timer.setSingleShot(!repeating);
    _timer.start(delay);
}

void QtDeckTimer::stop() { _timer.stop(); }

}  // namespace vuro
