#pragma once

#include "inbox/UnreadDropStore.h"

namespace vuro {

class Defaults;

// Unread ids as an array of strings under one key of the preferences (sorted, so the file
// doesn't change when the set doesn't).
class DefaultsUnreadDropStore : public UnreadDropStore {
public:
    DefaultsUnreadDropStore(Defaults& defaults, QString key = QStringLiteral("unreadDropNoteIDs"))
        : _defaults(defaults), _key(std::move(key)) {}
    QSet<QString> load() override;
    void save(const QSet<QString>& ids) override;

private:
    Defaults& _defaults;
    QString _key;
};

}  // namespace vuro
