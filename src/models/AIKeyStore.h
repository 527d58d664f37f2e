#pragma once

#include "agents/AIProviderKind.h"

#include <QHash>
#include <QMutex>
#include <QString>
#include <optional>

namespace vuro {

class Keychain;

// The API keys of the providers, kept in the keyring under "ai-key.<kind>" and cached in memory
// after the first read, so that a chat doesn't ask the keyring on every request. Thread-safe:
// a mutex guards the cache. Keyring failures other than "not found" throw KeychainError.
// In a test host the store is inert (reads nothing, writes nothing) unless a test asks for a
// live one, so that no test touches the user's keyring by accident.
class AIKeyStore {
public:
    explicit AIKeyStore(Keychain& keychain, bool live = !runningInTestHost());

    static QString account(AIProviderKind kind);

    std::optional<QString> key(AIProviderKind kind);
    // Stores the trimmed text; blank text deletes the key.
    void store(AIProviderKind kind, const QString& key);
    void remove(AIProviderKind kind);

private:
    static bool runningInTestHost();

    Keychain& _keychain;
    bool _live;
    QMutex _lock;
    QHash<QString, std::optional<QString>> _cache;
};

}  // namespace vuro
