#pragma once

#include <QTimer>
#include <chrono>
#include <functional>

namespace vuro {

// One delayed or repeating job of a deck. The desktop's is a QTimer on the main thread; tests
// drive a manual one against a fake clock. Destroying the timer cancels its job.
class DeckTimer {
public:
    virtual ~DeckTimer() = default;
    // Replaces whatever job was set before.
    virtual void start(std::chrono::milliseconds delay, bool repeating, std::function<void()> job) = 0;
    virtual void stop() = 0;
    virtual bool isActive() const = 0;
};

class QtDeckTimer final : public DeckTimer {
public:
    QtDeckTimer();
    void start(std::chrono::milliseconds delay, bool repeating, std::function<void()> job) override;
    void stop() override;
    bool isActive() const override { return _timer.isActive(); }

private:
    QTimer _timer;
    std::function<void()> _job;
};

}  // namespace vuro
