#include "agents/Agent.h"

#include "agents/RecordJson.h"
#include "base/Text.h"

#include <QCoreApplication>

namespace vuro {

Agent Agent::notesAgent() {
    Agent agent;
    agent.id = notesAgentID;
    agent.name = QStringLiteral("Vuro");
    agent.color = NoteColor::lemon;
    agent.vibe = QCoreApplication::translate("Agent", "brief and clear");
    agent.access = NoteAccess::readWrite;
    agent.createdAt = QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);
    return agent;
}

QString Agent::displayName() const {
    const QString trimmed = Text::trimmed(name);
    return trimmed.isEmpty() ? QCoreApplication::translate("Agent", "Agent") : trimmed;
}

QString Agent::routeID() const {
    return cliTool ? QStringLiteral("cli.") + rawText(*cliTool) : rawText(provider);
}

QString Agent::routeLabel() const {
    if (cliTool) {
        switch (*cliTool) {
        case CLIToolKind::claudeCode: return QStringLiteral("Anthropic");
        case CLIToolKind::codex: return QStringLiteral("OpenAI");
        case CLIToolKind::gemini: return QStringLiteral("Google");
        case CLIToolKind::openCode: return QStringLiteral("OpenCode");
        case CLIToolKind::cursor: return QStringLiteral("Cursor");
        }
    }
    switch (provider) {
    case AIProviderKind::apple: return QStringLiteral("On-device model");
    case AIProviderKind::claude: return QStringLiteral("Anthropic");
    case AIProviderKind::openAI: return QStringLiteral("OpenAI");
    case AIProviderKind::gemini: return QStringLiteral("Google");
    case AIProviderKind::ollama: return QStringLiteral("Ollama");
    case AIProviderKind::lmStudio: return QStringLiteral("LM Studio");
    }
    return {};
}

bool Agent::remember(const QString& fact) {
    QString cleaned = Text::trimmed(fact);
    cleaned.replace(QLatin1Char('\n'), QLatin1Char(' '));
    if (cleaned.isEmpty()) return false;
    const QString line = QStringLiteral("- ") + cleaned;
    for (const QString& existing : memory.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        if (existing.trimmed() == line) return false;
    qsizetype start = 0;
    qsizetype end = memory.size();
    while (start < end && (memory[start] == u'\n' || memory[start] == u'\r')) ++start;
    while (end > start && (memory[end - 1] == u'\n' || memory[end - 1] == u'\r')) --end;
    const QString kept = memory.mid(start, end - start);
    memory = kept.isEmpty() ? line : kept + QLatin1Char('\n') + line;
    return true;
}

QJsonObject Agent::toJson() const {
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("emoji"), emoji},
                       {QStringLiteral("symbol"), symbol},
                       {QStringLiteral("color"), rawValue(color)},
                       {QStringLiteral("vibe"), vibe},
                       {QStringLiteral("soul"), soul},
                       {QStringLiteral("duty"), duty},
                       {QStringLiteral("memory"), memory},
                       {QStringLiteral("provider"), Json::fromRaw(provider)},
                       {QStringLiteral("model"), model},
                       {QStringLiteral("access"), Json::fromRaw(access)},
                       {QStringLiteral("web"), web},
                       {QStringLiteral("skills"), Json::fromRecords(skills)},
                       {QStringLiteral("mcpServers"), Json::fromStrings(mcpServers)},
                       {QStringLiteral("createdAt"), Json::fromDate(createdAt)}};
    if (avatarImage) object.insert(QStringLiteral("avatarImage"), QString::fromLatin1(avatarImage->toBase64()));
    if (face) object.insert(QStringLiteral("face"), face->value);
    if (cliTool) object.insert(QStringLiteral("cliTool"), Json::fromRaw(*cliTool));
    return object;
}

namespace {

std::optional<QByteArray> optionalData(const QJsonObject& object, const QString& key) {
    const auto text = Json::optionalString(object, key);
    if (!text) return std::nullopt;
    auto decoded = QByteArray::fromBase64Encoding(text->toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) throw DecodingError(QStringLiteral("Encountered Data is not valid Base64."));
    return *decoded;
}

NoteColor requireColor(const QJsonObject& object) {
    const qint64 raw = Json::requireInteger(object, QStringLiteral("color"));
    if (raw >= 0 && raw <= 7) return *noteColorFromRaw(int(raw));
    throw DecodingError(QStringLiteral("Cannot initialize NoteColor from invalid Int value %1").arg(raw));
}

}  // namespace

Agent Agent::fromJson(const QJsonObject& object) {
    std::optional<AgentFace> face;
    if (const QJsonValue v = object.value(QStringLiteral("face")); !v.isUndefined() && !v.isNull()) face = AgentFace{v};
    return {Json::requireString(object, QStringLiteral("id")),
            Json::requireString(object, QStringLiteral("name")),
            Json::requireString(object, QStringLiteral("emoji")),
            Json::requireString(object, QStringLiteral("symbol")),
            optionalData(object, QStringLiteral("avatarImage")),
            face,
            requireColor(object),
            Json::requireString(object, QStringLiteral("vibe")),
            Json::requireString(object, QStringLiteral("soul")),
            Json::requireString(object, QStringLiteral("duty")),
            Json::requireString(object, QStringLiteral("memory")),
            Json::requireRaw<AIProviderKind>(object, QStringLiteral("provider")),
            Json::optionalRaw<CLIToolKind>(object, QStringLiteral("cliTool")),
            Json::requireString(object, QStringLiteral("model")),
            Json::requireRaw<NoteAccess>(object, QStringLiteral("access")),
            Json::requireBool(object, QStringLiteral("web")),
            Json::requireRecords<AgentSkill>(object, QStringLiteral("skills")),
            Json::toStrings(Json::requireArray(object, QStringLiteral("mcpServers"))),
            Json::requireDate(object, QStringLiteral("createdAt"))};
}

size_t qHash(const Agent& agent, size_t seed) { return qHash(agent.toJson(), seed); }

}  // namespace vuro
