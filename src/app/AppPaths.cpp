#include "app/AppPaths.h"

#include <QDir>
#include <QStandardPaths>

namespace vuro::AppPaths {

QString supportFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Vuro");
}

QString supportFile(const QString& name) { return supportFolder() + QLatin1Char('/') + name; }

bool ensureSupportFolder() { return QDir().mkpath(supportFolder()); }

}  // namespace vuro::AppPaths
