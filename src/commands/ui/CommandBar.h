#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <chrono>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace vuro {

class CommandBarModel;

// The "Tell Vuro" bar: one frameless line that floats above every window. Enter sends the
// sentence, Esc closes the bar (and drops an answer still awaited). While the assistant thinks a
// busy line runs under the field; then the outcome's message shows with Undo, or the failure's
// sentence. The placeholder turns through a few examples so that an empty bar says what it takes.
class CommandBar : public QWidget {
    Q_OBJECT
public:
    explicit CommandBar(CommandBarModel& model, QWidget* parent = nullptr);

    // Shows the bar in the upper third of the screen under the pointer, ready to type.
    void present();

    static QStringList examples();
    // How long each example stays; tests shorten it.
    std::chrono::milliseconds exampleInterval{3500};

    QLineEdit* field() const { return _field; }
    QLabel* message() const { return _message; }
    QProgressBar* progress() const { return _progress; }
    QPushButton* undoButton() const { return _undo; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showPhase();
    void nextExample();

    CommandBarModel& _model;
    QLineEdit* _field;
    QProgressBar* _progress;
    QLabel* _message;
    QPushButton* _undo;
    QWidget* _status;
    QTimer _examples;
    int _example = 0;
};

}  // namespace vuro
