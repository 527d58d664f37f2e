#pragma once

#include "shelf/DeckPrefs.h"
#include "shelf/DeckState.h"

#include <QObject>
#include <QPointer>
#include <QSize>
#include <optional>

namespace vuro {

class EditorBridge;

// How the views should move to a newly published state.
enum class DeckTransition {
    plain,   // the views' own animation
    none,    // simply there: a note opened from elsewhere
    spring,  // every shrinking change: response 0.28, damping 0.88
};

// What the views of one deck observe. The controller writes it; views read it and send their
// changes (dragging, the find query, showing all) back through the setters. Main thread only.
class DeckModel : public QObject {
    Q_OBJECT
public:
    explicit DeckModel(QObject* parent = nullptr);

    const DeckState& state() const { return _state; }
    bool showAll() const { return _showAll; }
    const std::optional<QString>& findQuery() const { return _findQuery; }
    int revealTick() const { return _revealTick; }
    EditorBridge* bridge() const { return _bridge; }
    const DeckPrefs& prefs() const { return _prefs; }  // style, scale, edge, sizes, editor flags
    bool isDragging() const { return _isDragging; }
    const std::optional<QString>& detachingID() const { return _detachingID; }
    double openedHeight() const { return _openedHeight; }
    const std::optional<double>& openedTop() const { return _openedTop; }

    void publish(const DeckState& state, DeckTransition transition);
    void bumpReveal();
    void setShowAll(bool showAll);
    void setFindQuery(const std::optional<QString>& query);
    void setBridge(EditorBridge* bridge) { _bridge = bridge; }
    void setPrefs(const DeckPrefs& prefs);
    void setDragging(bool dragging);
    void setDetachingID(const std::optional<QString>& id);
    void setOpenedHeight(double height);
    void setOpenedTop(const std::optional<double>& top);

Q_SIGNALS:
    void stateChanged(const vuro::DeckState& state, vuro::DeckTransition transition);
    void revealed();
    void changed();  // any other field

private:
    DeckState _state;
    bool _showAll = false;
    std::optional<QString> _findQuery;
    int _revealTick = 0;
    EditorBridge* _bridge = nullptr;
    DeckPrefs _prefs;
    bool _isDragging = false;
    std::optional<QString> _detachingID;
    double _openedHeight = 0;
    std::optional<double> _openedTop;
};

}  // namespace vuro
