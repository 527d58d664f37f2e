#pragma once

#include "models/ChatAttachment.h"

#include <QList>
#include <QString>

namespace vuro {

// One turn of a conversation as a back-end receives it.
struct ChatTurn {
    enum class Role { user, assistant };

    Role role = Role::user;
    QString text;
    QList<ChatAttachment> attachments;

    // "user" or "assistant", as the vendors' formats spell roles.
    QString roleText() const { return role == Role::user ? QStringLiteral("user") : QStringLiteral("assistant"); }
    bool hasNativeAttachment() const {
        for (const ChatAttachment& attachment : attachments)
            if (attachment.isNative()) return true;
        return false;
    }
    bool operator==(const ChatTurn&) const = default;
};

}  // namespace vuro
