#include "settings/ui/ApiKeyRow.h"

#include "base/Error.h"
#include "base/Text.h"
#include "models/AIKeyStore.h"
#include "models/AIProviderSettings.h"
#include "settings/SecretMask.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace vuro {

ApiKeyRow::ApiKeyRow(AIProviderKind kind, AIKeyStore& keys, QWidget* parent)
    : QWidget(parent), _kind(kind), _keys(keys), _pages(new QStackedWidget), _masked(new QLabel), _entry(new QLineEdit),
      _save(new QPushButton(tr("Save"))), _cancel(new QPushButton(tr("Cancel"))), _replace(new QPushButton(tr("Replace…"))),
      _remove(new QPushButton(tr("Remove"))), _problem(new QLabel) {
    _masked->setTextInteractionFlags(Qt::NoTextInteraction);
    _masked->setObjectName(QStringLiteral("maskedKey"));
    auto* stored = new QWidget;
    auto* storedLayout = new QHBoxLayout(stored);
    storedLayout->setContentsMargins(0, 0, 0, 0);
    storedLayout->addWidget(_masked, 1);
    storedLayout->addWidget(_replace);
    storedLayout->addWidget(_remove);

    _entry->setEchoMode(QLineEdit::Password);
    _entry->setPlaceholderText(tr("Paste your %1 API key").arg(AIProviderSettings::displayName(kind)));
    _entry->setClearButtonEnabled(true);
    auto* editing = new QWidget;
    auto* editingLayout = new QHBoxLayout(editing);
    editingLayout->setContentsMargins(0, 0, 0, 0);
    editingLayout->addWidget(_entry, 1);
    editingLayout->addWidget(_save);
    editingLayout->addWidget(_cancel);

    _pages->addWidget(stored);
    _pages->addWidget(editing);
    _problem->setWordWrap(true);
    _problem->setStyleSheet(QStringLiteral("color: #b3261e;"));
    _problem->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(_pages);
    layout->addWidget(_problem);

    connect(_save, &QPushButton::clicked, this, &ApiKeyRow::saveEntry);
    connect(_entry, &QLineEdit::returnPressed, this, &ApiKeyRow::saveEntry);
    connect(_entry, &QLineEdit::textChanged, this, [this] { _save->setEnabled(!Text::trimmed(_entry->text()).isEmpty()); });
    connect(_cancel, &QPushButton::clicked, this, &ApiKeyRow::refresh);
    connect(_remove, &QPushButton::clicked, this, &ApiKeyRow::removeKey);
    connect(_replace, &QPushButton::clicked, this, [this] {
        _pages->setCurrentIndex(1);
        _cancel->show();
        _entry->setFocus();
    });
    refresh();
}

QString ApiKeyRow::shownKey() const { return _pages->currentIndex() == 0 ? _masked->text() : QString(); }

void ApiKeyRow::refresh() {
    _entry->clear();
    _save->setEnabled(false);
    std::optional<QString> key;
    try {
        key = _keys.key(_kind);
    } catch (const Error& error) {
        showProblem(error.message());
    }
    _masked->setText(key ? maskedSecret(*key) : QString());
    _pages->setCurrentIndex(key ? 0 : 1);
    _cancel->setVisible(false);
}

void ApiKeyRow::saveEntry() {
    const QString key = Text::trimmed(_entry->text());
    if (key.isEmpty()) return;
    if (key.contains(QLatin1Char(' ')) || key.contains(QLatin1Char('\n'))) {
        showProblem(tr("An API key has no spaces; copy it again from %1.").arg(AIProviderSettings::displayName(_kind)));
        return;
    }
    change([&] { _keys.store(_kind, key); });
}

void ApiKeyRow::removeKey() {
    change([&] { _keys.remove(_kind); });
}

void ApiKeyRow::change(const std::function<void()>& write) {
    try {
        write();
    } catch (const Error& error) {
        showProblem(error.message());
        return;
    }
    _problem->hide();
    refresh();
    Q_EMIT keyChanged(_kind);
}

void ApiKeyRow::showProblem(const QString& sentence) {
    _problem->setText(sentence);
    _problem->show();
}

}  // namespace vuro
