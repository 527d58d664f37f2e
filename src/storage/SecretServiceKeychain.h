#pragma once

#include "storage/Keychain.h"

namespace vuro {

// The desktop keyring through the Secret Service (libsecret's synchronous calls). Items are
// stored in the default collection with the attributes "service" and "account"; the keyring
// keeps them on this machine. A keyring that is locked, absent or refuses fails with
// KeychainError::status carrying its own message.
class SecretServiceKeychain : public Keychain {
public:
    explicit SecretServiceKeychain(QString service = QString(defaultService)) : Keychain(std::move(service)) {}

    std::optional<QByteArray> read(const QString& account) override;
    void write(const QByteArray& value, const QString& account) override;
    void remove(const QString& account) override;
};

}  // namespace vuro
