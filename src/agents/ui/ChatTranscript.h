#pragma once

#include "agents/AgentMessage.h"

#include <QScrollArea>

class QLabel;
class QVBoxLayout;

namespace vuro {

class AgentCenter;
class ChatMessageView;

// The scrolling list of a conversation: one view per message, kept by identifier so that a reply
// in progress is updated where it stands; below the messages the cards that wait for the user
// and a line telling what the agent is doing. While the reader is at the bottom, new text keeps
// the view there; a reader who scrolled up is left where they are.
class ChatTranscript : public QScrollArea {
    Q_OBJECT
public:
    explicit ChatTranscript(AgentCenter& center, QWidget* parent = nullptr);

    void setMessages(const QList<AgentMessage>& messages);
    // What the agent is doing now, or empty when it is idle.
    void setActivity(const QString& words);
    // Shown while there are no messages.
    void setPlaceholder(const QString& text);
    // Where the cards that wait for an answer go, after the last message.
    QVBoxLayout* cardColumn() const { return _cards; }

    QList<ChatMessageView*> messageViews() const { return _views; }
    ChatMessageView* viewOf(const QString& messageID) const;
    QLabel* activityLabel() const { return _activity; }
    bool isAtBottom() const;
    void scrollToBottom();

private:
    AgentCenter& _center;
    QWidget* _content;
    QVBoxLayout* _messages;
    QVBoxLayout* _cards;
    QLabel* _activity;
    QLabel* _placeholder;
    QList<ChatMessageView*> _views;
    bool _followsEnd = true;
};

}  // namespace vuro
