#include "base/Clock.h"

namespace vuro {
namespace {
std::function<QDateTime()>& source() {
    static std::function<QDateTime()> current;
    return current;
}
}  // namespace

QDateTime Clock::now() {
    return source() ? source()() : QDateTime::currentDateTime();
}

Clock::Override::Override(QDateTime fixed) : _previous(source()), _fixed(std::move(fixed)) {
    source() = [this] { return _fixed; };
}

Clock::Override::Override(std::function<QDateTime()> newSource) : _previous(source()) {
    source() = std::move(newSource);
}

Clock::Override::~Override() { source() = std::move(_previous); }

void Clock::Override::set(QDateTime fixed) {
    _fixed = std::move(fixed);
    source() = [this] { return _fixed; };
}

void Clock::Override::advance(qint64 milliseconds) { set(_fixed.addMSecs(milliseconds)); }

}  // namespace vuro
