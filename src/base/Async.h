#pragma once

#include <QPointer>
#include <chrono>
#include <memory>
#include <atomic>
#include <qcoro/qcorotask.h>
#include <qcoro/qcorotimer.h>

namespace vuro {

// A cancellation flag shared between whoever started a task and the task itself.
// Copies share the flag. Cancelling is idempotent and thread-safe.
class CancelToken {
public:
    CancelToken() : _flag(std::make_shared<std::atomic<bool>>(false)) {}
    void cancel() const { _flag->store(true); }
    bool isCancelled() const { return _flag->load(); }

private:
    std::shared_ptr<std::atomic<bool>> _flag;
};

// Sleeps on the main event loop without blocking it.
inline QCoro::Task<> sleepFor(std::chrono::milliseconds duration) { co_await QCoro::sleepFor(duration); }

// The check every task makes after an await: its owner still lives and it was not cancelled.
template <typename T>
bool stillWanted(const QPointer<T>& owner, const CancelToken& token) {
    return !owner.isNull() && !token.isCancelled();
}

}  // namespace vuro
