#include "app/AppPaths.h"

#include <QStandardPaths>

namespace vuro::AppPaths {

QString supportFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Vuro");
}

QString supportFile(const QString& name) { return supportFolder() + QLatin1Char('/') + name; }

}  // namespace vuro::AppPaths
