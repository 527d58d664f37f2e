#pragma once

#include "editor/EditorEditAccumulator.h"
#include "editor/EditorRange.h"

#include <QList>
#include <QString>
#include <optional>

namespace vuro {

class EditorTextView;

// Decides what a text view restyles: after an edit, the edited lines; after a caret move to
// another line, the old and the new line (one to hide its marks again, one to show them);
// everything when a style input changed; nothing while an input method composes.
// Main thread, inside the view's callbacks.
class EditorStyleCoordinator {
public:
    explicit EditorStyleCoordinator(EditorTextView& view);

    bool markdownEnabled = true;
    bool revealsMarks = true;

    // The identity of the style inputs (font size, ink, direction, the two flags); a change
    // asks for a full pass.
    void setStyleInputs(const QString& identity);
    bool needsFullPass() const { return _needsFullPass; }
    bool isApplyingStyles() const { return _isApplyingStyles; }
    const EditorRange& lastLine() const { return _lastLine; }
    EditorEditAccumulator& edits() { return _edits; }

    // From the text store: a range was replaced by length new characters.
    void recordEdit(const EditorRange& range);
    void textDidChange();
    void selectionDidChange();
    void applyFull();
    void applyPartial(const QList<EditorRange>& ranges, bool cursorRects);

private:
    EditorRange caretLine() const;
    void pass(const QList<EditorRange>& lineRanges, bool full, bool cursorRects);

    EditorTextView& _view;
    EditorEditAccumulator _edits;
    EditorRange _lastLine;
    bool _isApplyingStyles = false;
    bool _needsFullPass = true;
    std::optional<QString> _appliedStyle;
};

}  // namespace vuro
