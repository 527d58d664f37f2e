#include "inbox/DefaultsUnreadDropStore.h"

#include "base/Defaults.h"

namespace vuro {

QSet<QString> DefaultsUnreadDropStore::load() {
    const QStringList ids = _defaults.stringList(_key);
    return {ids.cbegin(), ids.cend()};
}

void DefaultsUnreadDropStore::save(const QSet<QString>& ids) {
    QStringList sorted(ids.cbegin(), ids.cend());
    sorted.sort();
    _defaults.setValue(_key, sorted);
}

}  // namespace vuro
