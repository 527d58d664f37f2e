#pragma once

#include "agents/Agent.h"

#include <QWidget>

namespace vuro {

// An agent's face: its emoji, or the first letter of its name, on a disc of its colour.
class AgentAvatar : public QWidget {
    Q_OBJECT
public:
    explicit AgentAvatar(int diameter, QWidget* parent = nullptr);

    void setAgent(const Agent& agent);
    QSize sizeHint() const override { return {_diameter, _diameter}; }

    // The emoji, else the capitalised first character of the shown name.
    static QString face(const Agent& agent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int _diameter;
    QString _face;
    NoteColor _color = NoteColor::sky;
};

}  // namespace vuro
