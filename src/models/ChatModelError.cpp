#include "models/ChatModelError.h"

#include <QCoreApplication>

namespace vuro {
namespace {
QString tr(const char* text) { return QCoreApplication::translate("ChatModelError", text); }
}  // namespace

ChatModelError ChatModelError::unavailable(const QString& words) { return {Kind::unavailable, words}; }

ChatModelError ChatModelError::tooManyToolRounds() {
    return {Kind::tooManyToolRounds, tr("The agent kept calling tools without answering.")};
}

ChatModelError ChatModelError::blockedBySafetyFilter() {
    return {Kind::blockedBySafetyFilter,
            tr("The on-device model's safety filter stopped this reply. This is often a false alarm: try wording it "
               "differently. Any changes made before it stopped are shown above and can be undone.")};
}

ChatModelError ChatModelError::contextTooLong() {
    return {Kind::contextTooLong,
            tr("This conversation got too long for the on-device model. Clear the conversation and try again.")};
}

}  // namespace vuro
