#include "storage/InMemoryKeychain.h"

namespace vuro {

void InMemoryKeychain::throwIfFailing() {
    if (!failNext) return;
    const KeychainError error = *failNext;
    failNext.reset();
    throw error;
}

std::optional<QByteArray> InMemoryKeychain::read(const QString& account) {
    throwIfFailing();
    const auto found = items.constFind(account);
    if (found == items.constEnd()) return std::nullopt;
    return *found;
}

void InMemoryKeychain::write(const QByteArray& value, const QString& account) {
    throwIfFailing();
    items.insert(account, value);
}

void InMemoryKeychain::remove(const QString& account) {
    throwIfFailing();
    items.remove(account);
}

}  // namespace vuro
