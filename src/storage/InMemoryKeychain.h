#pragma once

#include "storage/Keychain.h"

#include <QHash>

namespace vuro {

// A keychain that lives and dies with the object, for tests and for processes that must not
// touch the user's keyring. failNext makes the next operation throw once, like a locked keyring.
class InMemoryKeychain : public Keychain {
public:
    explicit InMemoryKeychain(QString service = QString(defaultService)) : Keychain(std::move(service)) {}

    std::optional<QByteArray> read(const QString& account) override;
    void write(const QByteArray& value, const QString& account) override;
    void remove(const QString& account) override;

    QHash<QString, QByteArray> items;
    std::optional<KeychainError> failNext;

private:
    void throwIfFailing();
};

}  // namespace vuro
