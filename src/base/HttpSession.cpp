#include "base/HttpSession.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>

namespace vuro {

QNetworkAccessManager& httpSession() {
    static QNetworkAccessManager* session = new QNetworkAccessManager(QCoreApplication::instance());
    return *session;
}

}  // namespace vuro
