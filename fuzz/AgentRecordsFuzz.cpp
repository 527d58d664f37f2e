// Stored agent records come back from disk and from templates: whatever the bytes, decoding
// either gives a record whose JSON reads back to the same record, or throws DecodingError.
#include "agents/Agent.h"
#include "agents/AgentMessage.h"

#include <QJsonDocument>
#include <cstdint>
#include <cstdlib>

namespace {

template <typename T>
void check(const QJsonObject& object) {
    try {
        const T record = T::fromJson(object);
        if (!(T::fromJson(record.toJson()) == record)) std::abort();
    } catch (const vuro::DecodingError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size)));
    if (!document.isObject()) return 0;
    const QJsonObject object = document.object();
    check<vuro::Agent>(object);
    check<vuro::AgentJob>(object);
    check<vuro::AgentMessage>(object);
    check<vuro::AgentUndo>(object);
    check<vuro::AgentJob::Trigger>(object);
    check<vuro::Recurrence>(object);
    return 0;
}
