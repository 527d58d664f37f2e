#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

namespace vuro::NotesSelection {

// The selection in the Notes window's list. `ordered` is always the list as it is shown, so a
// range means what the user sees between two rows.
struct State {
    QSet<QString> selected;
    std::optional<QString> anchor;   // where a shift-click range starts
    std::optional<QString> primary;  // the note shown in the editor

    // A plain click: only this note, which becomes the anchor.
    void click(const QString& id);
    // Shift-click: everything shown from the anchor to this note, the anchor staying put.
    // Without an anchor that is still shown, it is a plain click.
    void shiftClick(const QString& id, const QStringList& ordered);
    // Control-click: adds or removes one note; the anchor moves to it. Removing the shown note
    // shows the nearest selected note below it, else above it, else none.
    void controlClick(const QString& id, const QStringList& ordered);
    void selectAll(const QStringList& ordered);
    void clear();
    // Drops what is no longer shown (after a search or a deletion).
    void retain(const QStringList& ordered);

    // The selected notes in the order shown.
    QStringList selectedInOrder(const QStringList& ordered) const;

    bool operator==(const State&) const = default;
};

}  // namespace vuro::NotesSelection
