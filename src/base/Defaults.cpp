#include "base/Defaults.h"

#include "base/TestHost.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace vuro {
namespace {
QStringList processArguments() {
    QFile file(QStringLiteral("/proc/self/cmdline"));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QStringList arguments;
    for (const QByteArray& argument : file.readAll().split('\0')) arguments.append(QString::fromLocal8Bit(argument));
    if (!arguments.isEmpty() && arguments.last().isEmpty()) arguments.removeLast();
    return arguments;
}
}  // namespace

Defaults::Defaults(const QString& filePath, const QStringList& arguments, QObject* parent)
    : QObject(parent), _settings(std::make_unique<QSettings>(filePath, QSettings::IniFormat)),
      _arguments(argumentDomain(arguments)) {}

Defaults& Defaults::standard() {
    static Defaults* instance = [] {
        // The process entry reads defaults before the application object exists.
        const QStringList arguments = QCoreApplication::instance() ? QCoreApplication::arguments() : processArguments();
        if (isRunningTests()) {
            static QTemporaryDir folder;
            return new Defaults(folder.filePath(QStringLiteral("Vuro.conf")), arguments);
        }
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/Vuro");
        QDir().mkpath(folder);
        return new Defaults(folder + QStringLiteral("/Vuro.conf"), arguments);
    }();
    return *instance;
}

QHash<QString, QString> Defaults::argumentDomain(const QStringList& arguments) {
    QHash<QString, QString> domain;
    for (qsizetype i = 1; i + 1 < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument.size() > 1 && argument.startsWith(QLatin1Char('-')) && !argument.startsWith(QLatin1String("--"))) {
            domain.insert(argument.mid(1), arguments[i + 1]);
            ++i;
        }
    }
    return domain;
}

QVariant Defaults::value(const QString& key, const QVariant& fallback) const {
    if (const auto it = _arguments.constFind(key); it != _arguments.cend()) return *it;
    return _settings->value(key, fallback);
}

bool Defaults::contains(const QString& key) const { return _arguments.contains(key) || _settings->contains(key); }

bool Defaults::boolValue(const QString& key, bool fallback) const {
    const QVariant v = value(key);
    if (!v.isValid()) return fallback;
    const QString text = v.toString().trimmed().toLower();
    if (text == QLatin1String("yes") || text == QLatin1String("true") || text == QLatin1String("1")) return true;
    if (text == QLatin1String("no") || text == QLatin1String("false") || text == QLatin1String("0")) return false;
    return fallback;
}

int Defaults::intValue(const QString& key, int fallback) const {
    bool ok = false;
    const int result = value(key).toInt(&ok);
    return ok ? result : fallback;
}

double Defaults::doubleValue(const QString& key, double fallback) const {
    bool ok = false;
    const double result = value(key).toDouble(&ok);
    return ok ? result : fallback;
}

QString Defaults::stringValue(const QString& key, const QString& fallback) const {
    const QVariant v = value(key);
    return v.isValid() ? v.toString() : fallback;
}

QStringList Defaults::stringList(const QString& key) const { return value(key).toStringList(); }

void Defaults::setValue(const QString& key, const QVariant& newValue) {
    _settings->setValue(key, newValue);
    Q_EMIT changed(key);
}

void Defaults::remove(const QString& key) {
    _settings->remove(key);
    Q_EMIT changed(key);
}

void Defaults::sync() { _settings->sync(); }

}  // namespace vuro
