#pragma once

#include <QLocale>
#include <QString>
#include <QTime>

namespace vuro {

// Hours and minutes the way the locale writes them. The C locale's short time carries seconds,
// which no list, date mark or prompt wants.
inline QString shortTime(QTime time, const QLocale& locale = QLocale()) {
    return locale.language() == QLocale::C ? time.toString(QStringLiteral("HH:mm"))
                                           : locale.toString(time, QLocale::ShortFormat);
}

}  // namespace vuro
