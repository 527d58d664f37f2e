#include "settings/ui/SettingsWindow.h"

#include "settings/ui/AssistantSettingsPage.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QScrollArea>
#include <QStackedWidget>

namespace vuro {

SettingsWindow::SettingsWindow(Defaults& defaults, AIKeyStore& keys, const AIProvider& assistant, QWidget* parent)
    : QWidget(parent, Qt::Window), _pageList(new QListWidget), _pages(new QStackedWidget),
      _assistant(new AssistantSettingsPage(defaults, keys, assistant)) {
    setWindowTitle(tr("Vuro Settings"));
    _pageList->setFixedWidth(150);
    _pageList->setFrameShape(QFrame::NoFrame);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(_pageList);
    layout->addWidget(_pages, 1);
    connect(_pageList, &QListWidget::currentRowChanged, _pages, &QStackedWidget::setCurrentIndex);
    addPage(assistantTitle(), _assistant);
    _pageList->setCurrentRow(0);
    resize(720, 640);
}

QString SettingsWindow::assistantTitle() { return tr("Assistant"); }

void SettingsWindow::addPage(const QString& title, QWidget* page) {
    // Long pages scroll rather than stretch the window past small screens.
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(page);
    _pages->addWidget(scroll);
    _pageList->addItem(title);
}

void SettingsWindow::showPage(const QString& title) {
    const QList<QListWidgetItem*> found = _pageList->findItems(title, Qt::MatchExactly);
    if (!found.isEmpty()) _pageList->setCurrentItem(found.first());
    show();
    raise();
    activateWindow();
}

}  // namespace vuro
