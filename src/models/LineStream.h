#pragma once

#include "models/JsonRequest.h"
#include "models/LineBuffer.h"

#include <QByteArray>
#include <qcoro/qcoroasyncgenerator.h>

class QNetworkAccessManager;

namespace vuro {

// An error body is read up to this many bytes before its message is looked for.
inline constexpr qsizetype errorBodyLimit = 32'000;

// Sends the request and streams the payloads of its body line by line as they arrive (UTF-8).
// Failures end the stream: a status outside 2xx with AIProviderError::http and the server's
// message, a connection that can't be made or breaks with AIProviderError::cannotConnect(host),
// a response that isn't HTTP with AIProviderError::invalidResponse, anything else with an Error
// naming the transport problem. Destroying the generator aborts the request.
// Main thread; the session must outlive the stream.
QCoro::AsyncGenerator<QByteArray> lineStream(QNetworkAccessManager* session, JsonRequest request, LineExtract extract);

}  // namespace vuro
