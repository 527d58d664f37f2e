// Restyling after one keystroke in a note of a million characters: the coordinator's pass over
// the edited line, with and without the widget's layout work, and the stored-text conversion
// that every change also pays.
#include "editor/EditorStyleCoordinator.h"
#include "editor/EditorTextAdapter.h"
#include "editor/EditorTextView.h"
#include "editor/ui/NoteEditor.h"

#include <QApplication>
#include <QTextBlock>
#include <benchmark/benchmark.h>

using namespace vuro;

namespace {

// A million characters of mixed Markdown: prose, headings, tasks, emphasis, code and links.
QString millionCharacterNote() {
    const QStringList lines{QStringLiteral("# Weekly plan and notes"),
                            QStringLiteral("Plain prose that goes on for a while without any marks at all in it"),
                            QStringLiteral("- [ ] call Ann about the **budget** and the *timeline* tomorrow"),
                            QStringLiteral("Some `inline code` and a [link](https://example.org/page) in a sentence"),
                            QStringLiteral("> a quoted remark with ~~struck~~ words"),
                            QStringLiteral("More prose, with snake_case_names and 2 * 3 * 4 arithmetic")};
    QString text;
    text.reserve(1'000'100);
    for (int i = 0; text.size() < 1'000'000; ++i) text += lines[i % lines.size()] + QLatin1Char('\n');
    text.truncate(1'000'000);
    return text;
}

// The text view over a string, laying no styles: the cost of deciding and computing styles.
class StringView : public EditorTextView {
public:
    QString text;
    qsizetype caret = 0;
    qsizetype textLength() const override { return text.size(); }
    EditorRange lineRange(qsizetype position) const override {
        const qsizetype start = position == 0 ? 0 : text.lastIndexOf(QLatin1Char('\n'), position - 1) + 1;
        const qsizetype newline = text.indexOf(QLatin1Char('\n'), position);
        return {start, (newline < 0 ? text.size() : newline + 1) - start};
    }
    QString textIn(const EditorRange& range) const override { return text.mid(range.location, range.length); }
    qsizetype selectionStart() const override { return caret; }
    bool hasMarkedText() const override { return false; }
    void writeBinding() override {}
    void beginStyling(bool) override {}
    void styleLines(const EditorRange&, const EditorStyling& styling) override { benchmark::DoNotOptimize(styling); }
    void endStyling(bool) override {}
};

void coordinatorKeystroke(benchmark::State& state) {
    StringView view;
    view.text = millionCharacterNote();
    EditorStyleCoordinator coordinator(view);
    coordinator.setStyleInputs(QStringLiteral("bench"));
    coordinator.applyFull();
    qsizetype at = view.text.size() / 2 + 20;
    for (auto _ : state) {
        view.text.insert(at, QLatin1Char('x'));
        coordinator.recordEdit({at, 1});
        view.caret = ++at;
        coordinator.textDidChange();
    }
}
BENCHMARK(coordinatorKeystroke)->Unit(benchmark::kMicrosecond);

// The widget: a key typed in the middle of the note, with the layout of the restyled line.
void editorKeystroke(benchmark::State& state) {
    NoteEditor editor;
    editor.resize(600, 800);
    editor.setStoredText(millionCharacterNote());
    QObject::disconnect(&editor, &NoteEditor::storedTextChanged, nullptr, nullptr);
    QTextCursor cursor(editor.document()->findBlock(500'020));
    cursor.setPosition(500'020);
    editor.setTextCursor(cursor);
    for (auto _ : state) {
        editor.textCursor().insertText(QStringLiteral("x"));
        const QTextBlock block = editor.textCursor().block();
        benchmark::DoNotOptimize(block.layout()->lineCount());
    }
}
BENCHMARK(editorKeystroke)->Unit(benchmark::kMicrosecond);

// What the binding costs per change: the editor text converted back to the stored form.
void storedTextConversion(benchmark::State& state) {
    QString text = EditorTextAdapter::toEditor(millionCharacterNote());
    EditorTextAdapter adapter;
    for (auto _ : state) {
        text[500'000] = text[500'000] == QLatin1Char('a') ? QLatin1Char('b') : QLatin1Char('a');
        benchmark::DoNotOptimize(adapter.stored(text));
    }
}
BENCHMARK(storedTextConversion)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
