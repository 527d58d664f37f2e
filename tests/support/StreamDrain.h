#pragma once

#include "base/Error.h"

#include <QString>
#include <exception>
#include <optional>
#include <qcoro/qcoroasyncgenerator.h>
#include <qcoro/qcorotask.h>
#include <vector>

namespace vuro::test {

// Everything a stream yielded, and the error it ended with, if any.
template <typename T>
struct Drained {
    std::vector<T> values;
    std::exception_ptr error;

    // The user-facing sentence of the error; empty when the stream ended normally.
    QString errorMessage() const {
        if (!error) return {};
        try {
            std::rethrow_exception(error);
        } catch (const Error& e) {
            return e.message();
        } catch (const std::exception& e) {
            return QString::fromUtf8(e.what());
        }
    }
    template <typename E>
    const E* errorAs() const {
        if (!error) return nullptr;
        try {
            std::rethrow_exception(error);
        } catch (const E& e) {
            static thread_local std::optional<E> kept;
            kept.emplace(e);
            return &*kept;
        } catch (...) {
            return nullptr;
        }
    }
};

template <typename T>
QCoro::Task<Drained<T>> drainStream(QCoro::AsyncGenerator<T> stream) {
    Drained<T> result;
    try {
        auto it = co_await stream.begin();
        while (it != stream.end()) {
            result.values.push_back(*it);
            co_await ++it;
        }
    } catch (...) {
        result.error = std::current_exception();
    }
    co_return result;
}

// Runs the stream to its end on a nested event loop.
template <typename T>
Drained<T> drain(QCoro::AsyncGenerator<T> stream) {
    return QCoro::waitFor(drainStream(std::move(stream)));
}

}  // namespace vuro::test
