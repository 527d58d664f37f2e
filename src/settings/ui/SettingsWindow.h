#pragma once

#include <QWidget>

class QListWidget;
class QStackedWidget;

namespace vuro {

class AIKeyStore;
class AIProvider;
class AssistantSettingsPage;
class Defaults;

// The Settings window: a list of pages on the left, the chosen page on the right. Pages save as
// they are changed, so the window has no OK button and closing it loses nothing. The one page
// so far is Assistant; a page added later goes in with addPage.
class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    SettingsWindow(Defaults& defaults, AIKeyStore& keys, const AIProvider& assistant, QWidget* parent = nullptr);

    void addPage(const QString& title, QWidget* page);
    // Brings the window forward on the page with that title.
    void showPage(const QString& title);

    AssistantSettingsPage* assistantPage() const { return _assistant; }
    static QString assistantTitle();

private:
    QListWidget* _pageList;
    QStackedWidget* _pages;
    AssistantSettingsPage* _assistant;
};

}  // namespace vuro
