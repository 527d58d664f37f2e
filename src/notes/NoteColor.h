#pragma once

#include <optional>

namespace vuro {

// The eight note colours, with their stored integer values.
enum class NoteColor { lemon = 0, peach = 1, rose = 2, lilac = 3, sky = 4, mint = 5, sand = 6, slate = 7 };

// The colour with that raw value, or none outside 0…7.
inline std::optional<NoteColor> noteColorFromRaw(int raw) {
    if (raw < 0 || raw > 7) return std::nullopt;
    return static_cast<NoteColor>(raw);
}

// The colour of a number masked with 7, as every caller deriving a colour from a count does.
inline NoteColor noteColorMasked(long long number) { return static_cast<NoteColor>(number & 7); }

inline int rawValue(NoteColor color) { return static_cast<int>(color); }

}  // namespace vuro
