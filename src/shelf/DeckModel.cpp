#include "shelf/DeckModel.h"

namespace vuro {

DeckModel::DeckModel(QObject* parent) : QObject(parent) {}

void DeckModel::publish(const DeckState& state, DeckTransition transition) {
    if (_state == state) return;
    _state = state;
    Q_EMIT stateChanged(_state, transition);
}

void DeckModel::bumpReveal() {
    ++_revealTick;
    Q_EMIT revealed();
}

template <typename T>
static bool assign(T& field, const T& value) {
    if (field == value) return false;
    field = value;
    return true;
}

void DeckModel::setShowAll(bool showAll) {
    if (assign(_showAll, showAll)) Q_EMIT changed();
}
void DeckModel::setFindQuery(const std::optional<QString>& query) {
    if (assign(_findQuery, query)) Q_EMIT changed();
}
void DeckModel::setPrefs(const DeckPrefs& prefs) {
    if (assign(_prefs, prefs)) Q_EMIT changed();
}
void DeckModel::setDragging(bool dragging) {
    if (assign(_isDragging, dragging)) Q_EMIT changed();
}
void DeckModel::setDetachingID(const std::optional<QString>& id) {
    if (assign(_detachingID, id)) Q_EMIT changed();
}
void DeckModel::setOpenedHeight(double height) {
    if (assign(_openedHeight, height)) Q_EMIT changed();
}
void DeckModel::setOpenedTop(const std::optional<double>& top) {
    if (assign(_openedTop, top)) Q_EMIT changed();
}

}  // namespace vuro
