#pragma once

#include "agents/AgentAttachment.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace vuro::AgentAttachmentText {

// The text a model reads for an attachment it can't take natively: the file's own text, a PDF's
// text (poppler), a document's text (DOCX, ODT, RTF), or for an image the fallback words. An
// empty or unreadable file gives "(empty or unreadable)". Safe on any thread; never throws.
QString extract(const AgentAttachment& info, const QByteArray& data, bool turkish);

// What stands in for an image before a model that can't see it. recognized and labels are what
// the machine could make of the picture; on this platform nothing recognises them, so both are
// usually empty.
QString imageFallback(const QString& recognized, const QStringList& labels, bool turkish);

// Cuts extracted text to a budget of characters, marking that only the start is given.
QString fitted(const QString& text, qsizetype budget, bool turkish);

QString emptyText(bool turkish);

}  // namespace vuro::AgentAttachmentText
