#pragma once

#include "agents/Agent.h"
#include "agents/AgentMessage.h"

#include <QJsonDocument>
#include <ostream>

// Agent records with every field set and every variant case, shared by the record and store tests.
namespace vuro {

// Records print as their JSON in failure messages.
template <typename T>
    requires requires(const T& record) { record.toJson(); }
void PrintTo(const T& record, std::ostream* os) {
    *os << QJsonDocument(record.toJson()).toJson(QJsonDocument::Compact).toStdString();
}

namespace test {

QDateTime at(const char* iso);  // an ISO 8601 instant
AgentAttachment recording();
AgentJob fullJob();   // every field set, a weekly trigger
AgentJob bareJob();   // only what is required
QList<AgentUndo> everyUndo();  // every case, the folder case both ways
AgentMessage fullMessage();    // an action for every undo case, approvals, attachments
Agent fullAgent();             // every field set, with a command-line tool over a provider

}  // namespace test
}  // namespace vuro
