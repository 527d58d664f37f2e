#pragma once

#include <QString>
#include <QUuid>

namespace vuro {

// A new identifier: an upper-case UUID without braces.
inline QString newId() { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(); }

}  // namespace vuro
