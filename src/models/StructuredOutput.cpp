#include "models/StructuredOutput.h"

#include "base/Text.h"
#include "models/AIProviderError.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace vuro {
namespace {

QJsonObject stringProperty(const QString& description) {
    return {{QLatin1String("type"), QLatin1String("string")}, {QLatin1String("description"), description}};
}

QCoro::Task<QString> wholeReply(QCoro::AsyncGenerator<QString> reply) {
    QString text;
    for (auto it = co_await reply.begin(); it != reply.end(); co_await ++it) text += *it;
    co_return text;
}

}  // namespace

StructuredOutput StructuredOutput::tasks() {
    const QJsonObject schema{
        {QLatin1String("type"), QLatin1String("object")},
        {QLatin1String("properties"),
         QJsonObject{{QLatin1String("tasks"), QJsonObject{{QLatin1String("type"), QLatin1String("array")},
                                                          {QLatin1String("items"), QJsonObject{{QLatin1String("type"), QLatin1String("string")}}}}}}},
        {QLatin1String("required"), QJsonArray{QLatin1String("tasks")}},
        {QLatin1String("additionalProperties"), false}};
    return {QStringLiteral("ExtractedTasks"), schema, QStringLiteral("Reply only with JSON: {\"tasks\": [\"…\"]}")};
}

StructuredOutput StructuredOutput::command() {
    QJsonObject action = stringProperty(QStringLiteral("addTask, createNote, appendToNote, completeTask or unknown"));
    action.insert(QLatin1String("enum"), QJsonArray{QLatin1String("addTask"), QLatin1String("createNote"), QLatin1String("appendToNote"),
                                                    QLatin1String("completeTask"), QLatin1String("unknown")});
    const QJsonObject properties{
        {QLatin1String("action"), action},
        {QLatin1String("noteHint"),
         stringProperty(QStringLiteral("Name of the note or list the user mentions, ideally one of the given note names; empty if none"))},
        {QLatin1String("text"),
         stringProperty(QStringLiteral("The task or content in the user's own words and language, keeping date and time words, without the note name"))},
        {QLatin1String("title"), stringProperty(QStringLiteral("Title for a new note when creating one; otherwise empty"))}};
    const QJsonObject schema{{QLatin1String("type"), QLatin1String("object")},
                             {QLatin1String("properties"), properties},
                             {QLatin1String("required"), QJsonArray{QLatin1String("action"), QLatin1String("noteHint"),
                                                                    QLatin1String("text"), QLatin1String("title")}},
                             {QLatin1String("additionalProperties"), false}};
    return {QStringLiteral("GeneratedCommand"), schema,
            QStringLiteral("Reply only with JSON: {\"action\": \"addTask|createNote|appendToNote|completeTask|unknown\", "
                           "\"noteHint\": \"\", \"text\": \"\", \"title\": \"\"}")};
}

QJsonObject StructuredOutput::objectIn(const QString& reply) {
    const qsizetype first = reply.indexOf(QLatin1Char('{'));
    const qsizetype last = reply.lastIndexOf(QLatin1Char('}'));
    if (first < 0 || last < first) throw AIProviderError::invalidResponse();
    const QJsonDocument document = QJsonDocument::fromJson(reply.mid(first, last - first + 1).toUtf8());
    if (!document.isObject()) throw AIProviderError::invalidResponse();
    return document.object();
}

QCoro::Task<QStringList> StructuredOutput::tasksFrom(QCoro::AsyncGenerator<QString> reply) {
    const QString text = co_await wholeReply(std::move(reply));
    const QJsonObject object = objectIn(text);
    const QJsonValue list = object.value(QLatin1String("tasks"));
    if (!list.isArray()) throw AIProviderError::invalidResponse();
    QStringList tasks;
    for (const QJsonValue& entry : list.toArray()) {
        const QString task = Text::trimmed(entry.toString());
        if (!task.isEmpty()) tasks.append(task);
    }
    co_return tasks;
}

QCoro::Task<GeneratedCommand> StructuredOutput::commandFrom(QCoro::AsyncGenerator<QString> reply) {
    const QString text = co_await wholeReply(std::move(reply));
    const QJsonObject object = objectIn(text);
    GeneratedCommand command{object.value(QLatin1String("action")).toString(), object.value(QLatin1String("noteHint")).toString(),
                             object.value(QLatin1String("text")).toString(), object.value(QLatin1String("title")).toString()};
    if (command.action.isEmpty()) command.action = QStringLiteral("unknown");
    co_return command;
}

}  // namespace vuro
