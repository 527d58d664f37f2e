#include "base/Json.h"

#include <cmath>

namespace vuro::Json {
namespace {
[[noreturn]] void missing(const QString& key) {
    throw DecodingError(QStringLiteral("No value associated with key \"%1\".").arg(key));
}
[[noreturn]] void mismatch(const QString& key, const char* expected) {
    throw DecodingError(QStringLiteral("Expected to decode %1 for key \"%2\".").arg(QLatin1String(expected), key));
}
}  // namespace

std::pair<QString, QJsonValue> singleKey(const QJsonObject& object) {
    if (object.size() != 1) throw DecodingError(QStringLiteral("Invalid number of keys found, expected one."));
    return {object.begin().key(), object.begin().value()};
}

QJsonValue require(const QJsonObject& object, const QString& key) {
    const auto it = object.constFind(key);
    if (it == object.constEnd() || it->isNull()) missing(key);
    return *it;
}

QString requireString(const QJsonObject& object, const QString& key) {
    const QJsonValue v = require(object, key);
    if (!v.isString()) mismatch(key, "String");
    return v.toString();
}

double requireDouble(const QJsonObject& object, const QString& key) {
    const QJsonValue v = require(object, key);
    if (!v.isDouble()) mismatch(key, "Double");
    return v.toDouble();
}

qint64 requireInteger(const QJsonObject& object, const QString& key) {
    const double d = requireDouble(object, key);
    if (std::trunc(d) != d || std::abs(d) > 9.0e15) mismatch(key, "Int");
    return static_cast<qint64>(d);
}

bool requireBool(const QJsonObject& object, const QString& key) {
    const QJsonValue v = require(object, key);
    if (!v.isBool()) mismatch(key, "Bool");
    return v.toBool();
}

QJsonObject requireObject(const QJsonObject& object, const QString& key) {
    const QJsonValue v = require(object, key);
    if (!v.isObject()) mismatch(key, "Dictionary");
    return v.toObject();
}

QJsonArray requireArray(const QJsonObject& object, const QString& key) {
    const QJsonValue v = require(object, key);
    if (!v.isArray()) mismatch(key, "Array");
    return v.toArray();
}

QDateTime requireDate(const QJsonObject& object, const QString& key) { return toDate(require(object, key)); }

std::optional<QString> optionalString(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    if (!v.isString()) mismatch(key, "String");
    return v.toString();
}

std::optional<double> optionalDouble(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    if (!v.isDouble()) mismatch(key, "Double");
    return v.toDouble();
}

QJsonValue fromDate(const QDateTime& date) { return date.toUTC().toString(Qt::ISODateWithMs); }

QDateTime toDate(const QJsonValue& value) {
    if (!value.isString()) throw DecodingError(QStringLiteral("Expected date string to be ISO8601-formatted."));
    QDateTime date = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    if (!date.isValid()) throw DecodingError(QStringLiteral("Expected date string to be ISO8601-formatted."));
    return date.toLocalTime();
}

QJsonArray fromStrings(const QStringList& strings) { return QJsonArray::fromStringList(strings); }

QStringList toStrings(const QJsonArray& array) {
    QStringList result;
    result.reserve(array.size());
    for (const QJsonValue& v : array) {
        if (!v.isString()) throw DecodingError(QStringLiteral("Expected to decode String but found another type."));
        result.append(v.toString());
    }
    return result;
}

}  // namespace vuro::Json
