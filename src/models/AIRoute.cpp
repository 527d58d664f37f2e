#include "models/AIRoute.h"

#include <QCoreApplication>

namespace vuro {

QString AIRoute::label() const {
    switch (_kind) {
    case Kind::cloud: return _detail;
    case Kind::localServer: return QCoreApplication::translate("AIRoute", "Local server");
    case Kind::onDevice: return QCoreApplication::translate("AIRoute", "On this computer");
    }
    return {};
}

}  // namespace vuro
