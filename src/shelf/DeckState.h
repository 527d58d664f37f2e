#pragma once

#include <QString>

namespace vuro {

// Where a deck stands: only the strip at the edge, the list of notes out, or one note open.
struct DeckState {
    enum class Kind { rest, fan, expanded };

    Kind kind = Kind::rest;
    QString noteID;  // only for expanded

    static DeckState rest() { return {Kind::rest, {}}; }
    static DeckState fan() { return {Kind::fan, {}}; }
    static DeckState expanded(const QString& id) { return {Kind::expanded, id}; }

    bool isRest() const { return kind == Kind::rest; }
    bool isFan() const { return kind == Kind::fan; }
    bool isExpanded() const { return kind == Kind::expanded; }

    bool operator==(const DeckState&) const = default;
};

// How the strip and the list are drawn; stored as "tabs" or "compact".
enum class DeckStyle { tabs, compact };

}  // namespace vuro
