#include "agents/ui/AgentChatWindow.h"

#include "agents/AgentActivityWords.h"
#include "agents/AgentCenter.h"
#include "agents/AgentConversationPresence.h"
#include "agents/ui/ApprovalCard.h"
#include "agents/ui/AgentAvatar.h"
#include "agents/ui/AttachmentTray.h"
#include "agents/ui/ChatComposer.h"
#include "agents/ui/ChatTranscript.h"
#include "agents/ui/ErrorLabel.h"
#include "base/Text.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolButton>
#include <QVBoxLayout>

namespace vuro {

AgentChatWindow::AgentChatWindow(AgentCenter& center, QString agentID, AgentConversationPresence* presence,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window), _center(&center), _agentID(std::move(agentID)), _presence(presence), _avatar(new AgentAvatar(36)),
      _name(new QLabel), _route(new QLabel), _more(new QToolButton), _transcript(new ChatTranscript(center)),
      _tray(new AttachmentTray), _status(new ErrorLabel), _attach(new QToolButton), _composer(new ChatComposer),
      _send(new QPushButton) {
    confirmClear = [this](QWidget* over) {
        const QString name = _center ? _center->agent(_agentID).value_or(Agent{}).displayName() : QString();
        return QMessageBox::question(over, tr("Clear Conversation"),
                                     tr("Clear the whole conversation with %1? This can't be undone.").arg(name),
                                     QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Yes;
    };
    setAcceptDrops(true);
    setMinimumSize(380, 420);
    resize(540, 700);

    auto* header = new QWidget;
    header->setBackgroundRole(QPalette::Window);
    header->setAutoFillBackground(true);
    auto* headerRow = new QHBoxLayout(header);
    headerRow->setContentsMargins(14, 10, 10, 10);
    headerRow->setSpacing(10);
    headerRow->addWidget(_avatar);
    auto* names = new QVBoxLayout;
    names->setSpacing(0);
    QFont bold = _name->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.1);
    _name->setFont(bold);
    names->addWidget(_name);
    _route->setForegroundRole(QPalette::PlaceholderText);
    names->addWidget(_route);
    headerRow->addLayout(names, 1);
    auto* menu = new QMenu(_more);
    QAction* clear = menu->addAction(tr("Clear Conversation…"), this, &AgentChatWindow::clearConversation);
    clear->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace));
    clear->setShortcutContext(Qt::WindowShortcut);
    addAction(clear);
    _more->setText(QStringLiteral("⋯"));
    _more->setToolTip(tr("More"));
    _more->setAccessibleName(tr("More"));
    _more->setMenu(menu);
    _more->setPopupMode(QToolButton::InstantPopup);
    _more->setAutoRaise(true);
    _more->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; width: 0px; }"));
    _more->setMinimumSize(32, 32);
    _more->setFocusPolicy(Qt::StrongFocus);
    headerRow->addWidget(_more);

    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    auto* footer = new QWidget;
    auto* footerColumn = new QVBoxLayout(footer);
    footerColumn->setContentsMargins(12, 8, 12, 12);
    footerColumn->setSpacing(6);
    footerColumn->addWidget(_tray);
    _status->hide();
    footerColumn->addWidget(_status);
    auto* composeRow = new QHBoxLayout;
    composeRow->setSpacing(8);
    _attach->setText(QStringLiteral("+"));
    _attach->setToolTip(tr("Attach Files… (%1)").arg(QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText)));
    _attach->setAccessibleName(tr("Attach Files"));
    _attach->setShortcut(QKeySequence::Open);
    _attach->setFocusPolicy(Qt::StrongFocus);
    _attach->setMinimumSize(32, 32);
    composeRow->addWidget(_attach, 0, Qt::AlignBottom);
    _composer->setAccessibleName(tr("Message"));
    composeRow->addWidget(_composer, 1);
    _send->setAutoDefault(false);
    _send->setMinimumWidth(72);
    composeRow->addWidget(_send, 0, Qt::AlignBottom);
    footerColumn->addLayout(composeRow);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(line);
    column->addWidget(_transcript, 1);
    column->addWidget(footer);
    setTabOrder(_composer, _send);
    setTabOrder(_send, _attach);
    setTabOrder(_attach, _more);

    // Many events can come in one turn of the event loop (a streaming reply); one redraw serves them.
    _refreshSoon.setSingleShot(true);
    _refreshSoon.setInterval(0);
    connect(&_refreshSoon, &QTimer::timeout, this, &AgentChatWindow::refresh);
    connect(&center, &AgentCenter::conversationChanged, this, [this](const QString& id) {
        if (id == _agentID) _refreshSoon.start();
    });
    connect(&center, &AgentCenter::replyingChanged, this, &AgentChatWindow::updateReplying);
    connect(&center, &AgentCenter::activityChanged, this, &AgentChatWindow::updateActivity);
    connect(&center, &AgentCenter::agentsChanged, this, &AgentChatWindow::updateAgent);
    connect(&center, &AgentCenter::pendingApprovalsChanged, this, &AgentChatWindow::updateApprovals);
    connect(_composer, &ChatComposer::submitted, this, &AgentChatWindow::send);
    connect(_composer, &ChatComposer::filesOffered, this, &AgentChatWindow::addFiles);
    connect(_composer, &QPlainTextEdit::textChanged, this, &AgentChatWindow::updateSendButton);
    connect(_tray, &AttachmentTray::changed, this, &AgentChatWindow::updateSendButton);
    connect(_send, &QPushButton::clicked, this, &AgentChatWindow::sendOrStop);
    connect(_attach, &QToolButton::clicked, this, &AgentChatWindow::chooseFiles);

    updateAgent();
    refresh();
    updateApprovals();
    updateReplying();
    _composer->setFocus();
}

