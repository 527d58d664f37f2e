#include "base/Log.h"

#include <QMutex>
#include <cstdio>

namespace vuro {
namespace {
QMutex sinkMutex;
std::function<void(const QString&)>& sink() {
    static std::function<void(const QString&)> current;
    return current;
}
}  // namespace

void log(const QString& message) {
    const QString line = message.startsWith(QLatin1String("Vuro: ")) ? message : QStringLiteral("Vuro: ") + message;
    QMutexLocker lock(&sinkMutex);
    if (sink()) {
        sink()(line);
        return;
    }
    std::fprintf(stderr, "%s\n", line.toUtf8().constData());
}

void setLogSink(std::function<void(const QString&)> newSink) {
    QMutexLocker lock(&sinkMutex);
    sink() = std::move(newSink);
}

}  // namespace vuro
