#pragma once

#include <QHashFunctions>
#include <QList>
#include <QMap>
#include <optional>
#include <type_traits>
#include <variant>

namespace vuro::RecordHash {

// Hashing of the agent records. Qt's qHashMulti can't see optionals and variants, so the records
// hash their fields through combine(), which knows them and forwards everything else to qHash.
template <typename T>
size_t one(const T& value, size_t seed);
template <typename T>
size_t one(const std::optional<T>& value, size_t seed);
template <typename... T>
size_t one(const std::variant<T...>& value, size_t seed);
template <typename T>
size_t one(const QList<T>& values, size_t seed);
template <typename K, typename V>
size_t one(const QMap<K, V>& map, size_t seed);

template <typename... T>
size_t combine(size_t seed, const T&... values) {
    size_t h = seed;
    ((h ^= one(values, 0) + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2)), ...);
    return h;
}

template <typename T>
size_t one(const std::optional<T>& value, size_t seed) {
    return value ? combine(seed, true, *value) : combine(seed, false);
}

template <typename... T>
size_t one(const std::variant<T...>& value, size_t seed) {
    return std::visit([&](const auto& alternative) { return combine(seed, value.index(), alternative); }, value);
}

template <typename T>
size_t one(const QList<T>& values, size_t seed) {
    size_t h = combine(seed, values.size());
    for (const T& each : values) h = combine(h, each);
    return h;
}

template <typename K, typename V>
size_t one(const QMap<K, V>& map, size_t seed) {
    size_t h = combine(seed, map.size());
    for (auto it = map.cbegin(); it != map.cend(); ++it) h = combine(h, it.key(), it.value());
    return h;
}

template <typename T>
size_t one(const T& value, size_t seed) {
    if constexpr (std::is_enum_v<T>) {
        return ::qHash(static_cast<std::underlying_type_t<T>>(value), seed);
    } else {
        using ::qHash;
        return qHash(value, seed);
    }
}

}  // namespace vuro::RecordHash
