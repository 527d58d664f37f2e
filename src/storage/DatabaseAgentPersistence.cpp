#include "storage/DatabaseAgentPersistence.h"

#include "agents/RecordJson.h"

#include <QJsonDocument>

namespace vuro {
namespace {

// A route column written as a command-line route ("cli.codex") names the tool; the provider
// under it is then the default.
const QString cliPrefix = QStringLiteral("cli.");

QJsonObject parseObject(const QByteArray& bytes) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        throw DecodingError(QStringLiteral("The data couldn't be read because it isn't in the correct format."));
    return document.object();
}

std::optional<QByteArray> optionalData(const QJsonObject& object, const QString& key) {
    const auto text = Json::optionalString(object, key);
    if (!text) return std::nullopt;
    auto decoded = QByteArray::fromBase64Encoding(text->toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) throw DecodingError(QStringLiteral("Encountered Data is not valid Base64."));
    return *decoded;
}

template <typename T>
QList<T> optionalRecords(const QJsonObject& object, const QString& key) {
    const auto array = Json::optionalArray(object, key);
    return array ? Json::toRecords<T>(*array) : QList<T>();
}

}  // namespace

QJsonObject DatabaseAgentPersistence::Profile::toJson() const {
    QJsonObject object{{QStringLiteral("soul"), soul},
                       {QStringLiteral("duty"), duty},
                       {QStringLiteral("memory"), memory},
                       {QStringLiteral("symbol"), symbol},
                       {QStringLiteral("web"), web},
                       {QStringLiteral("skills"), Json::fromRecords(skills)},
                       {QStringLiteral("mcpServers"), Json::fromStrings(mcpServers)}};
    if (avatarImage) object.insert(QStringLiteral("avatarImage"), QString::fromLatin1(avatarImage->toBase64()));
    if (face) object.insert(QStringLiteral("face"), face->value);
    if (cliTool) object.insert(QStringLiteral("cliTool"), Json::fromRaw(*cliTool));
    return object;
}

DatabaseAgentPersistence::Profile DatabaseAgentPersistence::Profile::fromJson(const QJsonObject& object) {
    Profile profile;
    profile.soul = Json::requireString(object, QStringLiteral("soul"));
    profile.duty = Json::requireString(object, QStringLiteral("duty"));
    profile.memory = Json::requireString(object, QStringLiteral("memory"));
    profile.symbol = Json::optionalString(object, QStringLiteral("symbol")).value_or(QString());
    profile.avatarImage = optionalData(object, QStringLiteral("avatarImage"));
    profile.web = Json::optionalBool(object, QStringLiteral("web")).value_or(false);
    profile.skills = optionalRecords<AgentSkill>(object, QStringLiteral("skills"));
    if (const auto servers = Json::optionalArray(object, QStringLiteral("mcpServers")))
        profile.mcpServers = Json::toStrings(*servers);
    if (const QJsonValue face = object.value(QStringLiteral("face")); !face.isUndefined() && !face.isNull())
        profile.face = AgentFace{face};
    profile.cliTool = Json::optionalRaw<CLIToolKind>(object, QStringLiteral("cliTool"));
    return profile;
}

QJsonObject DatabaseAgentPersistence::JobPayload::toJson() const {
    QJsonObject object{{QStringLiteral("vuro"), formatMarker},
                       {QStringLiteral("instruction"), instruction},
                       {QStringLiteral("attachments"), Json::fromRecords(attachments)}};
    if (toolPermission) object.insert(QStringLiteral("toolPermission"), toolPermission->toJson());
    return object;
}

DatabaseAgentPersistence::JobPayload DatabaseAgentPersistence::JobPayload::fromJson(const QJsonObject& object) {
    Json::requireInteger(object, QStringLiteral("vuro"));
    JobPayload payload;
    payload.instruction = Json::requireString(object, QStringLiteral("instruction"));
    payload.attachments = Json::requireRecords<AgentAttachment>(object, QStringLiteral("attachments"));
    if (const auto permission = Json::optionalObject(object, QStringLiteral("toolPermission")))
        payload.toolPermission = JobToolPermission::fromJson(*permission);
    return payload;
}

DatabaseAgentPersistence::JobPayload DatabaseAgentPersistence::JobPayload::fromText(const QString& text) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error == QJsonParseError::NoError && document.isObject() &&
        document.object().contains(QStringLiteral("vuro")))
        return fromJson(document.object());
    return {text, {}, std::nullopt};
}

QJsonObject DatabaseAgentPersistence::Payload::toJson() const {
    QJsonObject object{{QStringLiteral("text"), text},
                       {QStringLiteral("actions"), Json::fromRecords(actions)},
                       {QStringLiteral("attachments"), Json::fromRecords(attachments)},
                       {QStringLiteral("approvals"), Json::fromRecords(approvals)}};
    Json::putOptional(object, QStringLiteral("failure"), failure);
    Json::putOptional(object, QStringLiteral("jobTitle"), jobTitle);
    Json::putOptional(object, QStringLiteral("resultNoteID"), resultNoteID);
    return object;
}

