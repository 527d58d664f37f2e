#include "agents/AgentRouteBudget.h"

namespace vuro {

AgentRouteBudget AgentRouteBudget::of(const Agent& agent) {
    if (agent.cliTool) return {Route::commandLine, 24000, 4000, 8000, 60000};
    switch (agent.provider) {
    case AIProviderKind::claude:
    case AIProviderKind::openAI:
    case AIProviderKind::gemini:
        return {Route::cloud, 24000, 4000, 8000, 120000};
    case AIProviderKind::ollama:
    case AIProviderKind::lmStudio:
        return {Route::localServer, 10000, 2000, 5000, 16000};
    case AIProviderKind::apple:
        break;
    }
    return {Route::onDevice, 1400, 500, 1200, 1800};
}

}  // namespace vuro
