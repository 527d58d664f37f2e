#pragma once

#include "storage/KeyProvider.h"
#include "storage/Keychain.h"

#include <memory>

namespace vuro {

// The note key kept as 32 raw bytes in the keychain item "note-body-key". An item of any other
// size is refused and left as it is; a missing item is replaced by a new random key only when
// the caller allows it.
class KeychainKeyProvider : public KeyProvider {
public:
    static constexpr QLatin1StringView account{"note-body-key"};

    explicit KeychainKeyProvider(std::shared_ptr<Keychain> keychain) : _keychain(std::move(keychain)) {}

    QByteArray key(bool allowCreate) override;

    const std::shared_ptr<Keychain>& keychain() const { return _keychain; }

private:
    std::shared_ptr<Keychain> _keychain;
};

}  // namespace vuro
