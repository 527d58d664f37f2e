#pragma once

#include "agents/RawEnum.h"

namespace vuro {

// What an agent may do with the user's notes. Stored as the case's name.
enum class NoteAccess { none, read, readWrite };

template <>
struct RawNames<NoteAccess> {
    static constexpr const char* type = "NoteAccess";
    static constexpr std::array cases{
        std::pair{NoteAccess::none, "none"},
        std::pair{NoteAccess::read, "read"},
        std::pair{NoteAccess::readWrite, "readWrite"},
    };
};

}  // namespace vuro
