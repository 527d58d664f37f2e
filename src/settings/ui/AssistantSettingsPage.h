#pragma once

#include "agents/AIProviderKind.h"

#include <QHash>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace vuro {

class AIKeyStore;
class AIProvider;
class ApiKeyRow;
class Defaults;
class ProviderProbe;

// Settings → Assistant: which back-end answers the assistant, the API keys (in the keyring), a
// model per provider and the addresses of the local servers. Every change is saved as it is
// made, so that the assistant and its Test use it at once; a refused address stays in its field
// with a sentence under it. The Test goes through the assistant provider itself, which must
// outlive the page; closing the page drops a test still running.
class AssistantSettingsPage : public QWidget {
    Q_OBJECT
public:
    AssistantSettingsPage(Defaults& defaults, AIKeyStore& keys, const AIProvider& assistant, QWidget* parent = nullptr);
    ~AssistantSettingsPage() override;

    QComboBox* providerBox() const { return _provider; }
    ApiKeyRow* keyRow(AIProviderKind kind) const { return _keyRows.value(kind); }
    QLineEdit* modelField(AIProviderKind kind) const { return _models.value(kind); }
    QLineEdit* baseField(AIProviderKind kind) const { return _bases.value(kind); }
    QPushButton* testButton() const { return _testButton; }
    QLabel* testResult() const { return _testResult; }
    QProgressBar* testProgress() const { return _testProgress; }
    ProviderProbe& probe() const { return *_test; }

    void cancelTest();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* providerSection();
    QWidget* keySection();
    QWidget* modelSection();
    QWidget* serverSection();
    QWidget* testSection();
    void chooseProvider(int index);
    void saveModel(AIProviderKind kind);
    void saveBase(AIProviderKind kind);
    void showTestState();

    Defaults& _defaults;
    AIKeyStore& _keys;
    const AIProvider& _assistant;
    ProviderProbe* _test;
    QComboBox* _provider = nullptr;
    QHash<AIProviderKind, ApiKeyRow*> _keyRows;
    QHash<AIProviderKind, QLineEdit*> _models;
    QHash<AIProviderKind, QLineEdit*> _bases;
    QHash<AIProviderKind, QLabel*> _baseProblems;
    QPushButton* _testButton = nullptr;
    QProgressBar* _testProgress = nullptr;
    QLabel* _testResult = nullptr;
};

}  // namespace vuro
