#pragma once

// Lets GoogleTest print Qt values readably in failure messages. Include it in every test.
#include <QByteArray>
#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <ostream>

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& value, std::ostream* os) { *os << '"' << value.toStdString() << '"'; }
inline void PrintTo(const QByteArray& value, std::ostream* os) { *os << '"' << value.toStdString() << '"'; }
inline void PrintTo(const QStringList& value, std::ostream* os) {
    *os << '[' << value.join(QStringLiteral(", ")).toStdString() << ']';
}
inline void PrintTo(const QDateTime& value, std::ostream* os) { *os << value.toString(Qt::ISODateWithMs).toStdString(); }
inline void PrintTo(const QJsonObject& value, std::ostream* os) {
    *os << QJsonDocument(value).toJson(QJsonDocument::Compact).toStdString();
}
QT_END_NAMESPACE
