#pragma once

#include "agents/Agent.h"

#include <QHash>
#include <QWidget>
#include <functional>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace vuro {

class AgentCenter;

// Edits one agent, or a new one: name, face, colour, manner, persona, directions, memory, the
// model back-end and what it may touch. Save checks the draft and says in a sentence what stops
// it; nothing is written until it passes. Fields and choices the editor doesn't show (skills,
// servers, pictures) are kept from the stored record. The built-in agent's fixed fields are shown
// read-only, and it can't be deleted. The center must outlive the window.
class AgentEditorWindow : public QWidget {
    Q_OBJECT
public:
    // An unknown or empty id edits a fresh agent.
    AgentEditorWindow(AgentCenter& center, const QString& agentID, QWidget* parent = nullptr);

    const QString& agentID() const { return _base.id; }
    // The agent as the fields describe it now.
    Agent draft() const;

    // Saves when the draft passes; false (and the sentence shown) when it doesn't.
    bool save();
    // Deletes after confirmDelete agrees; false for the built-in agent or when declined.
    bool deleteAgent();

    // Asks before deleting; a modal question unless a test replaces it.
    std::function<bool(const QString& name)> confirmDelete;

    QLineEdit* nameField() const { return _name; }
    QLineEdit* emojiField() const { return _emoji; }
    QLineEdit* vibeField() const { return _vibe; }
    QPlainTextEdit* soulField() const { return _soul; }
    QPlainTextEdit* dutyField() const { return _duty; }
    QPlainTextEdit* memoryField() const { return _memory; }
    QComboBox* backEndBox() const { return _backEnd; }
    QLineEdit* modelField() const { return _model; }
    QComboBox* accessBox() const { return _access; }
    QCheckBox* webBox() const { return _web; }
    QPushButton* saveButton() const { return _save; }
    QPushButton* deleteButton() const { return _delete; }
    QLabel* problem() const { return _problem; }
    void setColor(NoteColor color);

Q_SIGNALS:
    void saved(const QString& agentID);
    void deleted(const QString& agentID);

private:
    QWidget* colorRow();
    void updateModelHint();
    void showProblem(const QString& sentence);

    AgentCenter& _center;
    Agent _base;
    bool _isNew;
    QLineEdit* _name;
    QLineEdit* _emoji;
    QButtonGroup* _colors;
    QLineEdit* _vibe;
    QPlainTextEdit* _soul;
    QPlainTextEdit* _duty;
    QPlainTextEdit* _memory;
    QComboBox* _backEnd;
    QLineEdit* _model;
    QComboBox* _access;
    QCheckBox* _web;
    QLabel* _problem;
    QPushButton* _delete;
    QPushButton* _save;
};

}  // namespace vuro
