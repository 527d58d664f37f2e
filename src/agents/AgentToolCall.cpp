#include "agents/AgentToolCall.h"

#include "agents/RecordHash.h"

namespace vuro {

size_t qHash(const AgentToolCall& call, size_t seed) {
    return RecordHash::combine(seed, call.id, call.name, call.arguments);
}

}  // namespace vuro
