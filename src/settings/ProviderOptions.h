#pragma once

#include "agents/AIProviderKind.h"
#include "agents/CLIToolKind.h"
#include "models/AssistantChoice.h"

#include <QList>
#include <QString>

namespace vuro {

// The back-ends as the choice lists of Settings and the agent editor name them. A kind that
// takes a key is named after its API ("Anthropic API"), so that it isn't mistaken for the
// vendor's command-line tool of a similar name.
namespace ProviderOptions {

struct Option {
    AssistantChoice choice;
    QString label;
};

QString label(AIProviderKind kind);
QString label(CLIToolKind tool);
QString label(const AssistantChoice& choice);

// Every API kind, in the order of the kinds.
QList<Option> apiKinds();
// Every API kind, then every command-line tool.
QList<Option> all();

}  // namespace ProviderOptions
}  // namespace vuro
