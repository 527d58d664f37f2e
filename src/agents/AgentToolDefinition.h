#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <utility>

namespace vuro {

// What an agent can call, in the one vocabulary every back-end translates into its own wire
// format: note tools, job tools, web search, skills and MCP tools alike. Arguments are always
// text; each toolbox parses what it needs.
struct AgentToolDefinition {
    struct Parameter {
        // A parameter is either free text or one of a fixed list of texts. There is no number
        // or boolean kind: a model only ever hands over strings.
        struct Kind {
            enum class Case { choice, string };
            Case which = Case::string;
            QStringList options;  // the allowed texts of a choice; empty for string

            static Kind string() { return {}; }
            static Kind choice(QStringList options) { return {Case::choice, std::move(options)}; }
            bool isChoice() const { return which == Case::choice; }
            bool operator==(const Kind&) const = default;
        };

        QString name;
        QString description;
        Kind kind;
        bool required = false;

        bool operator==(const Parameter&) const = default;
    };

    QString name;  // unique within a run
    QString description;
    QList<Parameter> parameters;
    bool writes = false;  // the tool changes the user's data
    // The raw JSON Schema of an MCP tool; when present a back-end sends it instead of parameters.
    std::optional<QString> inputSchema;

    bool operator==(const AgentToolDefinition&) const = default;
};

size_t qHash(const AgentToolDefinition::Parameter::Kind& kind, size_t seed = 0);
size_t qHash(const AgentToolDefinition::Parameter& parameter, size_t seed = 0);
size_t qHash(const AgentToolDefinition& spec, size_t seed = 0);

}  // namespace vuro
