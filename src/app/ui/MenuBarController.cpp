#include "app/ui/MenuBarController.h"

#include "base/Log.h"

#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QSystemTrayIcon>

namespace vuro {
namespace {

// A sticky note drawn at the sizes trays ask for, so that no image file has to be found.
QIcon noteIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal inset = size / 8.0;
        const QRectF sheet(inset, inset, size - 2 * inset, size - 2 * inset);
        const qreal fold = sheet.width() / 3.5;
        QPainterPath path;
        path.moveTo(sheet.topLeft());
        path.lineTo(sheet.right(), sheet.top());
        path.lineTo(sheet.right(), sheet.bottom() - fold);
        path.lineTo(sheet.right() - fold, sheet.bottom());
        path.lineTo(sheet.left(), sheet.bottom());
        path.closeSubpath();
        painter.fillPath(path, QColor(0xF7, 0xD9, 0x4C));
        painter.setPen(QPen(QColor(0x8A, 0x6D, 0x00), qMax(1.0, size / 16.0)));
        painter.drawPath(path);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace

MenuBarController::MenuBarController(QObject* parent) : QObject(parent), _menu(new QMenu), _agents(nullptr) {
    _menu->addAction(tr("New Note"), this, &MenuBarController::newNoteRequested);
    _menu->addAction(tr("Tell Vuro…"), this, &MenuBarController::tellVuroRequested);
    _menu->addAction(tr("Show Shelf"), this, &MenuBarController::shelfRequested);
    _menu->addAction(tr("Notes…"), this, &MenuBarController::notesRequested);
    _agents = _menu->addMenu(tr("Agents"));
    setAgents({});
    _menu->addAction(tr("Settings…"), this, &MenuBarController::settingsRequested);
    _menu->addSeparator();
    _menu->addAction(tr("Quit"), this, &MenuBarController::quitRequested);
}

MenuBarController::~MenuBarController() {
    delete _tray;
    delete _menu;
}

void MenuBarController::setAgents(const QList<AgentEntry>& agents) {
    _agents->clear();
    bool anyUnread = false;
    for (const AgentEntry& agent : agents) {
        const QString label = agent.face.isEmpty() ? agent.name : agent.face + QLatin1Char(' ') + agent.name;
        // A dot in the text survives every tray's menu, also those that drop icons.
        QAction* action = _agents->addAction(agent.unread ? label + QStringLiteral("  ●") : label);
        const QString id = agent.id;
        connect(action, &QAction::triggered, this, [this, id] { Q_EMIT agentChatRequested(id); });
        anyUnread = anyUnread || agent.unread;
    }
    _agents->setTitle(anyUnread ? tr("Agents") + QStringLiteral("  ●") : tr("Agents"));
    _agents->setEnabled(!agents.isEmpty());
}

bool MenuBarController::start() {
    if (_tray) return true;
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        log(QStringLiteral("this desktop has no system tray; start Vuro again to bring it forward"));
        return false;
    }
    _tray = new QSystemTrayIcon(noteIcon());
    _tray->setToolTip(QStringLiteral("Vuro"));
    _tray->setContextMenu(_menu);
    connect(_tray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) Q_EMIT shelfRequested();
    });
    _tray->show();
    return true;
}

void MenuBarController::show() {
    if (!_tray) return;
    const QRect where = _tray->geometry();
    _menu->popup(where.isValid() ? where.center() : QCursor::pos());
}

}  // namespace vuro
