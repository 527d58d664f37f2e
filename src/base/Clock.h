#pragma once

#include <QDateTime>
#include <functional>

namespace vuro {

// Every "now" of the program goes through here so that tests can set the time.
// Main thread only for setting; reading is cheap and thread-safe while no test changes it.
class Clock {
public:
    static QDateTime now();

    // Replaces the source of now() until the returned guard is destroyed.
    class Override {
    public:
        explicit Override(QDateTime fixed);
        explicit Override(std::function<QDateTime()> source);
        ~Override();
        Override(const Override&) = delete;
        Override& operator=(const Override&) = delete;
        void set(QDateTime fixed);                 // moves a fixed clock
        void advance(qint64 milliseconds);        // moves a fixed clock forward

    private:
        std::function<QDateTime()> _previous;
        QDateTime _fixed;
    };
};

}  // namespace vuro
