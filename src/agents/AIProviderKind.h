#pragma once

#include "agents/RawEnum.h"

namespace vuro {

// The model back-end of an agent or of the one-shot assistant. Stored as the case's name.
enum class AIProviderKind { apple, claude, openAI, gemini, ollama, lmStudio };

template <>
struct RawNames<AIProviderKind> {
    static constexpr const char* type = "AIProviderKind";
    static constexpr std::array cases{
        std::pair{AIProviderKind::apple, "apple"},
        std::pair{AIProviderKind::claude, "claude"},
        std::pair{AIProviderKind::openAI, "openAI"},
        std::pair{AIProviderKind::gemini, "gemini"},
        std::pair{AIProviderKind::ollama, "ollama"},
        std::pair{AIProviderKind::lmStudio, "lmStudio"},
    };
};

}  // namespace vuro
