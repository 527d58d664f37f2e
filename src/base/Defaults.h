#pragma once

#include <QHash>
#include <QObject>
#include <QSettings>
#include <QStringList>
#include <QVariant>
#include <memory>

namespace vuro {

// The preferences store: a QSettings file whose values can be overridden for one run by
// "-Key value" pairs on the command line (the argument domain). Writes go to the file;
// an argument keeps overriding the key it names. Main thread only.
class Defaults : public QObject {
    Q_OBJECT
public:
    // A store on an explicit file (tests, tools); arguments as QCoreApplication::arguments() gives them.
    Defaults(const QString& filePath, const QStringList& arguments, QObject* parent = nullptr);

    // The application's store: $XDG_CONFIG_HOME/Vuro/Vuro.conf with the process arguments.
    // In a test host it is a file in a temporary folder that lives as long as the process.
    static Defaults& standard();

    QVariant value(const QString& key, const QVariant& fallback = {}) const;
    bool contains(const QString& key) const;
    bool boolValue(const QString& key, bool fallback = false) const;
    int intValue(const QString& key, int fallback = 0) const;
    double doubleValue(const QString& key, double fallback = 0) const;
    QString stringValue(const QString& key, const QString& fallback = {}) const;
    QStringList stringList(const QString& key) const;

    void setValue(const QString& key, const QVariant& value);
    void remove(const QString& key);
    void sync();

    // The "-Key value" pairs of an argument list.
    static QHash<QString, QString> argumentDomain(const QStringList& arguments);

Q_SIGNALS:
    void changed(const QString& key);

private:
    std::unique_ptr<QSettings> _settings;
    QHash<QString, QString> _arguments;
};

}  // namespace vuro
