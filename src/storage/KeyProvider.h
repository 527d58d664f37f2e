#pragma once

#include <QByteArray>

namespace vuro {

// Where the database gets the note key. allowCreate is true only while the store holds nothing
// sealed, so a lost key never becomes a new key over old data.
class KeyProvider {
public:
    virtual ~KeyProvider() = default;
    // A 256-bit key, or throws (Keychain::KeychainError for a missing or invalid key).
    virtual QByteArray key(bool allowCreate) = 0;
};

}  // namespace vuro
