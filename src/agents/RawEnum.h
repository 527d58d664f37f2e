#pragma once

#include "base/Json.h"

#include <QJsonValue>
#include <QLatin1StringView>
#include <QList>
#include <QString>
#include <array>
#include <optional>
#include <utility>

namespace vuro {

// Enumerations whose stored form is the case's name. Each enumeration specialises RawNames with
// its type name (for error messages) and the cases in their listed order:
//
//   template <> struct RawNames<NoteAccess> {
//       static constexpr const char* type = "NoteAccess";
//       static constexpr std::array cases{std::pair{NoteAccess::none, "none"}, ...};
//   };
template <typename E>
struct RawNames;

template <typename E>
QString rawText(E value) {
    for (const auto& [each, name] : RawNames<E>::cases)
        if (each == value) return QLatin1StringView(name);
    return {};
}

// The case with that raw text; none for an unknown text (case counts).
template <typename E>
std::optional<E> fromRawText(const QString& text) {
    for (const auto& [each, name] : RawNames<E>::cases)
        if (text == QLatin1StringView(name)) return each;
    return std::nullopt;
}

// Every case, in listed order.
template <typename E>
QList<E> allCases() {
    QList<E> result;
    for (const auto& entry : RawNames<E>::cases) result.append(entry.first);
    return result;
}

namespace Json {

template <typename E>
QJsonValue fromRaw(E value) {
    return rawText(value);
}

// Decodes a raw text; an unknown one or a non-string throws DecodingError.
template <typename E>
E toRaw(const QJsonValue& value) {
    if (!value.isString())
        throw DecodingError(QStringLiteral("Expected to decode String for %1 but found another type.")
                                .arg(QLatin1StringView(RawNames<E>::type)));
    if (const auto decoded = fromRawText<E>(value.toString())) return *decoded;
    throw DecodingError(QStringLiteral("Cannot initialize %1 from invalid String value %2")
                            .arg(QLatin1StringView(RawNames<E>::type), value.toString()));
}

template <typename E>
E requireRaw(const QJsonObject& object, const QString& key) {
    return toRaw<E>(require(object, key));
}

template <typename E>
std::optional<E> optionalRaw(const QJsonObject& object, const QString& key) {
    const QJsonValue v = object.value(key);
    if (v.isUndefined() || v.isNull()) return std::nullopt;
    return toRaw<E>(v);
}

}  // namespace Json
}  // namespace vuro
