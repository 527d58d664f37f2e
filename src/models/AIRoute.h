#pragma once

#include <QString>

namespace vuro {

// Where a conversation goes: to a vendor's cloud, to a server on the local network, or nowhere
// beyond this computer. Shown to the user as a short label.
class AIRoute {
public:
    enum class Kind { cloud, localServer, onDevice };

    static AIRoute cloud(const QString& provider) { return {Kind::cloud, provider}; }
    static AIRoute localServer(const QString& host) { return {Kind::localServer, host}; }
    static AIRoute onDevice() { return {Kind::onDevice, {}}; }

    Kind kind() const { return _kind; }
    const QString& provider() const { return _detail; }  // cloud
    const QString& host() const { return _detail; }      // localServer
    QString label() const;

    bool operator==(const AIRoute&) const = default;

private:
    AIRoute(Kind kind, QString detail) : _kind(kind), _detail(std::move(detail)) {}

    Kind _kind;
    QString _detail;
};

}  // namespace vuro
