#include "models/AIProviderError.h"

#include "base/Text.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

namespace vuro {
namespace {
QString tr(const char* text) { return QCoreApplication::translate("AIProviderError", text); }
}  // namespace

AIProviderError::AIProviderError(Kind kind, QString message, int status, QString detail)
    : Error(std::move(message)), _kind(kind), _status(status), _detail(std::move(detail)) {}

AIProviderError AIProviderError::missingKey(const QString& provider) {
    return {Kind::missingKey, tr("Add your %1 API key in Settings → Assistant.").arg(provider), 0, provider};
}

AIProviderError AIProviderError::http(int status, const QString& message) {
    QString words;
    if (status == 401 || status == 403)
        words = tr("The API key was not accepted (%1).").arg(status);
    else if (status == 429)
        words = tr("Too many requests; try again in a moment.");
    else if (!message.isEmpty())
        words = message;
    else
        words = tr("The provider returned an error (%1).").arg(status);
    return {Kind::http, words, status, message};
}

AIProviderError AIProviderError::cannotConnect(const QString& host) {
    return {Kind::cannotConnect, tr("Couldn't reach %1. Is the server running?").arg(host), 0, host};
}

AIProviderError AIProviderError::missingModel() { return {Kind::missingModel, tr("Choose a model in Settings → Assistant.")}; }

AIProviderError AIProviderError::refusal() { return {Kind::refusal, tr("The model declined this request.")}; }

AIProviderError AIProviderError::invalidResponse() {
    return {Kind::invalidResponse, tr("The provider sent an unexpected response.")};
}

QString providerErrorMessage(const QByteArray& body) {
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (document.isObject()) {
        const QJsonObject object = document.object();
        const QJsonValue error = object.value(QLatin1String("error"));
        if (error.isObject()) {
            const QJsonValue message = error.toObject().value(QLatin1String("message"));
            if (message.isString()) return message.toString();
        } else if (error.isString()) {
            return error.toString();
        }
        const QJsonValue message = object.value(QLatin1String("message"));
        if (message.isString()) return message.toString();
    }
    return Text::trimmed(QString::fromUtf8(body));
}

}  // namespace vuro
