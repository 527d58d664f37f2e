#include "agents/AgentAttachmentFiles.h"

#include "base/Error.h"

namespace vuro {

QList<AgentAttachment> AgentAttachmentFiles::store(const QList<AgentAttachmentDraft>& drafts) {
    QList<AgentAttachment> stored;
    QStringList written;
    try {
        for (const AgentAttachmentDraft& draft : drafts) {
            write(draft.info.id, draft.data);
            written.append(draft.info.id);
            stored.append(draft.info);
        }
    } catch (...) {
        remove(written);
        throw;
    }
    return stored;
}

void InMemoryAgentAttachmentFiles::write(const QString& id, const QByteArray& data) {
    if (!failingID.isEmpty() && id == failingID) throw Error(QStringLiteral("The attachment couldn't be saved."));
    files.insert(id, data);
}

std::optional<QByteArray> InMemoryAgentAttachmentFiles::read(const QString& id) const {
    const auto found = files.constFind(id);
    if (found == files.constEnd()) return std::nullopt;
    return *found;
}

void InMemoryAgentAttachmentFiles::remove(const QStringList& ids) {
    for (const QString& id : ids) files.remove(id);
}

QStringList InMemoryAgentAttachmentFiles::allIDs() const { return files.keys(); }

}  // namespace vuro
