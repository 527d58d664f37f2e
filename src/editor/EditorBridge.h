#pragma once

namespace vuro {

// The commands a deck sends to the editor of its open note.
class EditorBridge {
public:
    virtual ~EditorBridge() = default;
    // Turns the caret's line into an open task, or a task line back into text.
    virtual void toggleTaskLine() = 0;
};

}  // namespace vuro