AgentChatWindow::~AgentChatWindow() {
    if (_presence && _presenceToken) _presence->remove(_presenceToken);
}

QLabel* AgentChatWindow::statusLabel() const { return _status; }

void AgentChatWindow::updateAgent() {
    if (!_center) return;
    const auto agent = _center->agent(_agentID);
    if (!agent) {
        // The agent was deleted: nothing is left to talk to.
        close();
        return;
    }
    const QString name = agent->displayName();
    const QString emoji = Text::trimmed(agent->emoji);
    setWindowTitle(emoji.isEmpty() ? name : emoji + QLatin1Char(' ') + name);
    _avatar->setAgent(*agent);
    _name->setText(name);
    _route->setText(agent->routeLabel());
    _composer->setPlaceholderText(tr("Message %1").arg(name));
    _transcript->setPlaceholder(tr("This is the start of your conversation with %1.").arg(name));
}

void AgentChatWindow::refresh() {
    if (!_center) return;
    _transcript->setMessages(_center->conversation(_agentID));
}

void AgentChatWindow::updateReplying() {
    updateActivity();
    updateSendButton();
}

void AgentChatWindow::updateActivity() {
    if (!_center) return;
    const bool replying = _center->replying().contains(_agentID);
    const auto key = _center->activity(_agentID);
    _transcript->setActivity(replying || key ? AgentActivityWords::of(key) : QString());
}

void AgentChatWindow::updateSendButton() {
    const bool replying = _center && _center->replying().contains(_agentID);
    if (replying) {
        _send->setText(tr("Stop"));
        _send->setToolTip(tr("Stop the reply (Esc)"));
        _send->setEnabled(true);
        return;
    }
    _send->setText(tr("Send"));
    _send->setToolTip(tr("Send (Enter); Shift+Enter for a new line"));
    const bool hasSomething = !Text::trimmed(_composer->toPlainText()).isEmpty() || !_tray->drafts().isEmpty();
    _send->setEnabled(hasSomething && !_tray->isBusy());
}

void AgentChatWindow::updateApprovals() {
    if (!_center) return;
    QList<ApprovalCard*> kept;
    QList<ApprovalCard*> old = _approvals;
    bool added = false;
    for (const MCPApprovalRequest& request : _center->pendingApprovals()) {
        if (request.agentID != _agentID) continue;
        const auto found = std::find_if(old.begin(), old.end(), [&](ApprovalCard* card) { return card->requestID() == request.id; });
        if (found != old.end()) {
            kept.append(*found);
            old.erase(found);
            continue;
        }
        auto* card = new ApprovalCard(*_center, request);
        _transcript->cardColumn()->addWidget(card);
        kept.append(card);
        added = true;
    }
    for (ApprovalCard* answered : old) {
        // The answer may come from the card's own button, still on the stack.
        answered->hide();
        answered->deleteLater();
    }
    _approvals = kept;
    if (added) _transcript->scrollToBottom();
    updateActivity();
}

void AgentChatWindow::sendOrStop() {
    if (_center && _center->replying().contains(_agentID)) _center->cancelReply(_agentID);
    else send();
}

void AgentChatWindow::send() {
    if (!_center || _center->replying().contains(_agentID)) return;
    if (_tray->isBusy()) {
        _status->setText(tr("Wait a moment: the files are still being added."));
        _status->show();
        return;
    }
    const QString text = _composer->toPlainText();
    if (Text::trimmed(text).isEmpty() && _tray->drafts().isEmpty()) return;
    if (!_center->send(text, _tray->drafts(), _agentID)) {
        // What was written stays in the box, so nothing is lost.
        _status->setText(_center->lastError().value_or(tr("The message couldn't be sent.")));
        _status->show();
        return;
    }
    _status->hide();
    _composer->clear();
    _tray->clear();
    _transcript->scrollToBottom();
}

void AgentChatWindow::addFiles(const QStringList& paths) {
    _status->hide();
    _tray->addFiles(paths);
}

void AgentChatWindow::chooseFiles() {
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, tr("Attach Files"), QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
    addFiles(paths);
}

void AgentChatWindow::clearConversation() {
    if (!_center || _center->conversation(_agentID).isEmpty()) return;
    if (!confirmClear(this)) return;
    _center->clearConversation(_agentID);
}

void AgentChatWindow::markRead() {
    if (_center) _center->unread().clear(_agentID);
}

void AgentChatWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (_presence && !_presenceToken) _presenceToken = _presence->add(_agentID, windowHandle());
    markRead();
    _transcript->scrollToBottom();
}

void AgentChatWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) markRead();
}

void AgentChatWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && _center && _center->replying().contains(_agentID)) {
        _center->cancelReply(_agentID);
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}

void AgentChatWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!ChatComposer::localFiles(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void AgentChatWindow::dropEvent(QDropEvent* event) {
    const QStringList paths = ChatComposer::localFiles(event->mimeData());
    if (paths.isEmpty()) return;
    event->acceptProposedAction();
    addFiles(paths);
}

}  // namespace vuro
