#include "models/AIProviderSettings.h"

#include "base/Defaults.h"
#include "base/Text.h"

#include <QCoreApplication>

namespace vuro::AIProviderSettings {

QString displayName(AIProviderKind kind) {
    switch (kind) {
    case AIProviderKind::apple: return QCoreApplication::translate("AIProviderSettings", "On-device model");
    case AIProviderKind::claude: return QStringLiteral("Anthropic");
    case AIProviderKind::openAI: return QStringLiteral("OpenAI");
    case AIProviderKind::gemini: return QStringLiteral("Google");
    case AIProviderKind::ollama: return QStringLiteral("Ollama");
    case AIProviderKind::lmStudio: return QStringLiteral("LM Studio");
    }
    return {};
}

bool takesKey(AIProviderKind kind) {
    return kind == AIProviderKind::claude || kind == AIProviderKind::openAI || kind == AIProviderKind::gemini;
}

bool takesCustomBase(AIProviderKind kind) { return kind == AIProviderKind::ollama || kind == AIProviderKind::lmStudio; }

std::optional<QUrl> apiBase(AIProviderKind kind) {
    switch (kind) {
    case AIProviderKind::apple: return std::nullopt;
    case AIProviderKind::claude: return QUrl(QStringLiteral("https://api.anthropic.com/v1/"));
    case AIProviderKind::openAI: return QUrl(QStringLiteral("https://api.openai.com/v1/"));
    case AIProviderKind::gemini: return QUrl(QStringLiteral("https://generativelanguage.googleapis.com/v1beta/openai/"));
    case AIProviderKind::ollama: return QUrl(QStringLiteral("http://localhost:11434/v1/"));
    case AIProviderKind::lmStudio: return QUrl(QStringLiteral("http://localhost:1234/v1/"));
    }
    return std::nullopt;
}

QString defaultModel(AIProviderKind kind) {
    switch (kind) {
    case AIProviderKind::claude: return QStringLiteral("claude-opus-5-5");
    case AIProviderKind::openAI: return QStringLiteral("gpt-6.1-sol");
    case AIProviderKind::gemini: return QStringLiteral("gemini-3.8-flash");
    default: return {};
    }
}

QString providerKey() { return QStringLiteral("aiProvider"); }
QString modelKey(AIProviderKind kind) { return QStringLiteral("aiModel.") + rawText(kind); }
QString cliModelKey(CLIToolKind tool) { return QStringLiteral("aiCLIModel.") + rawText(tool); }
QString baseURLKey(AIProviderKind kind) { return QStringLiteral("aiBaseURL.") + rawText(kind); }

QString model(const Defaults& defaults, AIProviderKind kind) {
    const QString saved = Text::trimmed(defaults.stringValue(modelKey(kind)));
    return saved.isEmpty() ? defaultModel(kind) : saved;
}

void saveModel(Defaults& defaults, AIProviderKind kind, const QString& model) {
    const QString trimmed = Text::trimmed(model);
    if (trimmed.isEmpty() || trimmed == defaultModel(kind))
        defaults.remove(modelKey(kind));
    else
        defaults.setValue(modelKey(kind), trimmed);
}

QString cliModel(const Defaults& defaults, CLIToolKind tool) { return Text::trimmed(defaults.stringValue(cliModelKey(tool))); }

std::optional<QUrl> baseURL(const Defaults& defaults, AIProviderKind kind) {
    if (takesCustomBase(kind)) {
        if (const auto custom = normalizedBaseURL(defaults.stringValue(baseURLKey(kind)))) return custom;
    }
    return apiBase(kind);
}

std::optional<QUrl> normalizedBaseURL(const QString& text) {
    QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) return std::nullopt;
    if (!trimmed.contains(QLatin1String("://"))) trimmed.prepend(QLatin1String("http://"));
    QUrl url(trimmed, QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || (scheme != QLatin1String("http") && scheme != QLatin1String("https")) || url.host().isEmpty())
        return std::nullopt;
    QString path = url.path();
    if (path.isEmpty() || path == QLatin1String("/")) path = QStringLiteral("/v1");
    if (!path.endsWith(QLatin1Char('/'))) path += QLatin1Char('/');
    url.setPath(path);
    return url;
}

bool saveBaseURL(Defaults& defaults, AIProviderKind kind, const QString& text) {
    if (Text::trimmed(text).isEmpty()) {
        defaults.remove(baseURLKey(kind));
        return true;
    }
    const auto url = normalizedBaseURL(text);
    if (!url) return false;
    if (url == apiBase(kind))
        defaults.remove(baseURLKey(kind));
    else
        defaults.setValue(baseURLKey(kind), url->toString());
    return true;
}

}  // namespace vuro::AIProviderSettings
