#pragma once

#include "base/Error.h"

#include <QByteArray>
#include <QString>

namespace vuro {

// Seals what the user wrote with one AES-256-GCM key. A sealed blob is the 12-byte random
// nonce, the ciphertext (as long as the plaintext) and the 16-byte tag: no header, no version,
// no associated data, so a sealed empty text is 28 bytes. Text is sealed as UTF-8.
// An immutable value: copies share nothing mutable and may be used from any thread.
class BodyCipher {
public:
    // The one failure of opening (and of sealing, should the primitive fail):
    // "The note could not be decrypted."
    class CipherError : public Error {
    public:
        CipherError();
    };

    static constexpr int keySize = 32;
    static constexpr int nonceSize = 12;
    static constexpr int tagSize = 16;

    // key must hold exactly keySize bytes.
    explicit BodyCipher(QByteArray key);

    QByteArray seal(const QByteArray& bytes) const;
    QByteArray seal(const QString& text) const;
    QByteArray open(const QByteArray& blob) const;      // throws CipherError
    QString openText(const QByteArray& blob) const;     // throws CipherError, also for bytes that aren't UTF-8

    // keySize bytes from the system's random source.
    static QByteArray randomKey();

private:
    QByteArray _key;
};

}  // namespace vuro
