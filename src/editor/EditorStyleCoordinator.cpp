#include "editor/EditorStyleCoordinator.h"

#include "editor/EditorStyleEngine.h"
#include "editor/EditorTextView.h"

#include <algorithm>

namespace vuro {

EditorStyleCoordinator::EditorStyleCoordinator(EditorTextView& view) : _view(view) {}

void EditorStyleCoordinator::setStyleInputs(const QString& identity) {
    if (_appliedStyle == identity) return;
    _appliedStyle = identity;
    _needsFullPass = true;
}

void EditorStyleCoordinator::recordEdit(const EditorRange& range) {
    if (!_isApplyingStyles) _edits.record(range);
}

EditorRange EditorStyleCoordinator::caretLine() const {
    const qsizetype caret = std::clamp<qsizetype>(_view.selectionStart(), 0, _view.textLength());
    return _view.lineRange(caret);
}

void EditorStyleCoordinator::textDidChange() {
    if (_isApplyingStyles) return;
    _view.writeBinding();
    if (_view.hasMarkedText()) return;  // the pass comes with the commit; the edits wait
    if (_needsFullPass) {
        _edits.drain(_view.textLength(), false);
        applyFull();
        return;
    }
    QList<EditorRange> drained = _edits.drain(_view.textLength(), _view.hasMarkedText());
    if (drained.isEmpty()) {
        _lastLine = caretLine();
        return;
    }
    // The character after an edit belongs to the pass too: an inserted line end starts a new
    // line there, and a deleted one joins the next line to this one.
    for (EditorRange& range : drained) range.length += 1;
    applyPartial(drained, true);
}

void EditorStyleCoordinator::selectionDidChange() {
    if (_isApplyingStyles || _view.hasMarkedText() || !_edits.isEmpty()) return;
    const EditorRange line = caretLine();
    if (!revealsMarks) {
        _lastLine = line;
        return;
    }
    if (line.location == _lastLine.location) return;  // a move within a line costs nothing
    const EditorRange old = _lastLine;
    _lastLine = line;
    applyPartial({old, line}, false);
}

void EditorStyleCoordinator::applyFull() {
    if (_view.hasMarkedText()) return;
    pass({{0, _view.textLength()}}, true, true);
    _needsFullPass = false;
}

void EditorStyleCoordinator::applyPartial(const QList<EditorRange>& ranges, bool cursorRects) {
    if (_view.hasMarkedText() || ranges.isEmpty()) return;
    const qsizetype length = _view.textLength();
    // Every pattern works on whole lines, so each range grows to the lines it touches.
    QList<EditorRange> lines;
    for (const EditorRange& range : EditorEditAccumulator::normalize(ranges, length, true)) {
        const EditorRange first = _view.lineRange(range.location);
        const EditorRange last = _view.lineRange(std::max(range.end() - 1, range.location));
        lines.append({first.location, std::max(first.end(), last.end()) - first.location});
    }
    pass(EditorEditAccumulator::normalize(lines, length, true), false, cursorRects);
}

void EditorStyleCoordinator::pass(const QList<EditorRange>& lineRanges, bool full, bool cursorRects) {
    const EditorRange caret = caretLine();
    const qsizetype caretOffset = std::clamp<qsizetype>(_view.selectionStart(), 0, _view.textLength());
    _isApplyingStyles = true;
    _view.beginStyling(full);
    for (const EditorRange& range : lineRanges) {
        EditorStyling styling;
        if (markdownEnabled)
            styling = EditorStyleEngine::style(_view.textIn(range), range.location, caret, caretOffset, revealsMarks);
        _view.styleLines(range, styling);
    }
    _view.endStyling(cursorRects);
    _isApplyingStyles = false;
    _lastLine = caret;
}

}  // namespace vuro
