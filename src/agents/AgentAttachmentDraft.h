#pragma once

#include "agents/AgentAttachment.h"

#include <QByteArray>

namespace vuro {

// A file that was accepted for attaching and is not written yet: its record and its bytes
// (an image already re-encoded, everything else as it came).
struct AgentAttachmentDraft {
    AgentAttachment info;
    QByteArray data;
};

}  // namespace vuro
