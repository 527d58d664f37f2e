#pragma once

#include "agents/AgentAction.h"

#include "agents/ui/ChatCard.h"

class QLabel;
class QPushButton;

namespace vuro {

class AgentCenter;
class ElidedLabel;
class ErrorLabel;

// One change an agent made, under its reply: the summary and, while it can be put back, an Undo
// button. When the center refuses (the note was edited since), the refusal stays under the chip
// until the action is undone after all.
class ActionChip : public ChatCard {
    Q_OBJECT
public:
    ActionChip(AgentCenter& center, QString messageID, const AgentAction& action, QWidget* parent = nullptr);

    void setAction(const AgentAction& action);
    const AgentAction& action() const { return _action; }
    QPushButton* undoButton() const { return _undo; }
    QLabel* refusalLabel() const;

private:
    void undo();

    AgentCenter& _center;
    QString _messageID;
    AgentAction _action;
    ElidedLabel* _summary;
    QLabel* _state;
    QPushButton* _undo;
    ErrorLabel* _refusal;
};

}  // namespace vuro
