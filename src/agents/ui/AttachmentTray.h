#pragma once

#include "agents/AgentAttachmentDraft.h"

#include <QWidget>
#include <qcoro/qcorotask.h>

class QHBoxLayout;
class QLabel;
class QScrollArea;

namespace vuro {

class AttachmentChip;
class ErrorLabel;

// The files that go with the next message. Files are read and converted off the main thread;
// a file that can't be attached leaves its sentence under the tray and the others still come.
// At most AgentAttachmentImport::maximumPerMessage files fit; the tray hides itself while it has
// nothing to show.
class AttachmentTray : public QWidget {
    Q_OBJECT
public:
    explicit AttachmentTray(QWidget* parent = nullptr);

    void addFiles(const QStringList& paths);
    void remove(const QString& attachmentID);
    // Empties the tray after a send.
    void clear();

    const QList<AgentAttachmentDraft>& drafts() const { return _drafts; }
    bool isBusy() const { return _busy > 0; }
    QList<AttachmentChip*> chips() const;
    QString failureText() const;

Q_SIGNALS:
    void changed();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QCoro::Task<> import(QStringList paths);
    void showFailures(const QStringList& sentences);
    void refresh();
    void fitStrip();

    QList<AgentAttachmentDraft> _drafts;
    int _busy = 0;
    QScrollArea* _scroller;
    QWidget* _strip;
    QHBoxLayout* _row;
    QLabel* _working;
    ErrorLabel* _failures;
};

}  // namespace vuro
