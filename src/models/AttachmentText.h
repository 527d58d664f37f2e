#pragma once

#include "models/ChatAttachment.h"

#include <QList>
#include <QString>

namespace vuro {

// The text of a turn with its attachments folded in before what the user wrote: extracted text
// in an <attachment> element, missing content as a short note, native files as a note only when
// noteNativeFiles is set (for back-ends that pass the file beside the text).
QString attachmentText(bool noteNativeFiles, const QString& text, const QList<ChatAttachment>& attachments);

// Whether agent-facing words are Turkish: the language of the current locale is "tr".
bool agentTextIsTurkish();

}  // namespace vuro
