#pragma once

#include "base/Error.h"

#include <QByteArray>
#include <QString>

namespace vuro {

// A failure of a model provider, whichever vendor: the key, the model choice, the HTTP exchange
// or the reply. message() is the sentence shown to the user; kind() and the payload let callers
// (status lines, tests) tell the cases apart without reading the words.
class AIProviderError : public Error {
public:
    enum class Kind { missingKey, http, cannotConnect, missingModel, refusal, invalidResponse };

    static AIProviderError missingKey(const QString& provider);
    static AIProviderError http(int status, const QString& message);
    static AIProviderError cannotConnect(const QString& host);
    static AIProviderError missingModel();
    static AIProviderError refusal();
    static AIProviderError invalidResponse();

    Kind kind() const { return _kind; }
    int status() const { return _status; }              // http only
    const QString& detail() const { return _detail; }   // provider, host or server message

private:
    AIProviderError(Kind kind, QString message, int status = 0, QString detail = {});

    Kind _kind;
    int _status;
    QString _detail;
};

// The message a provider put in an error body: error.message, a text under error, or a top-level
// message; otherwise the body itself as trimmed UTF-8 text.
QString providerErrorMessage(const QByteArray& body);

}  // namespace vuro
