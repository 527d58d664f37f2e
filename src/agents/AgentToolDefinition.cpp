#include "agents/AgentToolDefinition.h"

#include "agents/RecordHash.h"

namespace vuro {

size_t qHash(const AgentToolDefinition::Parameter::Kind& kind, size_t seed) {
    return RecordHash::combine(seed, kind.which, kind.options);
}

size_t qHash(const AgentToolDefinition::Parameter& parameter, size_t seed) {
    return RecordHash::combine(seed, parameter.name, parameter.description, parameter.kind, parameter.required);
}

size_t qHash(const AgentToolDefinition& spec, size_t seed) {
    return RecordHash::combine(seed, spec.name, spec.description, spec.parameters, spec.writes, spec.inputSchema);
}

}  // namespace vuro
