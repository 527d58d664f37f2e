#pragma once

#include "agents/AgentAttachmentDraft.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QStringList>
#include <optional>

namespace vuro {

// Where the bytes of agent attachments are kept, one entry per attachment identifier.
// write throws a vuro::Error with the sentence to show; read gives none for an entry that is
// gone or can't be opened, so that a run goes on without it. Main thread.
class AgentAttachmentFiles {
public:
    virtual ~AgentAttachmentFiles() = default;
    virtual void write(const QString& id, const QByteArray& data) = 0;
    virtual std::optional<QByteArray> read(const QString& id) const = 0;
    virtual void remove(const QStringList& ids) = 0;  // unknown identifiers are ignored
    virtual QStringList allIDs() const = 0;

    // Writes every draft of one message. When one fails the ones already written are removed
    // and the error is thrown on.
    QList<AgentAttachment> store(const QList<AgentAttachmentDraft>& drafts);
};

// The twin that keeps everything in memory, for tests and for a process without a store.
class InMemoryAgentAttachmentFiles : public AgentAttachmentFiles {
public:
    void write(const QString& id, const QByteArray& data) override;
    std::optional<QByteArray> read(const QString& id) const override;
    void remove(const QStringList& ids) override;
    QStringList allIDs() const override;

    QHash<QString, QByteArray> files;
    // A write of this identifier fails, as a full disk would.
    QString failingID;
};

}  // namespace vuro
