#pragma once

#include <QString>

namespace vuro {

// Converts between the stored text of a note, where tasks are "- [ ]" and "- [x]", and the
// editor's text, where each is one box character ("☐ ", "☑ "). Remembers the last pair in each
// direction, since views ask again and again for the same text.
class EditorTextAdapter {
public:
    QString editor(const QString& stored);
    QString stored(const QString& editor);

    static QString toEditor(const QString& stored);
    static QString toStored(const QString& editor);

private:
    QString _lastEditor;
    QString _lastStored;
    bool _hasMemo = false;
};

}  // namespace vuro
