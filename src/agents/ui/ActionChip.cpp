#include "agents/ui/ActionChip.h"

#include "agents/AgentCenter.h"
#include "agents/ui/ElidedLabel.h"
#include "agents/ui/ErrorLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace vuro {

ActionChip::ActionChip(AgentCenter& center, QString messageID, const AgentAction& action, QWidget* parent)
    : ChatCard(Fill::card, parent), _center(center), _messageID(std::move(messageID)), _summary(new ElidedLabel), _state(new QLabel),
      _undo(new QPushButton(tr("Undo"))), _refusal(new ErrorLabel) {
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(10, 4, 4, 4);
    column->setSpacing(2);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(_summary, 1);
    row->addWidget(_state);
    _undo->setAutoDefault(false);
    _undo->setCursor(Qt::PointingHandCursor);
    row->addWidget(_undo);
    column->addLayout(row);
    _state->setForegroundRole(QPalette::PlaceholderText);
    // One line: the chip widens for the sentence rather than hide half of it.
    _refusal->setWordWrap(false);
    _refusal->hide();
    column->addWidget(_refusal);
    connect(_undo, &QPushButton::clicked, this, &ActionChip::undo);
    setAction(action);
}

void ActionChip::setAction(const AgentAction& action) {
    _action = action;
    _summary->setText(action.summary);
    _undo->setAccessibleName(tr("Undo: %1").arg(action.summary));
    _undo->setVisible(action.undo && !action.undone);
    _state->setText(action.undone ? tr("Undone") : QString());
    _state->setVisible(action.undone);
    if (action.undone) _refusal->hide();
    QFont font = _summary->font();
    font.setStrikeOut(action.undone);
    _summary->setFont(font);
}

void ActionChip::undo() {
    const auto refusal = _center.undo(_action.id, _messageID);
    // The center republishes the message on success; the chip hears of it through setAction.
    _refusal->setText(refusal.value_or(QString()));
    _refusal->setVisible(refusal.has_value());
}

QLabel* ActionChip::refusalLabel() const { return _refusal; }

}  // namespace vuro
