#include "app/InstanceLock.h"

#include "app/AppPaths.h"
#include "app/ReopenChannel.h"
#include "base/Text.h"

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vuro {

InstanceLock::InstanceLock(QString lockUrl) : url(std::move(lockUrl)) {}

InstanceLock::~InstanceLock() {
    if (descriptor >= 0) ::close(descriptor);
}

InstanceLock& InstanceLock::shared() {
    static InstanceLock lock(AppPaths::supportFile(QStringLiteral("Vuro.lock")));
    return lock;
}

InstanceLock::Result InstanceLock::acquire() {
    if (descriptor >= 0) return Acquired{};
    QDir().mkpath(QFileInfo(url).absolutePath());  // a failure here is for open to report
    const QByteArray path = QFile::encodeName(url);
    int fd = -1;
    do {
        fd = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    } while (fd < 0 && errno == EINTR);
    if (fd < 0) return Acquired{};

    if (::flock(fd, LOCK_EX | LOCK_NB) == 0) {
        descriptor = fd;
        const QByteArray pid = QByteArray::number(qint64(::getpid()));
        // A failed write leaves the lock held; a second copy's sentence then just lacks the id.
        if (::ftruncate(fd, 0) == 0) (void)!::pwrite(fd, pid.constData(), size_t(pid.size()), 0);
        return Acquired{};
    }

    char buffer[16];
    const ssize_t count = ::pread(fd, buffer, sizeof buffer, 0);
    ::close(fd);
    return HeldBy{parseProcessID(QByteArray(buffer, count > 0 ? qsizetype(count) : 0))};
}

std::optional<qint32> InstanceLock::parseProcessID(const QByteArray& bytes) {
    const QString text = Text::trimmed(QString::fromUtf8(bytes));
    if (text.isEmpty()) return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool sign = i == 0 && (c == QLatin1Char('+') || c == QLatin1Char('-')) && text.size() > 1;
        if (!sign && (c < QLatin1Char('0') || c > QLatin1Char('9'))) return std::nullopt;
    }
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    return ok ? std::optional<qint32>(value) : std::nullopt;
}

void InstanceLock::handOver(std::optional<qint32> pid) {
    const QByteArray line = pid ? QByteArrayLiteral("Vuro is already running (pid ") + QByteArray::number(*pid) +
                                      QByteArrayLiteral("); opening it instead.\n")
                                : QByteArrayLiteral("Vuro is already running; opening it instead.\n");
    std::fputs(line.constData(), stderr);
    std::fflush(stderr);
    ReopenChannel::sendReopen();
    std::exit(0);
}

}  // namespace vuro