DatabaseAgentPersistence::Payload DatabaseAgentPersistence::Payload::fromJson(const QJsonObject& object) {
    Payload payload;
    payload.text = Json::requireString(object, QStringLiteral("text"));
    payload.actions = Json::requireRecords<AgentAction>(object, QStringLiteral("actions"));
    payload.failure = Json::optionalString(object, QStringLiteral("failure"));
    payload.attachments = optionalRecords<AgentAttachment>(object, QStringLiteral("attachments"));
    payload.jobTitle = Json::optionalString(object, QStringLiteral("jobTitle"));
    payload.approvals = optionalRecords<MCPApprovalRecord>(object, QStringLiteral("approvals"));
    payload.resultNoteID = Json::optionalString(object, QStringLiteral("resultNoteID"));
    return payload;
}

DatabaseAgentPersistence::DatabaseAgentPersistence(std::shared_ptr<VuroDatabase> database)
    : _database(std::move(database)) {}

QByteArray DatabaseAgentPersistence::seal(const QJsonObject& object) {
    return _database->cipher().seal(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QJsonObject DatabaseAgentPersistence::openObject(const QByteArray& sealed) {
    return parseObject(_database->cipher().open(sealed));
}

QList<Agent> DatabaseAgentPersistence::loadAgents() {
    auto rows = _database->prepare(
        "SELECT id, name, emoji, colorIndex, vibe, sealedProfile, providerRaw, model, accessRaw, createdAt "
        "FROM StoredAgent ORDER BY createdAt, rowid");
    QList<Agent> agents;
    while (rows.step()) {
        const Profile profile = Profile::fromJson(openObject(rows.blob(5)));
        Agent agent;
        agent.id = rows.text(0);
        agent.name = rows.text(1);
        agent.emoji = rows.text(2);
        agent.symbol = profile.symbol;
        agent.avatarImage = profile.avatarImage;
        agent.face = profile.face;
        agent.color = noteColorMasked(rows.integer(3));
        agent.vibe = rows.text(4);
        agent.soul = profile.soul;
        agent.duty = profile.duty;
        agent.memory = profile.memory;
        const QString route = rows.text(6);
        if (route.startsWith(cliPrefix)) {
            agent.cliTool = Json::toRaw<CLIToolKind>(route.mid(cliPrefix.size()));
        } else {
            agent.provider = Json::toRaw<AIProviderKind>(route);
            agent.cliTool = profile.cliTool;
        }
        agent.model = rows.text(7);
        agent.access = Json::toRaw<NoteAccess>(rows.text(8));
        agent.web = profile.web;
        agent.skills = profile.skills;
        agent.mcpServers = profile.mcpServers;
        agent.createdAt = rows.date(9);
        agents.append(std::move(agent));
    }
    return agents;
}

void DatabaseAgentPersistence::saveAgent(const Agent& agent) {
    const Profile profile{agent.soul,   agent.duty,   agent.memory,     agent.symbol, agent.avatarImage,
                          agent.web,    agent.skills, agent.mcpServers, agent.face,   agent.cliTool};
    const QByteArray sealed = seal(profile.toJson());
    _database
        ->prepare(R"(INSERT INTO StoredAgent (id, name, emoji, colorIndex, vibe, sealedProfile, providerRaw, model,
                                              accessRaw, createdAt)
                     VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10)
                     ON CONFLICT (id) DO UPDATE SET
                         name = excluded.name, emoji = excluded.emoji, colorIndex = excluded.colorIndex,
                         vibe = excluded.vibe, sealedProfile = excluded.sealedProfile,
                         providerRaw = excluded.providerRaw, model = excluded.model,
                         accessRaw = excluded.accessRaw, createdAt = excluded.createdAt)")
        .bindText(1, agent.id)
        .bindText(2, agent.name)
        .bindText(3, agent.emoji)
        .bindInt(4, rawValue(agent.color))
        .bindText(5, agent.vibe)
        .bindBlob(6, sealed)
        .bindText(7, rawText(agent.provider))
        .bindText(8, agent.model)
        .bindText(9, rawText(agent.access))
        .bindDate(10, agent.createdAt)
        .run();
}

void DatabaseAgentPersistence::deleteAgent(const QString& id) {
    _database->transaction([&] {
        _database->prepare("DELETE FROM StoredAgentMessage WHERE agentID = ?1").bindText(1, id).run();
        _database->prepare("DELETE FROM StoredAgentJob WHERE agentID = ?1").bindText(1, id).run();
        _database->prepare("DELETE FROM StoredAgent WHERE id = ?1").bindText(1, id).run();
    });
}

