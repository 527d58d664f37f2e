#include "commands/ui/CommandBar.h"

#include "commands/CommandBarModel.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace vuro {
namespace {
constexpr int barWidth = 620;
constexpr qreal cornerRadius = 12;
}  // namespace

CommandBar::CommandBar(CommandBarModel& model, QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), _model(model),
      _field(new QLineEdit), _progress(new QProgressBar), _message(new QLabel), _undo(new QPushButton(tr("Undo"))),
      _status(new QWidget) {
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(tr("Tell Vuro"));
    setFixedWidth(barWidth);

    QFont big = _field->font();
    big.setPointSizeF(big.pointSizeF() * 1.45);
    _field->setFont(big);
    _field->setFrame(false);
    _field->setStyleSheet(QStringLiteral("background: transparent;"));
    _field->setText(model.text());

    _progress->setRange(0, 0);
    _progress->setTextVisible(false);
    _progress->setFixedHeight(4);
    _message->setWordWrap(true);
    _message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _undo->setAutoDefault(false);
    _undo->setFocusPolicy(Qt::TabFocus);

    auto* statusLayout = new QHBoxLayout(_status);
    statusLayout->setContentsMargins(4, 0, 0, 0);
    statusLayout->addWidget(_message, 1);
    statusLayout->addWidget(_undo);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 14, 18, 14);
    layout->setSpacing(8);
    layout->addWidget(_field);
    layout->addWidget(_progress);
    layout->addWidget(_status);

    connect(_field, &QLineEdit::textEdited, &_model, &CommandBarModel::setText);
    connect(_field, &QLineEdit::returnPressed, this, [this] {
        _model.setText(_field->text());
        _model.send();
    });
    connect(_undo, &QPushButton::clicked, this, [this] {
        _model.undo();
        _field->setFocus();
    });
    connect(&_model, &CommandBarModel::phaseChanged, this, &CommandBar::showPhase);
    connect(&_model, &CommandBarModel::textChanged, this, [this] {
        if (_field->text() != _model.text()) _field->setText(_model.text());
    });
    connect(&_examples, &QTimer::timeout, this, &CommandBar::nextExample);
    _field->setPlaceholderText(examples().first());
    showPhase();
}

QStringList CommandBar::examples() {
    return {tr("add milk to the shopping list"), tr("new note: book recommendations"),
            tr("remind me to call Ann tomorrow at 10"), tr("done: renew the passport"),
            tr("add “pay the rent on the 1st” to To-dos")};
}

void CommandBar::nextExample() {
    const QStringList all = examples();
    _example = (_example + 1) % static_cast<int>(all.size());
    _field->setPlaceholderText(all[_example]);
}

void CommandBar::present() {
    adjustSize();
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen) screen = QGuiApplication::primaryScreen();
    if (screen) {
        const QRect area = screen->availableGeometry();
        move(area.center().x() - width() / 2, area.top() + area.height() / 4);
    }
    show();
    raise();
    activateWindow();
    _field->setFocus();
    _field->selectAll();
    _examples.start(exampleInterval);
}

void CommandBar::showPhase() {
    const CommandBarModel::Phase& phase = _model.phase();
    const bool thinking = std::holds_alternative<CommandBarModel::Thinking>(phase);
    _progress->setVisible(thinking);
    _field->setReadOnly(thinking);
    _undo->setVisible(_model.canUndo());
    QString text;
    QString style;
    if (thinking) {
        text = tr("Thinking…");
    } else if (const auto* done = std::get_if<CommandBarModel::Done>(&phase)) {
        text = _model.undone() ? tr("Undone.") : done->outcome.message;
    } else if (const auto* failed = std::get_if<CommandBarModel::Failed>(&phase)) {
        text = failed->text;
        style = QStringLiteral("color: #b3261e;");
    }
    _message->setText(text);
    _message->setStyleSheet(style);
    _status->setVisible(!text.isEmpty());
    adjustSize();
}

void CommandBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void CommandBar::hideEvent(QHideEvent* event) {
    _examples.stop();
    _model.cancel();
    QWidget::hideEvent(event);
}

void CommandBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
    painter.fillPath(path, palette().color(QPalette::Window));
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.drawPath(path);
}

}  // namespace vuro
