#include "support/VendorReplies.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vuro::test {
namespace {

QByteArray quoted(const QString& text) {
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

}  // namespace

ReplayedResponse anthropicReply(const QStringList& pieces, const char* stopReason) {
    QByteArray body = "event: content_block_start\ndata: {\"type\":\"content_block_start\",\"index\":0,\"content_block\":{\"type\":\"text\",\"text\":\"\"}}\n\n";
    for (const QString& piece : pieces)
        body += "event: content_block_delta\ndata: {\"type\":\"content_block_delta\",\"index\":0,\"delta\":{\"type\":\"text_delta\",\"text\":" +
                quoted(piece) + "}}\n\n";
    body += QByteArray("event: message_delta\ndata: {\"type\":\"message_delta\",\"delta\":{\"stop_reason\":\"") + stopReason + "\"}}\n\n";
    return ReplayedResponse::of(body, 11);
}

ReplayedResponse openAIReply(const QStringList& pieces, const char* finishReason) {
    QByteArray body;
    for (const QString& piece : pieces) body += "data: {\"choices\":[{\"index\":0,\"delta\":{\"content\":" + quoted(piece) + "}}]}\n\n";
    body += QByteArray("data: {\"choices\":[{\"index\":0,\"delta\":{},\"finish_reason\":\"") + finishReason + "\"}]}\n\ndata: [DONE]\n\n";
    return ReplayedResponse::of(body, 13);
}

}  // namespace vuro::test
