#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QNetworkRequest>
#include <utility>

namespace vuro {

// A POST of one JSON object, as every model back-end sends it.
struct JsonRequest {
    QNetworkRequest request;
    QByteArray body;
};

using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

// Time-out 180 seconds without progress, "content-type: application/json", the given headers,
// and the body encoded compactly with its keys sorted (so that requests are reproducible).
JsonRequest jsonRequest(const QUrl& url, const QJsonObject& body, const HttpHeaders& headers = {});

}  // namespace vuro
