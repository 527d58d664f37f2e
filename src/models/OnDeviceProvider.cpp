#include "models/OnDeviceProvider.h"

#include "models/ChatModelError.h"

#include <QCoreApplication>

namespace vuro {
namespace {

QCoro::AsyncGenerator<QString> refusedStream() {
    throw ChatModelError::unavailable(OnDeviceProvider::unavailableWords());
    co_yield QString();
}

template <typename T>
QCoro::Task<T> refused() {
    throw ChatModelError::unavailable(OnDeviceProvider::unavailableWords());
    co_return T();
}

}  // namespace

QString OnDeviceProvider::unavailableWords() {
    return QCoreApplication::translate("OnDeviceProvider", "The on-device model is not available.");
}

QString OnDeviceProvider::name() const { return QCoreApplication::translate("OnDeviceProvider", "On-device model"); }

QCoro::AsyncGenerator<QString> OnDeviceProvider::streamText(QString, QString) const { return refusedStream(); }

QCoro::Task<QStringList> OnDeviceProvider::extractTasks(QString, QString) const { return refused<QStringList>(); }

QCoro::Task<GeneratedCommand> OnDeviceProvider::generateCommand(QString, QString) const {
    return refused<GeneratedCommand>();
}

}  // namespace vuro
