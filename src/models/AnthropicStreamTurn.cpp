#include "models/AnthropicStreamTurn.h"

#include "models/AIProviderError.h"
#include "models/ToolSchema.h"

#include <QJsonDocument>
#include <cmath>

namespace vuro {
namespace {
const QLatin1String typeKey("type"), textKey("text"), thinkingKey("thinking"), inputKey("input");

int indexOf(const QJsonObject& event) {
    const QJsonValue value = event.value(QLatin1String("index"));
    if (!value.isDouble()) return 0;
    const double number = value.toDouble();
    if (!std::isfinite(number) || number < -1e9 || number > 1e9) return -1;
    return static_cast<int>(number);
}

bool isToolBlock(const QJsonObject& block) {
    const QString type = block.value(typeKey).toString();
    return type == QLatin1String("tool_use") || type == QLatin1String("server_tool_use");
}
}  // namespace

bool AnthropicStreamTurn::apply(QByteArrayView data) {
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(data.data(), data.size()));
    if (!document.isObject()) return false;
    const QJsonObject event = document.object();
    const QJsonValue typeValue = event.value(typeKey);
    if (!typeValue.isString()) return false;
    const QString type = typeValue.toString();
    const int index = indexOf(event);
    bool textChanged = false;

    if (type == QLatin1String("content_block_start")) {
        const QJsonValue block = event.value(QLatin1String("content_block"));
        if (block.isObject() && index >= 0) startBlock(index, block.toObject());
    } else if (type == QLatin1String("content_block_delta")) {
        const QJsonValue delta = event.value(QLatin1String("delta"));
        if (index >= 0 && index < _blocks.size() && delta.isObject()) applyDelta(index, delta.toObject(), textChanged);
    } else if (type == QLatin1String("content_block_stop")) {
        if (index >= 0 && index < _blocks.size()) stopBlock(index);
    } else if (type == QLatin1String("message_delta")) {
        const QJsonValue reason = event.value(QLatin1String("delta")).toObject().value(QLatin1String("stop_reason"));
        if (reason.isString()) _stopReason = reason.toString();
    } else if (type == QLatin1String("error")) {
        throw AIProviderError::http(0, event.value(QLatin1String("error")).toObject().value(QLatin1String("message")).toString());
    }
    return textChanged;
}

void AnthropicStreamTurn::startBlock(int index, const QJsonObject& block) {
    // Guard against an absurd index making an absurd array: the server numbers blocks densely.
    constexpr int maxBlocks = 10'000;
    if (index >= maxBlocks) return;
    while (_blocks.size() <= index) _blocks.append(QJsonObject());
    const QString type = block.value(typeKey).toString();
    if (type == QLatin1String("text") && !_text.isEmpty() && index >= 1 &&
        _blocks[index - 1].value(typeKey).toString() != QLatin1String("text"))
        _text += QLatin1String("\n\n");
    _blocks[index] = block;
    _blockText.remove(index);
    _blockThinking.remove(index);
    _partialJSON.remove(index);
    _invalid.remove(index);
    const QJsonValue name = block.value(QLatin1String("name"));
    if (type == QLatin1String("server_tool_use") && name.isString()) _serverToolStart = name.toString();
}

void AnthropicStreamTurn::applyDelta(int index, const QJsonObject& delta, bool& textChanged) {
    const QJsonValue kindValue = delta.value(typeKey);
    if (!kindValue.isString()) return;
    const QString kind = kindValue.toString();
    if (kind == QLatin1String("text_delta")) {
        const QString piece = delta.value(textKey).toString();
        auto it = _blockText.find(index);
        if (it == _blockText.end()) it = _blockText.insert(index, _blocks[index].value(textKey).toString());
        it->append(piece);
        _text += piece;
        textChanged = true;
    } else if (kind == QLatin1String("thinking_delta")) {
        auto it = _blockThinking.find(index);
        if (it == _blockThinking.end()) it = _blockThinking.insert(index, _blocks[index].value(thinkingKey).toString());
        it->append(delta.value(thinkingKey).toString());
    } else if (kind == QLatin1String("signature_delta")) {
        _blocks[index].insert(QLatin1String("signature"), delta.value(QLatin1String("signature")));
    } else if (kind == QLatin1String("input_json_delta")) {
        _partialJSON[index].append(delta.value(QLatin1String("partial_json")).toString());
    }
}

void AnthropicStreamTurn::stopBlock(int index) {
    if (!isToolBlock(_blocks[index])) return;
    const QString raw = _partialJSON.value(index);
    if (const auto input = toolArguments(raw)) {
        _blocks[index].insert(inputKey, *input);
    } else {
        _blocks[index].insert(inputKey, QJsonObject());
        _invalid.insert(index, raw);
    }
}

QJsonArray AnthropicStreamTurn::blocks() const {
    QJsonArray array;
    for (int i = 0; i < _blocks.size(); ++i) {
        QJsonObject block = _blocks[i];
        if (const auto it = _blockText.constFind(i); it != _blockText.cend()) block.insert(textKey, *it);
        if (const auto it = _blockThinking.constFind(i); it != _blockThinking.cend()) block.insert(thinkingKey, *it);
        array.append(block);
    }
    return array;
}

QList<AnthropicStreamTurn::ToolUse> AnthropicStreamTurn::toolUses() const {
    QList<ToolUse> uses;
    for (int i = 0; i < _blocks.size(); ++i) {
        const QJsonObject& block = _blocks[i];
        const QJsonValue id = block.value(QLatin1String("id"));
        const QJsonValue name = block.value(QLatin1String("name"));
        if (block.value(typeKey).toString() != QLatin1String("tool_use") || !id.isString() || !name.isString()) continue;
        ToolUse use{id.toString(), name.toString(), block.value(inputKey).toObject(), {}};
        if (const auto invalid = _invalid.constFind(i); invalid != _invalid.cend()) {
            use.input.reset();
            use.raw = *invalid;
        } else {
            use.raw = _partialJSON.value(i);
        }
        uses.append(use);
    }
    return uses;
}

}  // namespace vuro
