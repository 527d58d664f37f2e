#pragma once

#include "agents/AgentAttachmentFiles.h"
#include "storage/BodyCipher.h"

#include <functional>

namespace vuro {

// Attachment bytes sealed with the note key, one file "<id>.sealed" per attachment in one
// folder (created on the first write). The cipher is asked for lazily so that a store that could
// not open its key costs nothing until an attachment is written. write throws Error with a
// sentence; read gives none for a file that is gone or doesn't open. Main thread.
class SealedAgentAttachmentFiles : public AgentAttachmentFiles {
public:
    SealedAgentAttachmentFiles(QString directory, std::function<BodyCipher()> cipher);

    void write(const QString& id, const QByteArray& data) override;
    std::optional<QByteArray> read(const QString& id) const override;
    void remove(const QStringList& ids) override;
    QStringList allIDs() const override;

    const QString& directory() const { return _directory; }

private:
    QString pathOf(const QString& id) const;

    QString _directory;
    std::function<BodyCipher()> _cipher;
};

}  // namespace vuro
