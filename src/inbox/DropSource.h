#pragma once

#include "notes/NoteColor.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace vuro {

// Who sent a drop, as the inbox and its digest show it.
struct DropSource {
    enum class Kind { agent, person };

    QString id;
    QString name;
    QString glyph;
    NoteColor color = NoteColor::lemon;
    Kind kind = Kind::agent;
    QString symbol;
    std::optional<QByteArray> image;
    bool usesVuroLogo = false;

    bool operator==(const DropSource&) const = default;
};

}  // namespace vuro
