#pragma once

#include "base/Error.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace vuro {

// Generic passwords named by service and account: the note key, API keys, MCP secrets.
// Implementations: SecretServiceKeychain (the desktop keyring) and InMemoryKeychain (tests).
// Calls are synchronous on the caller's thread. Reading an item that doesn't exist is not a
// failure: it gives no value. Every other failure throws KeychainError.
class Keychain {
public:
    class KeychainError : public Error {
    public:
        enum class Kind { status, missingNoteKey, invalidNoteKey };

        // A failure of the keyring itself, with its own message when it gave one.
        static KeychainError status(int code, const QString& platformMessage = {});
        static KeychainError missingNoteKey();
        static KeychainError invalidNoteKey();

        Kind kind() const { return _kind; }
        int code() const { return _code; }

    private:
        KeychainError(Kind kind, int code, QString message);
        Kind _kind;
        int _code;
    };

    // The service of every item Vuro keeps.
    static constexpr QLatin1StringView defaultService{"com.tarnvale.vuro"};

    explicit Keychain(QString service) : _service(std::move(service)) {}
    virtual ~Keychain() = default;

    const QString& service() const { return _service; }

    virtual std::optional<QByteArray> read(const QString& account) = 0;
    // Replaces the item's value, or adds the item when there is none.
    virtual void write(const QByteArray& value, const QString& account) = 0;
    // Removing an item that doesn't exist is not a failure.
    virtual void remove(const QString& account) = 0;

    std::optional<QString> readString(const QString& account);
    void writeString(const QString& value, const QString& account);

private:
    QString _service;
};

}  // namespace vuro
