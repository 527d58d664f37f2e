#pragma once

#include "agents/AIProviderKind.h"

#include <QWidget>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace vuro {

class AIKeyStore;

// One provider's API key on the Assistant page. A stored key is shown masked with Replace and
// Remove; otherwise (or while replacing) a password field takes a new one. The key goes straight
// to the keyring through the key store and is never put back into a field. A keyring failure
// is shown under the row and leaves the stored key as it was.
class ApiKeyRow : public QWidget {
    Q_OBJECT
public:
    ApiKeyRow(AIProviderKind kind, AIKeyStore& keys, QWidget* parent = nullptr);

    AIProviderKind kind() const { return _kind; }
    // What the row shows for the stored key ("sk-…3f9a"), empty when there is none.
    QString shownKey() const;
    QLineEdit* entry() const { return _entry; }
    QPushButton* saveButton() const { return _save; }
    QPushButton* replaceButton() const { return _replace; }
    QPushButton* removeButton() const { return _remove; }
    QLabel* problem() const { return _problem; }

Q_SIGNALS:
    // A key was stored or removed.
    void keyChanged(vuro::AIProviderKind kind);

private:
    void refresh();
    void saveEntry();
    void removeKey();
    // Writes to the keychain; a failure keeps the row as it was and says why.
    void change(const std::function<void()>& write);
    void showProblem(const QString& sentence);

    AIProviderKind _kind;
    AIKeyStore& _keys;
    QStackedWidget* _pages;
    QLabel* _masked;
    QLineEdit* _entry;
    QPushButton* _save;
    QPushButton* _cancel;
    QPushButton* _replace;
    QPushButton* _remove;
    QLabel* _problem;
};

}  // namespace vuro
