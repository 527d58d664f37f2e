#pragma once

#include "agents/AgentAttachment.h"
#include "agents/ui/ChatCard.h"

class QToolButton;

namespace vuro {

// A file waiting to go with the next message: its kind, name and size, and a button that takes
// it off again.
class AttachmentChip : public ChatCard {
    Q_OBJECT
public:
    explicit AttachmentChip(const AgentAttachment& attachment, QWidget* parent = nullptr);

    const QString& attachmentID() const { return _id; }
    QToolButton* removeButton() const { return _remove; }

    static QString symbol(AgentAttachment::Kind kind);

Q_SIGNALS:
    void removeRequested(const QString& attachmentID);

private:
    QString _id;
    QToolButton* _remove;
};

}  // namespace vuro
