#include "settings/ui/AssistantSettingsPage.h"

#include "base/Defaults.h"
#include "models/AIProvider.h"
#include "models/AIProviderSettings.h"
#include "models/AssistantChoice.h"
#include "settings/ProviderOptions.h"
#include "settings/ProviderProbe.h"
#include "settings/ui/ApiKeyRow.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace vuro {
namespace {

const QList<AIProviderKind> keyKinds{AIProviderKind::claude, AIProviderKind::openAI, AIProviderKind::gemini};
const QList<AIProviderKind> modelKinds{AIProviderKind::claude, AIProviderKind::openAI, AIProviderKind::gemini,
                                       AIProviderKind::ollama, AIProviderKind::lmStudio};
const QList<AIProviderKind> serverKinds{AIProviderKind::ollama, AIProviderKind::lmStudio};

QLabel* note(const QString& text) {
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setStyleSheet(QStringLiteral("color: palette(mid);"));
    return label;
}

QLabel* problemLabel() {
    auto* label = new QLabel;
    label->setWordWrap(true);
    label->setStyleSheet(QStringLiteral("color: #b3261e;"));
    label->hide();
    return label;
}

}  // namespace

AssistantSettingsPage::AssistantSettingsPage(Defaults& defaults, AIKeyStore& keys, const AIProvider& assistant, QWidget* parent)
    : QWidget(parent), _defaults(defaults), _keys(keys), _assistant(assistant), _test(new ProviderProbe(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(providerSection());
    layout->addWidget(keySection());
    layout->addWidget(modelSection());
    layout->addWidget(serverSection());
    layout->addWidget(testSection());
    layout->addStretch(1);
    connect(_test, &ProviderProbe::stateChanged, this, &AssistantSettingsPage::showTestState);
    showTestState();
}

AssistantSettingsPage::~AssistantSettingsPage() = default;

QWidget* AssistantSettingsPage::providerSection() {
    auto* box = new QGroupBox(tr("Assistant"));
    auto* form = new QFormLayout(box);
    _provider = new QComboBox;
    const QString stored = _defaults.stringValue(AIProviderSettings::providerKey());
    const auto current = AssistantChoice::fromRawText(stored).value_or(AssistantChoice::api(AIProviderKind::apple));
    QList<ProviderOptions::Option> options = ProviderOptions::apiKinds();
    // A command-line tool chosen elsewhere stays listed, so that opening the page doesn't change it.
    if (current.cliTool()) options.append({current, ProviderOptions::label(current)});
    for (const auto& option : options) {
        _provider->addItem(option.label, option.choice.rawText());
        if (option.choice == current) _provider->setCurrentIndex(_provider->count() - 1);
    }
    connect(_provider, &QComboBox::currentIndexChanged, this, &AssistantSettingsPage::chooseProvider);
    form->addRow(tr("Provider"), _provider);
    form->addRow(note(tr("Tell Vuro and note summaries use this provider. Agents choose their own in the agent editor.")));
    return box;
}

QWidget* AssistantSettingsPage::keySection() {
    auto* box = new QGroupBox(tr("API keys"));
    auto* form = new QFormLayout(box);
    for (const AIProviderKind kind : keyKinds) {
        auto* row = new ApiKeyRow(kind, _keys);
        _keyRows.insert(kind, row);
        form->addRow(ProviderOptions::label(kind), row);
        connect(row, &ApiKeyRow::keyChanged, _test, &ProviderProbe::cancel);
    }
    form->addRow(note(tr("Keys are kept in the desktop keyring, never in a file.")));
    return box;
}

QWidget* AssistantSettingsPage::modelSection() {
    auto* box = new QGroupBox(tr("Models"));
    auto* form = new QFormLayout(box);
    for (const AIProviderKind kind : modelKinds) {
        auto* field = new QLineEdit(_defaults.stringValue(AIProviderSettings::modelKey(kind)));
        const QString fallback = AIProviderSettings::defaultModel(kind);
        field->setPlaceholderText(fallback.isEmpty() ? tr("A model the server has installed, e.g. llama3.2") : fallback);
        field->setClearButtonEnabled(true);
        connect(field, &QLineEdit::editingFinished, this, [this, kind] { saveModel(kind); });
        _models.insert(kind, field);
        form->addRow(ProviderOptions::label(kind), field);
    }
    return box;
}

QWidget* AssistantSettingsPage::serverSection() {
    auto* box = new QGroupBox(tr("Local servers"));
    auto* form = new QFormLayout(box);
    for (const AIProviderKind kind : serverKinds) {
        auto* field = new QLineEdit(_defaults.stringValue(AIProviderSettings::baseURLKey(kind)));
        field->setPlaceholderText(AIProviderSettings::apiBase(kind).value_or(QUrl()).toString());
        field->setClearButtonEnabled(true);
        connect(field, &QLineEdit::editingFinished, this, [this, kind] { saveBase(kind); });
        auto* problem = problemLabel();
        auto* cell = new QWidget;
        auto* cellLayout = new QVBoxLayout(cell);
        cellLayout->setContentsMargins(0, 0, 0, 0);
        cellLayout->setSpacing(2);
        cellLayout->addWidget(field);
        cellLayout->addWidget(problem);
        _bases.insert(kind, field);
        _baseProblems.insert(kind, problem);
        form->addRow(ProviderOptions::label(kind), cell);
    }
    return box;
}

QWidget* AssistantSettingsPage::testSection() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    _testButton = new QPushButton(tr("Test"));
    _testProgress = new QProgressBar;
    _testProgress->setRange(0, 0);  // busy: the reply has no known length
    _testProgress->setTextVisible(false);
    _testProgress->setMaximumWidth(90);
    _testResult = new QLabel;
    _testResult->setWordWrap(true);
    _testResult->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(_testButton);
    layout->addWidget(_testProgress);
    layout->addWidget(_testResult, 1);
    connect(_testButton, &QPushButton::clicked, this, [this] {
        if (_test->isRunning())
            _test->cancel();
        else
            _test->start(_assistant);
    });
    return row;
}

