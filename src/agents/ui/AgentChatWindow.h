#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>

class QLabel;
class QPushButton;
class QToolButton;

namespace vuro {

class AgentAvatar;
class AgentCenter;
class AgentConversationPresence;
class ApprovalCard;
class AttachmentTray;
class ChatComposer;
class ChatTranscript;
class ErrorLabel;

// The chat with one agent: its conversation, what it is doing, the files for the next message
// and the box to write in. Everything it shows comes from the AgentCenter and is redrawn when the
// center reports a change, so that several windows and the rest of the program stay in step.
// A message that can't be sent stays in the box with the sentence that says why. The window
// closes itself when its agent is deleted. While it is shown it counts as the agent's conversation
// on screen, so that replies arriving then leave no unread mark. Main thread.
class AgentChatWindow : public QWidget {
    Q_OBJECT
public:
    AgentChatWindow(AgentCenter& center, QString agentID, AgentConversationPresence* presence = nullptr,
                    QWidget* parent = nullptr);
    ~AgentChatWindow() override;

    const QString& agentID() const { return _agentID; }

    // Sends what is in the box with the files in the tray.
    void send();
    void addFiles(const QStringList& paths);
    // Empties the conversation after the user agreed.
    void clearConversation();
    // Asks before the conversation is emptied; a dialog unless a test replaces it.
    std::function<bool(QWidget* parent)> confirmClear;

    ChatTranscript* transcript() const { return _transcript; }
    ChatComposer* composer() const { return _composer; }
    AttachmentTray* tray() const { return _tray; }
    QPushButton* sendButton() const { return _send; }
    QLabel* statusLabel() const;
    QList<ApprovalCard*> approvalCards() const { return _approvals; }

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void refresh();
    void updateAgent();
    void updateReplying();
    void updateActivity();
    void updateSendButton();
    void updateApprovals();
    void chooseFiles();
    void sendOrStop();
    void markRead();

    QPointer<AgentCenter> _center;
    QString _agentID;
    QPointer<AgentConversationPresence> _presence;
    int _presenceToken = 0;
    QList<ApprovalCard*> _approvals;
    QTimer _refreshSoon;
    AgentAvatar* _avatar;
    QLabel* _name;
    QLabel* _route;
    QToolButton* _more;
    ChatTranscript* _transcript;
    AttachmentTray* _tray;
    ErrorLabel* _status;
    QToolButton* _attach;
    ChatComposer* _composer;
    QPushButton* _send;
};

}  // namespace vuro
