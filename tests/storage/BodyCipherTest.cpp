#include "storage/BodyCipher.h"
#include "support/Printers.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

using namespace vuro;

namespace {

const QByteArray key = QByteArray::fromHex("000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f");

// Opens a blob with OpenSSL directly, reading the layout as nonce | ciphertext | tag, so that a
// cipher that round-trips with itself but writes another layout is caught.
std::optional<QByteArray> openIndependently(const QByteArray& blob) {
    if (blob.size() < 28) return std::nullopt;
    const auto* raw = reinterpret_cast<const unsigned char*>(blob.constData());
    const int length = int(blob.size()) - 28;
    QByteArray plain(length, '\0');
    QByteArray tag = blob.right(16);
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    int written = 0, finished = 0;
    const bool ok =
        EVP_DecryptInit_ex(context, EVP_aes_256_gcm(), nullptr, reinterpret_cast<const unsigned char*>(key.constData()),
                           raw) == 1 &&
        EVP_DecryptUpdate(context, reinterpret_cast<unsigned char*>(plain.data()), &written, raw + 12, length) == 1 &&
        EVP_CIPHER_CTX_ctrl(context, EVP_CTRL_GCM_SET_TAG, 16, tag.data()) == 1 &&
        EVP_DecryptFinal_ex(context, reinterpret_cast<unsigned char*>(plain.data()) + written, &finished) == 1;
    EVP_CIPHER_CTX_free(context);
    if (!ok) return std::nullopt;
    return plain;
}

TEST(BodyCipherTest, sealsInTheExactLayoutAndOpensAgain) {
    const BodyCipher cipher(key);
    const QList<QString> texts = {"", "a", "Einkaufsliste\n- [ ] Milch 📅", QString(5000, QChar(0x0130)),
                                  QString(QChar(0xFEFF)) + "starts with a byte-order mark"};
    for (const auto& text : texts) {
        const QByteArray blob = cipher.seal(text);
        const QByteArray utf8 = text.toUtf8();
        EXPECT_EQ(blob.size(), 12 + utf8.size() + 16);
        EXPECT_EQ(openIndependently(blob), std::optional(utf8));
        EXPECT_EQ(cipher.openText(blob), text);
        EXPECT_EQ(cipher.open(blob), utf8);
    }
    EXPECT_EQ(cipher.seal(QString()).size(), 28);
}

TEST(BodyCipherTest, freshNonceForEverySeal) {
    const BodyCipher cipher(key);
    const QByteArray first = cipher.seal(QStringLiteral("same text"));
    const QByteArray second = cipher.seal(QStringLiteral("same text"));
    EXPECT_NE(first, second);
    EXPECT_NE(first.left(12), second.left(12));
}

TEST(BodyCipherTest, everyDamagedBlobFailsWithTheSentence) {
    const BodyCipher cipher(key);
    const QByteArray blob = cipher.seal(QStringLiteral("secret words"));
    QList<QByteArray> damaged;
    for (int length = 0; length < 28; ++length) damaged.append(blob.left(length));
    damaged.append(blob.left(blob.size() - 1));
    damaged.append(blob + '\0');
    for (int bit = 0; bit < blob.size() * 8; ++bit) {
        QByteArray flipped = blob;
        flipped[bit / 8] = char(flipped[bit / 8] ^ (1 << (bit % 8)));
        damaged.append(flipped);
    }
    for (const auto& bad : damaged) {
        try {
            cipher.openText(bad);
            ADD_FAILURE() << "opened a damaged blob of " << bad.size() << " bytes";
        } catch (const BodyCipher::CipherError& error) {
            EXPECT_EQ(error.message(), "The note could not be decrypted.");
        }
    }
    EXPECT_THROW(BodyCipher(BodyCipher::randomKey()).open(blob), BodyCipher::CipherError);
}

TEST(BodyCipherTest, bytesThatAreNotUtf8OpenOnlyAsBytes) {
    const BodyCipher cipher(key);
    const QByteArray invalid("\xff\xfe\xc3", 3);
    const QByteArray blob = cipher.seal(invalid);
    EXPECT_EQ(cipher.open(blob), invalid);
    EXPECT_THROW(cipher.openText(blob), BodyCipher::CipherError);
}

TEST(BodyCipherTest, randomKeysAreWholeAndDistinct) {
    const QByteArray a = BodyCipher::randomKey();
    EXPECT_EQ(a.size(), 32);
    EXPECT_NE(a, BodyCipher::randomKey());
}

}  // namespace