void AssistantSettingsPage::chooseProvider(int index) {
    _test->cancel();
    _defaults.setValue(AIProviderSettings::providerKey(), _provider->itemData(index).toString());
}

void AssistantSettingsPage::saveModel(AIProviderKind kind) {
    AIProviderSettings::saveModel(_defaults, kind, _models.value(kind)->text());
    _models.value(kind)->setText(_defaults.stringValue(AIProviderSettings::modelKey(kind)));
}

void AssistantSettingsPage::saveBase(AIProviderKind kind) {
    QLineEdit* field = _bases.value(kind);
    QLabel* problem = _baseProblems.value(kind);
    if (!AIProviderSettings::saveBaseURL(_defaults, kind, field->text())) {
        problem->setText(tr("Use an address like %1 (http or https, with a host).")
                             .arg(AIProviderSettings::apiBase(kind).value_or(QUrl()).toString()));
        problem->show();
        return;
    }
    problem->hide();
    field->setText(_defaults.stringValue(AIProviderSettings::baseURLKey(kind)));
}

void AssistantSettingsPage::showTestState() {
    const ProviderProbe::State& state = _test->state();
    _testProgress->setVisible(_test->isRunning());
    _testButton->setText(_test->isRunning() ? tr("Stop") : tr("Test"));
    if (const auto* answered = std::get_if<ProviderProbe::Answered>(&state)) {
        _testResult->setStyleSheet(QString());
        _testResult->setText(tr("✓ %1 answered: %2").arg(_assistant.name(), answered->reply));
    } else if (const auto* failed = std::get_if<ProviderProbe::Failed>(&state)) {
        _testResult->setStyleSheet(QStringLiteral("color: #b3261e;"));
        _testResult->setText(failed->sentence);
    } else if (_test->isRunning()) {
        _testResult->setStyleSheet(QString());
        _testResult->setText(tr("Asking %1…").arg(_assistant.name()));
    } else {
        _testResult->setStyleSheet(QString());
        _testResult->setText(tr("Sends “%1” through the chosen provider.").arg(ProviderProbe::prompt()));
    }
}

void AssistantSettingsPage::cancelTest() { _test->cancel(); }

void AssistantSettingsPage::hideEvent(QHideEvent* event) {
    _test->cancel();
    QWidget::hideEvent(event);
}

}  // namespace vuro
