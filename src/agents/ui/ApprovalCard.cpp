#include "agents/ui/ApprovalCard.h"

#include "agents/AgentCenter.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace vuro {

ApprovalCard::ApprovalCard(AgentCenter& center, const MCPApprovalRequest& request, QWidget* parent)
    : ChatCard(Fill::attention, parent), _center(center), _requestID(request.id),
      _allowOnce(new QPushButton(tr("Allow Once"))), _allowAlways(new QPushButton(tr("Always Allow"))),
      _deny(new QPushButton(tr("Deny"))) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 12, 14, 12);
    column->setSpacing(6);

    auto* title = new QLabel(tr("Allow “%1”?").arg(request.toolTitle));
    title->setWordWrap(true);
    title->setTextFormat(Qt::PlainText);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    column->addWidget(title);
    QString origin = tr("A tool of %1 wants to run.").arg(request.serverName);
    if (request.jobTitle && !request.jobTitle->isEmpty()) origin += QLatin1Char(' ') + tr("For the job “%1”.").arg(*request.jobTitle);
    auto* from = new QLabel(origin);
    from->setWordWrap(true);
    from->setTextFormat(Qt::PlainText);
    from->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(from);

    if (!request.details.isEmpty()) {
        auto* form = new QFormLayout;
        form->setContentsMargins(0, 4, 0, 4);
        form->setHorizontalSpacing(12);
        form->setVerticalSpacing(3);
        form->setRowWrapPolicy(QFormLayout::WrapLongRows);
        for (const auto& detail : request.details) {
            auto* key = new QLabel(detail.key);
            key->setTextFormat(Qt::PlainText);
            key->setForegroundRole(QPalette::PlaceholderText);
            auto* value = new QLabel(detail.value);
            value->setTextFormat(Qt::PlainText);
            value->setWordWrap(true);
            value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
            form->addRow(key, value);
        }
        column->addLayout(form);
    }

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch(1);
    for (QPushButton* button : {_deny, _allowAlways, _allowOnce}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    column->addLayout(buttons);
    connect(_allowOnce, &QPushButton::clicked, this, [this] { answer(MCPApprovalDecision::allowOnce); });
    connect(_allowAlways, &QPushButton::clicked, this, [this] { answer(MCPApprovalDecision::allowAlways); });
    connect(_deny, &QPushButton::clicked, this, [this] { answer(MCPApprovalDecision::deny); });
}

void ApprovalCard::answer(MCPApprovalDecision decision) {
    // The buttons go quiet at once: the card itself leaves when the center reports the change.
    for (QPushButton* button : {_allowOnce, _allowAlways, _deny}) button->setEnabled(false);
    _center.answer(_requestID, decision);
}

}  // namespace vuro
