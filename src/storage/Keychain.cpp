#include "storage/Keychain.h"

namespace vuro {

Keychain::KeychainError::KeychainError(Kind kind, int code, QString message)
    : Error(std::move(message)), _kind(kind), _code(code) {}

Keychain::KeychainError Keychain::KeychainError::status(int code, const QString& platformMessage) {
    return {Kind::status, code,
            platformMessage.isEmpty() ? QStringLiteral("Keyring error %1").arg(code) : platformMessage};
}

Keychain::KeychainError Keychain::KeychainError::missingNoteKey() {
    return {Kind::missingNoteKey, 0, QStringLiteral("The encryption key for your notes is missing from the keyring.")};
}

Keychain::KeychainError Keychain::KeychainError::invalidNoteKey() {
    return {Kind::invalidNoteKey, 0, QStringLiteral("The encryption key in the keyring is invalid.")};
}

std::optional<QString> Keychain::readString(const QString& account) {
    const auto value = read(account);
    if (!value) return std::nullopt;
    return QString::fromUtf8(*value);
}

void Keychain::writeString(const QString& value, const QString& account) { write(value.toUtf8(), account); }

}  // namespace vuro
