#include "storage/BodyCipher.h"

#include <QStringDecoder>
#include <limits>
#include <memory>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <stdexcept>

namespace vuro {

namespace {

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

CipherContext newContext() {
    CipherContext context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    if (!context) throw BodyCipher::CipherError();
    return context;
}

const unsigned char* bytes(const QByteArray& data) { return reinterpret_cast<const unsigned char*>(data.constData()); }
unsigned char* bytes(QByteArray& data) { return reinterpret_cast<unsigned char*>(data.data()); }

}  // namespace

BodyCipher::CipherError::CipherError() : Error(QStringLiteral("The note could not be decrypted.")) {}

BodyCipher::BodyCipher(QByteArray key) : _key(std::move(key)) {
    if (_key.size() != keySize) throw std::invalid_argument("BodyCipher needs a 256-bit key");
}

QByteArray BodyCipher::randomKey() {
    QByteArray key(keySize, Qt::Uninitialized);
    if (RAND_bytes(bytes(key), keySize) != 1) throw std::runtime_error("no random bytes for a new key");
    return key;
}

QByteArray BodyCipher::seal(const QByteArray& plain) const {
    // OpenSSL counts in int; nothing the user writes comes near 2 GB, but refuse rather than wrap.
    if (plain.size() > std::numeric_limits<int>::max() - nonceSize - tagSize) throw CipherError();
    QByteArray blob(nonceSize + plain.size() + tagSize, Qt::Uninitialized);
    unsigned char* nonce = bytes(blob);
    unsigned char* out = nonce + nonceSize;
    if (RAND_bytes(nonce, nonceSize) != 1) throw CipherError();

    auto context = newContext();
    int written = 0;
    int finished = 0;
    if (EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, bytes(_key), nonce) != 1 ||
        EVP_EncryptUpdate(context.get(), out, &written, bytes(plain), int(plain.size())) != 1 ||
        EVP_EncryptFinal_ex(context.get(), out + written, &finished) != 1 ||
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, tagSize, out + plain.size()) != 1)
        throw CipherError();
    return blob;
}

QByteArray BodyCipher::seal(const QString& text) const { return seal(text.toUtf8()); }

QByteArray BodyCipher::open(const QByteArray& blob) const {
    if (blob.size() < nonceSize + tagSize) throw CipherError();
    const qsizetype length = blob.size() - nonceSize - tagSize;
    if (length > std::numeric_limits<int>::max()) throw CipherError();
    const unsigned char* nonce = bytes(blob);
    const unsigned char* in = nonce + nonceSize;
    // The tag is passed through a copy: the ctrl call takes a non-const pointer.
    QByteArray tag = blob.right(tagSize);
    QByteArray plain(length, Qt::Uninitialized);

    auto context = newContext();
    int written = 0;
    int finished = 0;
    if (EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, bytes(_key), nonce) != 1 ||
        EVP_DecryptUpdate(context.get(), bytes(plain), &written, in, int(length)) != 1 ||
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, tagSize, bytes(tag)) != 1 ||
        EVP_DecryptFinal_ex(context.get(), bytes(plain) + written, &finished) != 1)
        throw CipherError();
    return plain;
}

QString BodyCipher::openText(const QByteArray& blob) const {
    const QByteArray plain = open(blob);
    // A leading byte-order mark is part of the text as typed, not a marker to drop.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(plain);
    if (decoder.hasError()) throw CipherError();
    return text;
}

}  // namespace vuro
