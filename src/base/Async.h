#pragma once

#include <QPointer>
#include <chrono>
#include <memory>
#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <qcoro/qcorotask.h>
#include <qcoro/qcorotimer.h>

namespace vuro {

// A cancellation flag shared between whoever started a task and the task itself.
// Copies share the flag. Cancelling is idempotent and thread-safe. Work that waits on something
// other than the task's own awaits (a question to the user) registers a callback to hear of it.
class CancelToken {
public:
    CancelToken() : _state(std::make_shared<State>()) {}

    void cancel() const {
        std::map<int, std::function<void()>> callbacks;
        {
            const std::lock_guard<std::mutex> guard(_state->lock);
            if (_state->cancelled.exchange(true)) return;
            callbacks.swap(_state->callbacks);
        }
        for (auto& [id, callback] : callbacks) callback();
    }
    bool isCancelled() const { return _state->cancelled.load(); }

    // Calls callback once, on the thread that cancels; at once when the token is already
    // cancelled (and then returns 0). The returned id takes it back before that.
    int onCancel(std::function<void()> callback) const {
        {
            const std::lock_guard<std::mutex> guard(_state->lock);
            if (!_state->cancelled.load()) {
                const int id = ++_state->nextID;
                _state->callbacks.emplace(id, std::move(callback));
                return id;
            }
        }
        callback();
        return 0;
    }
    void removeOnCancel(int id) const {
        const std::lock_guard<std::mutex> guard(_state->lock);
        _state->callbacks.erase(id);
    }

private:
    struct State {
        std::atomic<bool> cancelled{false};
        std::mutex lock;
        std::map<int, std::function<void()>> callbacks;
        int nextID = 0;
    };
    std::shared_ptr<State> _state;
};

// Sleeps on the main event loop without blocking it.
inline QCoro::Task<> sleepFor(std::chrono::milliseconds duration) { co_await QCoro::sleepFor(duration); }

// The check every task makes after an await: its owner still lives and it was not cancelled.
template <typename T>
bool stillWanted(const QPointer<T>& owner, const CancelToken& token) {
    return !owner.isNull() && !token.isCancelled();
}

}  // namespace vuro
