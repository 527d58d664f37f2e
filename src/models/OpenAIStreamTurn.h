#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QList>
#include <QString>
#include <optional>

namespace vuro {

// One streamed chat-completions response. Tool calls arrive in pieces keyed by their stream
// index, in any order; they are assembled here and kept in the order first seen.
class OpenAIStreamTurn {
public:
    struct ToolCall {
        QString id;
        QString name;
        QString arguments;  // the raw JSON text, concatenated from its pieces
    };

    // Takes one event's data ("[DONE]" and anything without choices is ignored).
    // Returns whether the reply text changed.
    bool apply(QByteArrayView data);

    const QString& text() const { return _text; }
    const std::optional<QString>& finishReason() const { return _finishReason; }
    // The calls worth running, in order of first sight: unnamed ones are left out, and a call the
    // server gave no id gets "call_" and its index.
    QList<ToolCall> calls() const;

private:
    QString _text;
    std::optional<QString> _finishReason;
    QHash<qint64, ToolCall> _calls;
    QList<qint64> _order;
};

}  // namespace vuro
