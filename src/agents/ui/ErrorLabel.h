#pragma once

#include <QLabel>

namespace vuro {

// A sentence about something that went wrong, in the chat's error colour, which follows the
// palette it is shown on. Wraps, and can be selected and copied.
class ErrorLabel : public QLabel {
    Q_OBJECT
public:
    explicit ErrorLabel(QWidget* parent = nullptr);

protected:
    void changeEvent(QEvent* event) override;

private:
    void recolour();

    bool _recolouring = false;
};

}  // namespace vuro
