#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <optional>
#include <utility>

namespace vuro {

// One streamed response of the Messages API, built up event by event. The content blocks are
// kept as the server sent them, grown by their deltas, so that they can go back unchanged
// (thinking, signatures and server-tool blocks included) when the conversation continues.
class AnthropicStreamTurn {
public:
    struct ToolUse {
        QString id;
        QString name;
        std::optional<QJsonObject> input;  // none when the input text wasn't a JSON object
        QString raw;                       // the input text as streamed
    };

    // Takes one event's data. Returns whether the reply text changed. An "error" event throws
    // AIProviderError::http(0, message); data that isn't an event object is ignored.
    bool apply(QByteArrayView data);

    // The name of a server tool that has just begun, once.
    std::optional<QString> takeServerToolStart() { return std::exchange(_serverToolStart, std::nullopt); }

    const QString& text() const { return _text; }
    const std::optional<QString>& stopReason() const { return _stopReason; }
    QJsonArray blocks() const;        // in index order, with their grown texts
    QList<ToolUse> toolUses() const;  // the client tool blocks, in order

private:
    void startBlock(int index, const QJsonObject& block);
    void applyDelta(int index, const QJsonObject& delta, bool& textChanged);
    void stopBlock(int index);

    QList<QJsonObject> _blocks;
    // Texts that grow by many deltas are kept beside their blocks and put in by blocks().
    QHash<int, QString> _blockText;
    QHash<int, QString> _blockThinking;
    std::optional<QString> _stopReason;
    QString _text;
    QHash<int, QString> _partialJSON;
    QHash<int, QString> _invalid;
    std::optional<QString> _serverToolStart;
};

}  // namespace vuro
