#include "models/JsonRequest.h"

#include <QJsonDocument>

namespace vuro {

JsonRequest jsonRequest(const QUrl& url, const QJsonObject& body, const HttpHeaders& headers) {
    constexpr int timeoutMilliseconds = 180'000;
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMilliseconds);
    request.setRawHeader("content-type", "application/json");
    for (const auto& [name, value] : headers) request.setRawHeader(name, value);
    // QJsonObject keeps its keys in sorted order, so the compact form is sorted too.
    return {request, QJsonDocument(body).toJson(QJsonDocument::Compact)};
}

}  // namespace vuro
