#include "storage/SecretServiceKeychain.h"

#include <libsecret/secret.h>
#include <memory>

namespace vuro {

namespace {

// Items are found by their two attributes alone, whatever schema name wrote them.
const SecretSchema* schema() {
    static const SecretSchema value = [] {
        SecretSchema built{};
        built.name = "com.tarnvale.vuro.GenericPassword";
        built.flags = SECRET_SCHEMA_DONT_MATCH_NAME;
        built.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        built.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return built;
    }();
    return &value;
}

// The attribute table the libsecret calls take; it borrows the UTF-8 buffers.
class Attributes {
public:
    Attributes(const QString& service, const QString& account)
        : _service(service.toUtf8()), _account(account.toUtf8()),
          _table(g_hash_table_new(g_str_hash, g_str_equal), &g_hash_table_unref) {
        g_hash_table_insert(_table.get(), const_cast<char*>("service"), _service.data());
        g_hash_table_insert(_table.get(), const_cast<char*>("account"), _account.data());
    }
    GHashTable* get() const { return _table.get(); }

private:
    QByteArray _service;
    QByteArray _account;
    std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)> _table;
};

[[noreturn]] void fail(GError* error) {
    const int code = error->code;
    const QString message = QString::fromUtf8(error->message ? error->message : "");
    g_error_free(error);
    throw Keychain::KeychainError::status(code, message);
}

}  // namespace

std::optional<QByteArray> SecretServiceKeychain::read(const QString& account) {
    const Attributes attributes(service(), account);
    GError* error = nullptr;
    SecretValue* value = secret_password_lookupv_binary_sync(schema(), attributes.get(), nullptr, &error);
    if (error) fail(error);
    if (!value) return std::nullopt;
    gsize length = 0;
    const gchar* data = secret_value_get(value, &length);
    QByteArray bytes(data, qsizetype(length));
    secret_value_unref(value);
    return bytes;
}

void SecretServiceKeychain::write(const QByteArray& value, const QString& account) {
    const Attributes attributes(service(), account);
    // Storing over matching attributes replaces the item's value: update, else add.
    SecretValue* secret = secret_value_new(value.constData(), value.size(), "application/octet-stream");
    const QByteArray label = (service() + QLatin1Char(' ') + account).toUtf8();
    GError* error = nullptr;
    secret_password_storev_binary_sync(schema(), attributes.get(), SECRET_COLLECTION_DEFAULT, label.constData(),
                                       secret, nullptr, &error);
    secret_value_unref(secret);
    if (error) fail(error);
}

void SecretServiceKeychain::remove(const QString& account) {
    const Attributes attributes(service(), account);
    GError* error = nullptr;
    // False without an error means there was nothing to remove.
    secret_password_clearv_sync(schema(), attributes.get(), nullptr, &error);
    if (error) fail(error);
}

}  // namespace vuro
