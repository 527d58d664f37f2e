#pragma once

class QNetworkAccessManager;

namespace vuro {

// The one HTTP session of the process, shared by model back-ends, MCP, sign-in and downloads, so
// that connections are reused. It lives on the main thread for as long as the application.
QNetworkAccessManager& httpSession();

}  // namespace vuro
