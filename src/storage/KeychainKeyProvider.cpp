#include "storage/KeychainKeyProvider.h"

#include "storage/BodyCipher.h"

namespace vuro {

QByteArray KeychainKeyProvider::key(bool allowCreate) {
    const QString name(account);
    if (const auto stored = _keychain->read(name)) {
        if (stored->size() != BodyCipher::keySize) throw Keychain::KeychainError::invalidNoteKey();
        return *stored;
    }
    if (!allowCreate) throw Keychain::KeychainError::missingNoteKey();
    QByteArray fresh = BodyCipher::randomKey();
    _keychain->write(fresh, name);
    return fresh;
}

}  // namespace vuro
