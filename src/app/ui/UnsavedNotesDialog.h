#pragma once

#include <QString>

class QWidget;

namespace vuro {

// The question asked at quit when some notes could not be written:
// "Some notes could not be saved." with the store's last error, "Don't Quit" and "Quit Anyway".
class UnsavedNotesDialog {
public:
    // True only when the user chose "Quit Anyway".
    static bool confirmQuit(const QString& lastError, QWidget* parent = nullptr);
};

}  // namespace vuro
