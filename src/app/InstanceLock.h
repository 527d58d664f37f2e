#pragma once

#include <QString>
#include <optional>
#include <variant>

namespace vuro {

// One running copy per user. The holder keeps an exclusive flock on Vuro.lock for its whole
// life, and the file holds its process id so that a second copy can say whom it hands over to.
// The lock is advisory: when the file can't be opened the program runs anyway. A crashed
// holder's lock dies with it, so a stale file is simply taken over. Main thread only.
class InstanceLock {
public:
    struct Acquired {
        bool operator==(const Acquired&) const = default;
    };
    struct HeldBy {
        std::optional<qint32> pid;  // none when the file holds nothing readable
        bool operator==(const HeldBy&) const = default;
    };
    using Result = std::variant<Acquired, HeldBy>;

    explicit InstanceLock(QString url);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    // The process's lock: Vuro.lock in the support folder.
    static InstanceLock& shared();

    Result acquire();

    // The holder's id as the lock file tells it: a signed 32-bit decimal, blanks around it
    // allowed; none for empty text, garbage or overflow.
    static std::optional<qint32> parseProcessID(const QByteArray& bytes);

    // Tells the user on standard error, asks the running copy to come forward, and ends this
    // process with status 0.
    [[noreturn]] static void handOver(std::optional<qint32> pid);

    const QString url;
    int descriptor = -1;
};

}  // namespace vuro
