#include "shelf/ui/QtDeckHost.h"

#include "base/Defaults.h"
#include "shelf/ui/DeckPanel.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace vuro {

QtDeckHost::QtDeckHost(NoteStore& notes, QObject* parent) : QObject(parent), _notes(notes) {
    const auto watch = [this](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &QtDeckHost::screensChanged);
    };
    for (QScreen* screen : QGuiApplication::screens()) watch(screen);
    connect(qApp, &QGuiApplication::screenAdded, this, [this, watch](QScreen* screen) {
        watch(screen);
        Q_EMIT screensChanged();
    });
    connect(qApp, &QGuiApplication::screenRemoved, this, &QtDeckHost::screensChanged);
}

QPointF QtDeckHost::pointer() const { return QCursor::pos(); }

bool QtDeckHost::altHeld() const { return QGuiApplication::queryKeyboardModifiers() & Qt::AltModifier; }

QList<DeckScreen> QtDeckHost::screens() const {
    QList<DeckScreen> result;
    for (QScreen* screen : QGuiApplication::screens())
        result.append({static_cast<quint32>(qHash(screen->name())), screen->geometry(), screen->availableGeometry()});
    return result;
}

std::unique_ptr<DeckTimer> QtDeckHost::makeTimer() { return std::make_unique<QtDeckTimer>(); }

std::unique_ptr<DeckPanelPort> QtDeckHost::makePanel(DeckController& controller) {
    return std::make_unique<DeckPanel>(controller, _notes);
}

void QtDeckHost::setOpenNote(const QString& noteID) { Q_EMIT openNoteChanged(noteID); }

void QtDeckHost::deactivateApplication() {
    // X11 has no "previous application": letting go of the keyboard focus is the nearest thing.
    if (QWidget* active = QApplication::activeWindow()) active->clearFocus();
}

void QtDeckHost::changeFontSize(double delta) {
    Defaults& defaults = Defaults::standard();
    const double size = defaults.doubleValue(QStringLiteral("noteFontSize"), 14) + delta;
    defaults.setValue(QStringLiteral("noteFontSize"), std::clamp(size, 8.0, 48.0));
}

}  // namespace vuro
