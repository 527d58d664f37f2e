#pragma once

#include "base/Error.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <optional>
#include <utility>

namespace vuro {

// A record's JSON form could not be decoded. message() says what was wrong.
class DecodingError : public Error {
public:
    using Error::Error;
};

namespace Json {

// The one key of a tagged variant's object, and its value.
// Throws DecodingError "Invalid number of keys found, expected one." for any other count.
std::pair<QString, QJsonValue> singleKey(const QJsonObject& object);

// Required values: throw DecodingError naming the key when it is missing or of the wrong type.
QJsonValue require(const QJsonObject& object, const QString& key);
QString requireString(const QJsonObject& object, const QString& key);
double requireDouble(const QJsonObject& object, const QString& key);
qint64 requireInteger(const QJsonObject& object, const QString& key);
bool requireBool(const QJsonObject& object, const QString& key);
QJsonObject requireObject(const QJsonObject& object, const QString& key);
QJsonArray requireArray(const QJsonObject& object, const QString& key);
QDateTime requireDate(const QJsonObject& object, const QString& key);

// Optional values: none when the key is missing or null; DecodingError when of the wrong type.
std::optional<QString> optionalString(const QJsonObject& object, const QString& key);
std::optional<double> optionalDouble(const QJsonObject& object, const QString& key);

// Dates are written as ISO 8601 in UTC with milliseconds ("2026-05-01T09:30:00.000Z").
QJsonValue fromDate(const QDateTime& date);
QDateTime toDate(const QJsonValue& value);  // throws DecodingError

QJsonArray fromStrings(const QStringList& strings);
QStringList toStrings(const QJsonArray& array);  // throws DecodingError on a non-string element

}  // namespace Json
}  // namespace vuro
