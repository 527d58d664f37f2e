#include "app/ui/UnsavedNotesDialog.h"

#include <QMessageBox>
#include <QPushButton>

namespace vuro {

bool UnsavedNotesDialog::confirmQuit(const QString& lastError, QWidget* parent) {
    QMessageBox box(parent);
    box.setIcon(QMessageBox::Warning);
    box.setText(QObject::tr("Some notes could not be saved."));
    box.setInformativeText(lastError);
    QPushButton* dontQuit = box.addButton(QObject::tr("Don't Quit"), QMessageBox::RejectRole);
    QPushButton* quitAnyway = box.addButton(QObject::tr("Quit Anyway"), QMessageBox::DestructiveRole);
    box.setDefaultButton(dontQuit);
    box.setEscapeButton(dontQuit);
    box.exec();
    return box.clickedButton() == quitAnyway;
}

}  // namespace vuro
