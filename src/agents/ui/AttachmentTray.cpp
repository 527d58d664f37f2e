#include "agents/ui/AttachmentTray.h"

#include "agents/AgentAttachmentImport.h"
#include "agents/ui/AttachmentChip.h"
#include "agents/ui/ErrorLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>
#include <qcoro/qcorofuture.h>

namespace vuro {
namespace {

QList<AgentAttachmentImport::Result> importAll(const QStringList& paths) {
    QList<AgentAttachmentImport::Result> results;
    for (const QString& path : paths) results.append(AgentAttachmentImport::fromFile(path));
    return results;
}

}  // namespace

AttachmentTray::AttachmentTray(QWidget* parent)
    : QWidget(parent), _scroller(new QScrollArea), _strip(new QWidget), _row(new QHBoxLayout(_strip)), _working(new QLabel),
      _failures(new ErrorLabel) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    _row->setContentsMargins(0, 0, 0, 0);
    _row->setSpacing(6);
    _row->addStretch(1);
    _scroller->setWidget(_strip);
    _scroller->setWidgetResizable(true);
    _scroller->setFrameShape(QFrame::NoFrame);
    _scroller->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    _scroller->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    column->addWidget(_scroller);
    _working->setText(tr("Adding files…"));
    _working->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(_working);
    column->addWidget(_failures);
    refresh();
}

QList<AttachmentChip*> AttachmentTray::chips() const { return _strip->findChildren<AttachmentChip*>(); }

QString AttachmentTray::failureText() const { return _failures->isHidden() ? QString() : _failures->text(); }

void AttachmentTray::addFiles(const QStringList& paths) {
    if (paths.isEmpty()) return;
    showFailures({});
    const qsizetype room = AgentAttachmentImport::maximumPerMessage - _drafts.size();
    QStringList taken = paths.mid(0, std::max<qsizetype>(room, 0));
    if (taken.size() < paths.size())
        showFailures({AgentAttachmentImport::Failure::tooMany(AgentAttachmentImport::maximumPerMessage).message()});
    if (!taken.isEmpty()) import(std::move(taken));
}

QCoro::Task<> AttachmentTray::import(QStringList paths) {
    QPointer<AttachmentTray> self(this);
    ++_busy;
    refresh();
    QList<AgentAttachmentImport::Result> results;
    QStringList failures;
    try {
        results = co_await QtConcurrent::run(importAll, paths);
    } catch (...) {
        failures.append(tr("The files couldn't be read."));
    }
    if (!self) co_return;
    --_busy;
    for (const auto& result : results) {
        if (const auto* failure = std::get_if<AgentAttachmentImport::Failure>(&result)) {
            failures.append(failure->message());
            continue;
        }
        // Files dropped one after the other may together pass the limit.
        if (_drafts.size() >= AgentAttachmentImport::maximumPerMessage) {
            failures.append(AgentAttachmentImport::Failure::tooMany(AgentAttachmentImport::maximumPerMessage).message());
            break;
        }
        const auto& draft = std::get<AgentAttachmentDraft>(result);
        _drafts.append(draft);
        auto* chip = new AttachmentChip(draft.info, _strip);
        connect(chip, &AttachmentChip::removeRequested, this, &AttachmentTray::remove);
        _row->insertWidget(_row->count() - 1, chip);
    }
    if (!failures.isEmpty()) {
        failures.prepend(failureText());
        failures.removeAll(QString());
        failures.removeDuplicates();
        showFailures(failures);
    }
    refresh();
    Q_EMIT changed();
}

void AttachmentTray::remove(const QString& attachmentID) {
    _drafts.removeIf([&attachmentID](const AgentAttachmentDraft& draft) { return draft.info.id == attachmentID; });
    for (AttachmentChip* chip : chips())
        if (chip->attachmentID() == attachmentID) {
            // It may be in the middle of its own click: it leaves the tray now and is deleted later.
            chip->setParent(nullptr);
            chip->deleteLater();
        }
    refresh();
    Q_EMIT changed();
}

void AttachmentTray::clear() {
    _drafts.clear();
    for (AttachmentChip* chip : chips()) delete chip;
    showFailures({});
    refresh();
    Q_EMIT changed();
}

void AttachmentTray::showFailures(const QStringList& sentences) {
    _failures->setText(sentences.join(QLatin1Char('\n')));
    _failures->setVisible(!sentences.isEmpty());
}

void AttachmentTray::fitStrip() {
    // As tall as a chip, and a scroll bar more when the chips are wider than the tray.
    int height = 0;
    for (AttachmentChip* chip : chips()) height = std::max(height, chip->sizeHint().height());
    if (_row->sizeHint().width() > _scroller->viewport()->width())
        height += _scroller->horizontalScrollBar()->sizeHint().height();
    _scroller->setFixedHeight(height + 2);
}

void AttachmentTray::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitStrip();
}

void AttachmentTray::refresh() {
    _scroller->setVisible(!_drafts.isEmpty());
    fitStrip();
    _working->setVisible(_busy > 0);
    setVisible(!_drafts.isEmpty() || _busy > 0 || !_failures->text().isEmpty());
}

}  // namespace vuro
