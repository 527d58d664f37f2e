#pragma once

#include "models/GeneratedCommand.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <qcoro/qcoroasyncgenerator.h>
#include <qcoro/qcorotask.h>

namespace vuro {

// A reply in a fixed JSON shape: the schema for back-ends that can force one, and the
// instruction for those that can't.
struct StructuredOutput {
    QString name;
    QJsonObject schema;
    QString instruction;

    static StructuredOutput tasks();    // {"tasks": [text]}
    static StructuredOutput command();  // {"action", "noteHint", "text", "title"}

    // The JSON object in a reply, read from its first "{" to its last "}", so that an object
    // wrapped in prose or a code fence still decodes. Throws AIProviderError::invalidResponse.
    static QJsonObject objectIn(const QString& reply);

    // The whole streamed reply decoded; throw what the stream throws, or invalidResponse.
    static QCoro::Task<QStringList> tasksFrom(QCoro::AsyncGenerator<QString> reply);
    static QCoro::Task<GeneratedCommand> commandFrom(QCoro::AsyncGenerator<QString> reply);
};

}  // namespace vuro
