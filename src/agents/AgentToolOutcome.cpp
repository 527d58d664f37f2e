#include "agents/AgentToolOutcome.h"

#include "agents/RecordHash.h"

namespace vuro {

size_t qHash(const AgentToolOutcome& outcome, size_t seed) {
    return RecordHash::combine(seed, outcome.output, outcome.action, outcome.moreActions);
}

}  // namespace vuro
