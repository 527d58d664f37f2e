#include "agents/ui/ChatMessageView.h"

#include "agents/ui/ActionChip.h"
#include "agents/ui/ChatCard.h"
#include "agents/ui/ErrorLabel.h"
#include "agents/ui/MarkdownLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>
#include <algorithm>

namespace vuro {
namespace {

// A bubble never takes the whole width: the side it leaves free tells who spoke.
constexpr double bubbleShare = 0.78;

QString outcomeWords(MCPApprovalRecord::Outcome outcome) {
    switch (outcome) {
    case MCPApprovalRecord::Outcome::allowed: return ChatMessageView::tr("Allowed once");
    case MCPApprovalRecord::Outcome::allowedAlways: return ChatMessageView::tr("Always allowed");
    case MCPApprovalRecord::Outcome::denied: return ChatMessageView::tr("Denied");
    case MCPApprovalRecord::Outcome::noAnswer: return ChatMessageView::tr("No answer");
    case MCPApprovalRecord::Outcome::allowedByJob: return ChatMessageView::tr("Allowed for this job");
    }
    return {};
}

QLabel* quietLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(QPalette::PlaceholderText);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    return label;
}

}  // namespace

ChatMessageView::ChatMessageView(AgentCenter& center, const AgentMessage& message, QWidget* parent)
    : QWidget(parent), _center(center), _message(message), _column(new QVBoxLayout(this)) {
    _column->setContentsMargins(0, 0, 0, 0);
    _column->setSpacing(6);
    switch (message.role) {
    case AgentMessage::Role::user: buildUser(); break;
    case AgentMessage::Role::agent: buildAgent(); break;
    case AgentMessage::Role::notice: buildNotice(); break;
    }
    setToolTip(QLocale().toString(message.createdAt.toLocalTime(), QLocale::ShortFormat));
    setMessage(message);
}

void ChatMessageView::buildUser() {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    _bubble = new ChatCard(ChatCard::Fill::userBubble, this);
    auto* inside = new QVBoxLayout(_bubble);
    inside->setContentsMargins(12, 8, 12, 8);
    inside->setSpacing(4);
    _text = new QLabel(_bubble);
    _text->setWordWrap(true);
    _text->setTextFormat(Qt::PlainText);
    _text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    inside->addWidget(_text);
    _files = quietLabel(_bubble);
    inside->addWidget(_files);
    row->addWidget(_bubble);
    _column->addLayout(row);
}

void ChatMessageView::buildAgent() {
    _job = quietLabel(this);
    _column->addWidget(_job);
    _reply = new MarkdownLabel(this);
    _column->addWidget(_reply);
    _chipColumn = new QVBoxLayout;
    _chipColumn->setSpacing(4);
    _column->addLayout(_chipColumn);
    _approvals = quietLabel(this);
    _column->addWidget(_approvals);
    _failure = new ErrorLabel(this);
    _column->addWidget(_failure);
}

void ChatMessageView::buildNotice() {
    _text = quietLabel(this);
    _text->setAlignment(Qt::AlignHCenter);
    _column->addWidget(_text);
    _failure = new ErrorLabel(this);
    _failure->setAlignment(Qt::AlignHCenter);
    _column->addWidget(_failure);
}

void ChatMessageView::setMessage(const AgentMessage& message) {
    _message = message;
    if (_text) {
        _text->setText(message.text);
        _text->setVisible(!message.text.isEmpty());
    }
    if (_files) {
        QStringList names;
        for (const AgentAttachment& attachment : message.attachments) names.append(QStringLiteral("📎 ") + attachment.name);
        _files->setText(names.join(QStringLiteral("   ")));
        _files->setVisible(!names.isEmpty());
    }
    if (_job) {
        _job->setText(message.jobTitle ? tr("From the job “%1”").arg(*message.jobTitle) : QString());
        _job->setVisible(message.jobTitle.has_value());
    }
    if (_reply) {
        _reply->setMarkdown(message.text);
        _reply->setVisible(!message.text.isEmpty());
    }
    fitBubble();
    if (_chipColumn) updateChips();
    if (_approvals) updateApprovals();
    if (_failure) {
        _failure->setText(message.failure.value_or(QString()));
        _failure->setVisible(message.failure.has_value() && !message.failure->isEmpty());
    }
}

void ChatMessageView::updateChips() {
    // Chips are kept by position: a reply only ever appends actions, and a kept chip keeps the
    // refusal it may be showing.
    while (_chips.size() > _message.actions.size()) delete _chips.takeLast();
    for (qsizetype i = 0; i < _message.actions.size(); ++i) {
        const AgentAction& action = _message.actions[i];
        if (i < _chips.size() && _chips[i]->action().id == action.id) {
            _chips[i]->setAction(action);
            continue;
        }
        while (_chips.size() > i) delete _chips.takeLast();
        auto* chip = new ActionChip(_center, _message.id, action, this);
        _chipColumn->addWidget(chip, 0, Qt::AlignLeft);
        _chips.append(chip);
    }
}

void ChatMessageView::updateApprovals() {
    QStringList lines;
    for (const MCPApprovalRecord& record : _message.approvals)
        lines.append(tr("%1: %2 · %3").arg(outcomeWords(record.outcome), record.serverName, record.toolTitle));
    _approvals->setText(lines.join(QLatin1Char('\n')));
    _approvals->setVisible(!lines.isEmpty());
}

void ChatMessageView::fitBubble() {
    if (!_bubble) return;
    const int widest = static_cast<int>(width() * bubbleShare);
    _bubble->setMaximumWidth(widest);
    // A short message gets a snug bubble: the words ask for their own width, up to the share.
    const QMargins margins = _bubble->layout()->contentsMargins();
    int natural = 0;
    for (const QString& line : _message.text.split(QLatin1Char('\n')))
        natural = std::max(natural, _text->fontMetrics().horizontalAdvance(line));
    if (!_files->isHidden()) natural = std::max(natural, _files->fontMetrics().horizontalAdvance(_files->text()));
    _text->setMinimumWidth(std::max(0, std::min(natural + 2, widest - margins.left() - margins.right())));
}

void ChatMessageView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitBubble();
}

}  // namespace vuro
