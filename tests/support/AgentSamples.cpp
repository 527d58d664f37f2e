#include "support/AgentSamples.h"

namespace vuro::test {

QDateTime at(const char* iso) { return QDateTime::fromString(QLatin1String(iso), Qt::ISODateWithMs); }

AgentAttachment recording() {
    return {QStringLiteral("A1"), QStringLiteral("meeting.m4a"), AgentAttachment::Kind::audio,
            QStringLiteral("audio/mp4"), 4'000'000'123, 1834.25};
}

AgentJob fullJob() {
    AgentJob job;
    job.id = QStringLiteral("J1");
    job.agentID = QStringLiteral("AG1");
    job.title = QStringLiteral("Morning brief");
    job.instruction = QStringLiteral("Summarise my open tasks.\n“Quoted” and ünïcödé");
    job.noteID = QStringLiteral("N1");
    job.trigger = {AgentJob::Trigger::Repeating{{Recurrence::Weekly{2, 9, 30}}}};
    job.enabled = false;
    job.createdAt = at("2026-03-01T08:00:00.123Z");
    job.lastRun = at("2026-03-02T09:30:00.000Z");
    job.lastStatus = AgentJob::Status::failed;
    job.lastError = QStringLiteral("The model did not answer.");
    job.attachments = {recording(), {QStringLiteral("A2"), QStringLiteral("a.png"), AgentAttachment::Kind::image,
                                     QStringLiteral("image/png"), 12, std::nullopt}};
    job.toolPermission = JobToolPermission{{{QStringLiteral("srv"), QStringLiteral("send")}}, job.instruction};
    return job;
}

AgentJob bareJob() {
    AgentJob job;
    job.id = QStringLiteral("J2");
    job.createdAt = at("2026-03-01T08:00:00.000Z");
    return job;
}

QList<AgentUndo> everyUndo() {
    AgentJob edited = fullJob();
    edited.title = QStringLiteral("Evening brief");
    return {
        {AgentUndo::RestoreBody{QStringLiteral("N1"), QStringLiteral("old\nbody"), QStringLiteral("new body")}},
        {AgentUndo::DeleteNote{QStringLiteral("N2"), QStringLiteral("- [ ] milk")}},
        {AgentUndo::RestoreMemory{QStringLiteral("AG1"), QStringLiteral("- likes tea")}},
        {AgentUndo::UnarchiveNote{QStringLiteral("N3")}},
        {AgentUndo::RestoreTags{QStringLiteral("N4"), {QStringLiteral("a"), QStringLiteral("b")}, {}}},
        {AgentUndo::RestoreFolder{QStringLiteral("N5"), std::nullopt, QStringLiteral("F1")}},
        {AgentUndo::RestoreFolder{QStringLiteral("N5"), QStringLiteral("F0"), std::nullopt}},
        {AgentUndo::DeleteJob{QStringLiteral("J9")}},
        {AgentUndo::RestoreJob{fullJob()}},
        {AgentUndo::RevertJob{fullJob(), edited}},
    };
}

AgentMessage fullMessage() {
    AgentMessage message;
    message.id = QStringLiteral("M1");
    message.agentID = QStringLiteral("AG1");
    message.role = AgentMessage::Role::agent;
    message.text = QStringLiteral("Done: added milk.");
    message.createdAt = at("2026-03-02T09:30:01.001Z");
    for (const AgentUndo& undo : everyUndo())
        message.actions.append({QStringLiteral("X%1").arg(message.actions.size()), QStringLiteral("add_task"), QStringLiteral("Added milk"), QStringLiteral("N1"), undo, false});
    message.actions.append({QStringLiteral("X"), QStringLiteral("fix_notes"), QStringLiteral("Fixed"), std::nullopt,
                            std::nullopt, true});
    message.jobID = QStringLiteral("J1");
    message.jobTitle = QStringLiteral("Morning brief");
    message.failure = QStringLiteral("Cut short.");
    message.attachments = {recording()};
    message.approvals = {{QStringLiteral("R1"), QStringLiteral("Mail"), QStringLiteral("Send mail"),
                          MCPApprovalRecord::Outcome::allowedByJob, at("2026-03-02T09:30:00.500Z"),
                          QStringLiteral("srv"), QStringLiteral("send")},
                         {QStringLiteral("R2"), QStringLiteral("Mail"), QStringLiteral("Read mail"),
                          MCPApprovalRecord::Outcome::noAnswer, at("2026-03-02T09:30:00.600Z"), std::nullopt,
                          std::nullopt}};
    message.resultNoteID = QStringLiteral("N7");
    return message;
}

Agent fullAgent() {
    Agent agent;
    agent.id = QStringLiteral("AG1");
    agent.name = QStringLiteral("Ada");
    agent.emoji = QStringLiteral("🦉");
    agent.symbol = QStringLiteral("star.fill");
    agent.avatarImage = QByteArray("\x89PNG\r\n\x1a\n\0\xff", 10);
    agent.face = AgentFace{QJsonObject{{QStringLiteral("eyes"), QJsonArray{1, 2.5, QStringLiteral("x")}},
                                       {QStringLiteral("mouth"), QJsonObject{{QStringLiteral("smile"), true}}}}};
    agent.color = NoteColor::mint;
    agent.vibe = QStringLiteral("dry");
    agent.soul = QStringLiteral("You are careful.");
    agent.duty = QStringLiteral("You keep lists.");
    agent.memory = QStringLiteral("- likes tea");
    agent.provider = AIProviderKind::lmStudio;
    agent.cliTool = CLIToolKind::openCode;
    agent.model = QStringLiteral("qwen");
    agent.access = NoteAccess::none;
    agent.web = true;
    agent.skills = {{QStringLiteral("S1"), QStringLiteral("pdf"), QStringLiteral("Reads PDFs"),
                     QStringLiteral("Use it."), {{QStringLiteral("ref/a.md"), QStringLiteral("text")}}, false}};
    agent.mcpServers = {QStringLiteral("srv"), QStringLiteral("srv2")};
    agent.createdAt = at("2026-01-01T00:00:00.000Z");
    return agent;
}

}  // namespace vuro::test
