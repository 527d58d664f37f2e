#pragma once

#include <QString>
#include <exception>

namespace vuro {

// Base of every typed error that stores, back-ends and parsers throw.
// message() is the sentence the user sees, word for word.
class Error : public std::exception {
public:
    explicit Error(QString message) : _message(std::move(message)), _utf8(_message.toUtf8()) {}
    const QString& message() const noexcept { return _message; }
    const char* what() const noexcept override { return _utf8.constData(); }

private:
    QString _message;
    QByteArray _utf8;
};

}  // namespace vuro
