#pragma once

#include "agents/MCPApprovalDecision.h"
#include "agents/MCPApprovalRequest.h"
#include "agents/ui/ChatCard.h"

class QPushButton;

namespace vuro {

class AgentCenter;

// A question from an agent's tool, asked where the conversation is: which server wants to run
// which tool, with what, and the three answers. The answer goes to the center, which lets the
// waiting reply go on; the card goes when the request is no longer pending.
class ApprovalCard : public ChatCard {
    Q_OBJECT
public:
    ApprovalCard(AgentCenter& center, const MCPApprovalRequest& request, QWidget* parent = nullptr);

    const QString& requestID() const { return _requestID; }
    QPushButton* allowOnceButton() const { return _allowOnce; }
    QPushButton* allowAlwaysButton() const { return _allowAlways; }
    QPushButton* denyButton() const { return _deny; }

private:
    void answer(MCPApprovalDecision decision);

    AgentCenter& _center;
    QString _requestID;
    QPushButton* _allowOnce;
    QPushButton* _allowAlways;
    QPushButton* _deny;
};

}  // namespace vuro
