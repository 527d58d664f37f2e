#include "agents/ui/AttachmentChip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QToolButton>

namespace vuro {
namespace {

constexpr int shownNameWidth = 180;

}  // namespace

QString AttachmentChip::symbol(AgentAttachment::Kind kind) {
    switch (kind) {
    case AgentAttachment::Kind::image: return QStringLiteral("🖼");
    case AgentAttachment::Kind::pdf: return QStringLiteral("📕");
    case AgentAttachment::Kind::text: return QStringLiteral("📝");
    case AgentAttachment::Kind::document: return QStringLiteral("📄");
    case AgentAttachment::Kind::audio: return QStringLiteral("🎧");
    }
    return QStringLiteral("📎");
}

AttachmentChip::AttachmentChip(const AgentAttachment& attachment, QWidget* parent)
    : ChatCard(Fill::card, parent), _id(attachment.id), _remove(new QToolButton) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 3, 3, 3);
    row->setSpacing(6);
    row->addWidget(new QLabel(symbol(attachment.kind)));
    auto* name = new QLabel;
    name->setText(name->fontMetrics().elidedText(attachment.name, Qt::ElideMiddle, shownNameWidth));
    name->setToolTip(attachment.name);
    row->addWidget(name);
    auto* size = new QLabel(QLocale().formattedDataSize(attachment.byteCount, 1, QLocale::DataSizeTraditionalFormat));
    size->setForegroundRole(QPalette::PlaceholderText);
    row->addWidget(size);
    _remove->setText(QStringLiteral("✕"));
    _remove->setAutoRaise(true);
    _remove->setToolTip(tr("Remove"));
    _remove->setAccessibleName(tr("Remove %1").arg(attachment.name));
    _remove->setFocusPolicy(Qt::StrongFocus);
    row->addWidget(_remove);
    connect(_remove, &QToolButton::clicked, this, [this] { Q_EMIT removeRequested(_id); });
}

}  // namespace vuro
