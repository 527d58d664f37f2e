#pragma once

#include "agents/AIProviderKind.h"
#include "agents/CLIToolKind.h"

#include <QString>
#include <QUrl>
#include <optional>

namespace vuro {

class Defaults;

// What each provider kind comes with (name, API base, default model, whether it takes a key or
// a base of the user's own) and the user's choices for it in the preferences. A saved model or
// base equal to the built-in one clears its key, so that a later version can change the default.
// Main thread, like Defaults.
namespace AIProviderSettings {

// The vendor's name, used in routes and in "Add your X API key …".
QString displayName(AIProviderKind kind);
// claude, openAI and gemini; the local servers and the on-device model take none.
bool takesKey(AIProviderKind kind);
// Only the local servers honour a base of the user's own.
bool takesCustomBase(AIProviderKind kind);
std::optional<QUrl> apiBase(AIProviderKind kind);
// Empty for kinds without one (local servers list what they have installed).
QString defaultModel(AIProviderKind kind);

QString providerKey();                 // "aiProvider"
QString modelKey(AIProviderKind kind);  // "aiModel.<kind>"
QString cliModelKey(CLIToolKind tool);  // "aiCLIModel.<tool>"
QString baseURLKey(AIProviderKind kind);  // "aiBaseURL.<kind>"

// The model to use: the saved one, trimmed, or else the built-in default.
QString model(const Defaults& defaults, AIProviderKind kind);
void saveModel(Defaults& defaults, AIProviderKind kind, const QString& model);
// The saved model of a command-line tool, trimmed; empty lets the tool choose.
QString cliModel(const Defaults& defaults, CLIToolKind tool);

// The base to talk to: a saved custom base where the kind honours one, else the built-in base.
std::optional<QUrl> baseURL(const Defaults& defaults, AIProviderKind kind);
// A base as typed, made whole: "http://" when no scheme is given, "/v1" for an empty path, and a
// trailing "/". None for a scheme other than http or https, or no host.
std::optional<QUrl> normalizedBaseURL(const QString& text);
// Saves a normalised base; false (and nothing saved) when the text is refused.
bool saveBaseURL(Defaults& defaults, AIProviderKind kind, const QString& text);

}  // namespace AIProviderSettings
}  // namespace vuro
