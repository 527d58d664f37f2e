#include "models/AIKeyStore.h"

#include "base/TestHost.h"
#include "base/Text.h"
#include "storage/Keychain.h"

namespace vuro {

AIKeyStore::AIKeyStore(Keychain& keychain, bool live) : _keychain(keychain), _live(live) {}

bool AIKeyStore::runningInTestHost() { return isRunningTests(); }

QString AIKeyStore::account(AIProviderKind kind) { return QStringLiteral("ai-key.") + rawText(kind); }

std::optional<QString> AIKeyStore::key(AIProviderKind kind) {
    if (!_live) return std::nullopt;
    const QString name = account(kind);
    QMutexLocker locker(&_lock);
    if (const auto it = _cache.constFind(name); it != _cache.cend()) return *it;
    const std::optional<QString> value = _keychain.readString(name);
    _cache.insert(name, value);
    return value;
}

void AIKeyStore::store(AIProviderKind kind, const QString& key) {
    const QString trimmed = Text::trimmed(key);
    if (trimmed.isEmpty()) {
        remove(kind);
        return;
    }
    if (!_live) return;
    const QString name = account(kind);
    QMutexLocker locker(&_lock);
    _keychain.writeString(trimmed, name);
    _cache.insert(name, trimmed);
}

void AIKeyStore::remove(AIProviderKind kind) {
    if (!_live) return;
    const QString name = account(kind);
    QMutexLocker locker(&_lock);
    _keychain.remove(name);
    _cache.insert(name, std::nullopt);
}

}  // namespace vuro