QList<AgentJob> DatabaseAgentPersistence::loadJobs() {
    const BodyCipher& cipher = _database->cipher();
    auto rows = _database->prepare(
        "SELECT id, agentID, title, sealedInstruction, noteID, triggerData, enabled, createdAt, lastRun, "
        "lastStatusRaw, lastError FROM StoredAgentJob ORDER BY rowid");
    QList<AgentJob> jobs;
    while (rows.step()) {
        JobPayload payload = JobPayload::fromText(cipher.openText(rows.blob(3)));
        AgentJob job;
        job.id = rows.text(0);
        job.agentID = rows.text(1);
        job.title = rows.text(2);
        job.instruction = std::move(payload.instruction);
        job.noteID = rows.optionalText(4);
        job.trigger = AgentJob::Trigger::fromJson(parseObject(rows.blob(5)));
        job.enabled = rows.integer(6) != 0;
        job.createdAt = rows.date(7);
        if (!rows.isNull(8)) job.lastRun = rows.date(8);
        if (const auto status = rows.optionalText(9)) job.lastStatus = Json::toRaw<AgentJob::Status>(*status);
        job.lastError = rows.optionalText(10);
        job.attachments = std::move(payload.attachments);
        job.toolPermission = std::move(payload.toolPermission);
        jobs.append(std::move(job));
    }
    return jobs;
}

void DatabaseAgentPersistence::saveJob(const AgentJob& job) {
    const QByteArray sealed = seal(JobPayload{job.instruction, job.attachments, job.toolPermission}.toJson());
    _database->prepare(
        R"(INSERT INTO StoredAgentJob (id, agentID, title, sealedInstruction, noteID, triggerData, enabled, createdAt,
                                       lastRun, lastStatusRaw, lastError)
           VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11)
           ON CONFLICT (id) DO UPDATE SET
               agentID = excluded.agentID, title = excluded.title, sealedInstruction = excluded.sealedInstruction,
               noteID = excluded.noteID, triggerData = excluded.triggerData, enabled = excluded.enabled,
               createdAt = excluded.createdAt, lastRun = excluded.lastRun, lastStatusRaw = excluded.lastStatusRaw,
               lastError = excluded.lastError)")
        .bindText(1, job.id)
        .bindText(2, job.agentID)
        .bindText(3, job.title)
        .bindBlob(4, sealed)
        .bindText(5, job.noteID)
        .bindBlob(6, QJsonDocument(job.trigger.toJson()).toJson(QJsonDocument::Compact))
        .bindInt(7, job.enabled)
        .bindDate(8, job.createdAt)
        .bindDate(9, job.lastRun.value_or(QDateTime()))  // an invalid date is written as NULL
        .bindText(10, job.lastStatus ? std::optional(rawText(*job.lastStatus)) : std::nullopt)
        .bindText(11, job.lastError)
        .run();
}

void DatabaseAgentPersistence::deleteJob(const QString& id) {
    _database->prepare("DELETE FROM StoredAgentJob WHERE id = ?1").bindText(1, id).run();
}

QList<AgentMessage> DatabaseAgentPersistence::loadMessages(const QString& agentID) {
    auto rows = _database->prepare(
        "SELECT id, agentID, roleRaw, createdAt, jobID, sealedPayload FROM StoredAgentMessage "
        "WHERE agentID = ?1 ORDER BY createdAt, rowid");
    rows.bindText(1, agentID);
    QList<AgentMessage> messages;
    while (rows.step()) {
        Payload payload = Payload::fromJson(openObject(rows.blob(5)));
        AgentMessage message;
        message.id = rows.text(0);
        message.agentID = rows.text(1);
        message.role = Json::toRaw<AgentMessage::Role>(rows.text(2));
        message.text = std::move(payload.text);
        message.createdAt = rows.date(3);
        message.actions = std::move(payload.actions);
        message.jobID = rows.optionalText(4);
        message.jobTitle = std::move(payload.jobTitle);
        message.failure = std::move(payload.failure);
        message.attachments = std::move(payload.attachments);
        message.approvals = std::move(payload.approvals);
        message.resultNoteID = std::move(payload.resultNoteID);
        messages.append(std::move(message));
    }
    return messages;
}

void DatabaseAgentPersistence::saveMessage(const AgentMessage& message) {
    const Payload payload{message.text,     message.actions,   message.failure,     message.attachments,
                          message.jobTitle, message.approvals, message.resultNoteID};
    const QByteArray sealed = seal(payload.toJson());
    _database
        ->prepare(R"(INSERT INTO StoredAgentMessage (id, agentID, roleRaw, createdAt, jobID, sealedPayload)
                     VALUES (?1, ?2, ?3, ?4, ?5, ?6)
                     ON CONFLICT (id) DO UPDATE SET
                         agentID = excluded.agentID, roleRaw = excluded.roleRaw, createdAt = excluded.createdAt,
                         jobID = excluded.jobID, sealedPayload = excluded.sealedPayload)")
        .bindText(1, message.id)
        .bindText(2, message.agentID)
        .bindText(3, rawText(message.role))
        .bindDate(4, message.createdAt)
        .bindText(5, message.jobID)
        .bindBlob(6, sealed)
        .run();
}

void DatabaseAgentPersistence::deleteMessages(const QStringList& ids) {
    _database->transaction([&] {
        auto remove = _database->prepare("DELETE FROM StoredAgentMessage WHERE id = ?1");
        for (const QString& id : ids) {
            remove.bindText(1, id).run();
            remove.reset();
        }
    });
}

void DatabaseAgentPersistence::clearMessages(const QString& agentID) {
    _database->prepare("DELETE FROM StoredAgentMessage WHERE agentID = ?1").bindText(1, agentID).run();
}

}  // namespace vuro
