#pragma once

#include "agents/AgentMessage.h"

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace vuro {

class ActionChip;
class AgentCenter;
class ChatCard;
class ErrorLabel;
class MarkdownLabel;

// One message of a conversation. The user's words sit in a bubble on the right; an agent's reply
// is Markdown on the left with the changes it made as chips below it, what was asked of the user
// on the way, and the failure that ended it in the error colour; a notice from the program is a
// quiet centred line. setMessage updates the view in place, so a reply can grow word by word
// without losing the reader's selection or focus.
class ChatMessageView : public QWidget {
    Q_OBJECT
public:
    ChatMessageView(AgentCenter& center, const AgentMessage& message, QWidget* parent = nullptr);

    void setMessage(const AgentMessage& message);
    const AgentMessage& message() const { return _message; }

    MarkdownLabel* replyText() const { return _reply; }
    QList<ActionChip*> chips() const { return _chips; }
    ErrorLabel* failureLabel() const { return _failure; }
    QLabel* plainText() const { return _text; }
    QLabel* filesLabel() const { return _files; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildUser();
    void buildAgent();
    void buildNotice();
    void updateChips();
    void updateApprovals();
    void fitBubble();

    AgentCenter& _center;
    AgentMessage _message;
    QVBoxLayout* _column;
    ChatCard* _bubble = nullptr;
    QLabel* _text = nullptr;  // the user's words, or a notice
    QLabel* _files = nullptr;
    QLabel* _job = nullptr;
    MarkdownLabel* _reply = nullptr;
    QVBoxLayout* _chipColumn = nullptr;
    QList<ActionChip*> _chips;
    QLabel* _approvals = nullptr;
    ErrorLabel* _failure = nullptr;
};

}  // namespace vuro
