#pragma once

#include "base/Json.h"

#include <QList>
#include <limits>
#include <optional>

namespace vuro::Json {

// Helpers shared by the JSON forms of the agent records: optional fields are left out when
// empty and may be missing when read; arrays of records decode element by element.

inline void putOptional(QJsonObject& object, const QString& key, const std::optional<QString>& value) {
    if (value) object.insert(key, *value);
}

inline void putOptional(QJsonObject& object, const QString& key, const std::optional<QDateTime>& value) {
    if (value) object.insert(key, fromDate(*value));
}

inline std::optional<QDateTime> optionalDate(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    return toDate(v);
}

inline std::optional<bool> optionalBool(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    if (!v.isBool()) throw DecodingError(QStringLiteral("Expected to decode Bool for key \"%1\".").arg(key));
    return v.toBool();
}

inline std::optional<QJsonArray> optionalArray(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    if (!v.isArray()) throw DecodingError(QStringLiteral("Expected to decode Array for key \"%1\".").arg(key));
    return v.toArray();
}

inline std::optional<QJsonObject> optionalObject(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    if (!v.isObject()) throw DecodingError(QStringLiteral("Expected to decode Dictionary for key \"%1\".").arg(key));
    return v.toObject();
}

inline int requireInt(const QJsonObject& object, const QString& key) {
    const qint64 value = requireInteger(object, key);
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
        throw DecodingError(QStringLiteral("Number for key \"%1\" does not fit in Int.").arg(key));
    return static_cast<int>(value);
}

template <typename T>
QJsonArray fromRecords(const QList<T>& records) {
    QJsonArray array;
    for (const T& record : records) array.append(record.toJson());
    return array;
}

// T::fromJson of every element; a non-object element throws DecodingError.
template <typename T>
QList<T> toRecords(const QJsonArray& array) {
    QList<T> records;
    records.reserve(array.size());
    for (const QJsonValue& v : array) {
        if (!v.isObject()) throw DecodingError(QStringLiteral("Expected to decode Dictionary but found another type."));
        records.append(T::fromJson(v.toObject()));
    }
    return records;
}

template <typename T>
QList<T> requireRecords(const QJsonObject& object, const QString& key) {
    return toRecords<T>(requireArray(object, key));
}

// The payload object of a tagged variant's case; a case's value must itself be an object.
inline QJsonObject casePayload(const QJsonValue& value) {
    if (!value.isObject()) throw DecodingError(QStringLiteral("Expected to decode Dictionary but found another type."));
    return value.toObject();
}

[[noreturn]] inline void unknownCase() {
    // An unknown case name counts like a missing one: no key the variant knows.
    throw DecodingError(QStringLiteral("Invalid number of keys found, expected one."));
}

}  // namespace vuro::Json
