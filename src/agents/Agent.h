#pragma once

#include "agents/AIProviderKind.h"
#include "agents/AgentFace.h"
#include "agents/AgentSkill.h"
#include "agents/CLIToolKind.h"
#include "agents/NoteAccess.h"
#include "base/Clock.h"
#include "base/Ids.h"
#include "notes/NoteColor.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace vuro {

// A named assistant: who it is, what it remembers, which model answers for it and what it may
// touch. A default-made agent is a fresh one: new id, sky, the on-device route, read access,
// created at this moment.
struct Agent {
    // The identifier of the built-in notes agent, the one fixed identifier there is.
    static inline const QString notesAgentID = QStringLiteral("vuro.notes");

    QString id = newId();
    QString name;
    QString emoji;   // face as one emoji
    QString symbol;  // face as a symbol name
    std::optional<QByteArray> avatarImage;  // face as a picture
    std::optional<AgentFace> face;          // drawn face
    NoteColor color = NoteColor::sky;  // also the colour of its result notes
    QString vibe;    // a few words of manner
    QString soul;    // persona and boundaries, addressed to the agent as "you"
    QString duty;    // what it does, addressed to the agent as "you"
    QString memory;  // remembered facts, one "- " line each
    AIProviderKind provider = AIProviderKind::apple;
    std::optional<CLIToolKind> cliTool;  // when set it wins over provider
    QString model;  // empty for the back-end's default
    NoteAccess access = NoteAccess::read;
    bool web = false;
    QList<AgentSkill> skills;
    QStringList mcpServers;  // identifiers of the MCP servers turned on for this agent
    QDateTime createdAt = Clock::now();

    // The built-in notes agent, dated in the distant past so that it sorts before every other.
    static Agent notesAgent();

    // The trimmed name, or "Agent" when it is blank.
    QString displayName() const;
    // The stable name of the model route: "cli.<tool>" with a command-line tool, else the provider.
    QString routeID() const;
    // The maker's name shown on the agent's badge.
    QString routeLabel() const;
    // Adds a fact to memory as a "- " line unless the same line is already there. Returns whether
    // memory changed.
    bool remember(const QString& fact);

    QJsonObject toJson() const;
    static Agent fromJson(const QJsonObject& object);  // throws DecodingError

    bool operator==(const Agent&) const = default;
};

size_t qHash(const Agent& agent, size_t seed = 0);

}  // namespace vuro
