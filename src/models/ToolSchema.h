#pragma once

#include "agents/AgentToolDefinition.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>
#include <optional>

namespace vuro {

// The JSON Schema of a tool's input as vendors take it: an MCP server's own schema (without
// "$schema", with "type" and "properties" filled in when it lacks them), or one built from the
// tool's text parameters.
QJsonObject toolInputSchema(const AgentToolDefinition& spec);

// A call's argument text as an object: blank text is an empty object; anything that isn't a JSON
// object is none, and the model is told to try again.
std::optional<QJsonObject> toolArguments(const QString& json);

// One argument value as the text a toolbox reads: strings as they are, booleans "true"/"false",
// numbers in their shortest decimal form, arrays and objects as compact JSON. Null is none (the
// key is left out).
std::optional<QString> stringArgument(const QJsonValue& value);

// Every value of an argument object through stringArgument, leaving out what gives none.
QMap<QString, QString> textArguments(const QJsonObject& arguments);

}  // namespace vuro
