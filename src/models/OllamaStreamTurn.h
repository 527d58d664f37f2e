#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <optional>

namespace vuro {

// One streamed response of Ollama's native chat endpoint, a JSON object per line.
class OllamaStreamTurn {
public:
    struct ToolCall {
        std::optional<QString> id;
        QString name;
        QString arguments;  // JSON text, whether the server sent an object or a string
    };

    // Takes one line. Returns whether the reply text changed. A line with an error text throws
    // AIProviderError::http(500, error); lines that aren't objects are ignored.
    bool apply(QByteArrayView line);

    const QString& text() const { return _text; }
    const std::optional<QString>& doneReason() const { return _doneReason; }
    const QList<ToolCall>& toolCalls() const { return _toolCalls; }

private:
    QString _text;
    std::optional<QString> _doneReason;
    QList<ToolCall> _toolCalls;
};

}  // namespace vuro
