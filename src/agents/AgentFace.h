#pragma once

#include <QJsonValue>

namespace vuro {

// An agent's drawn face. Its inner form belongs to the face editor; the records keep it as the
// JSON value it was written as, so that it survives loading and saving untouched.
struct AgentFace {
    QJsonValue value;

    bool operator==(const AgentFace&) const = default;
};

inline size_t qHash(const AgentFace& face, size_t seed = 0) { return qHash(face.value, seed); }

}  // namespace vuro
