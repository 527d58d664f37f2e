#pragma once

#include "agents/RawEnum.h"

namespace vuro {

// A command-line coding tool that can stand in for a model back-end. Stored as the case's name.
enum class CLIToolKind { claudeCode, codex, gemini, openCode, cursor };

template <>
struct RawNames<CLIToolKind> {
    static constexpr const char* type = "CLIToolKind";
    static constexpr std::array cases{
        std::pair{CLIToolKind::claudeCode, "claudeCode"},
        std::pair{CLIToolKind::codex, "codex"},
        std::pair{CLIToolKind::gemini, "gemini"},
        std::pair{CLIToolKind::openCode, "openCode"},
        std::pair{CLIToolKind::cursor, "cursor"},
    };
};

}  // namespace vuro
