#include "agents/ui/AgentEditorWindow.h"

#include "agents/AgentCenter.h"
#include "agents/AgentEditRules.h"
#include "library/ui/NotePalette.h"
#include "models/AIProviderSettings.h"
#include "settings/ProviderOptions.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace vuro {
namespace {

QIcon swatch(NoteColor color) {
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(NotePalette::paper(color).darker(135), 1));
    painter.setBrush(NotePalette::paper(color));
    painter.drawEllipse(QRectF(1.5, 1.5, 19, 19));
    return QIcon(pixmap);
}

QPlainTextEdit* textArea(const QString& text, const QString& placeholder, int lines) {
    auto* area = new QPlainTextEdit(text);
    area->setPlaceholderText(placeholder);
    area->setTabChangesFocus(true);
    area->setFixedHeight(area->fontMetrics().lineSpacing() * lines + 14);
    return area;
}

}  // namespace

AgentEditorWindow::AgentEditorWindow(AgentCenter& center, const QString& agentID, QWidget* parent)
    : QWidget(parent, Qt::Window), _center(center) {
    const std::optional<Agent> stored = agentID.isEmpty() ? std::nullopt : center.agent(agentID);
    _isNew = !stored;
    _base = stored.value_or(Agent());
    const bool builtIn = AgentEditRules::isBuiltIn(_base);
    setWindowTitle(_isNew ? tr("New Agent") : tr("Edit %1").arg(_base.displayName()));
    confirmDelete = [this](const QString& name) {
        QMessageBox box(QMessageBox::Warning, tr("Delete %1?").arg(name),
                        tr("%1, its conversation and its jobs will be deleted. This can't be undone.").arg(name),
                        QMessageBox::Cancel, this);
        const QAbstractButton* remove = box.addButton(tr("Delete"), QMessageBox::DestructiveRole);
        box.setDefaultButton(QMessageBox::Cancel);
        box.exec();
        return box.clickedButton() == remove;
    };

    _name = new QLineEdit(_base.name);
    _name->setPlaceholderText(tr("e.g. Scout"));
    _name->setMaxLength(AgentEditRules::maxNameLength * 2);  // room to see it's too long, not to paste a book
    _emoji = new QLineEdit(_base.emoji);
    _emoji->setPlaceholderText(QStringLiteral("🦊"));
    QFont face = _emoji->font();
    face.setPointSizeF(face.pointSizeF() * 1.4);  // an emoji at text size is hard to make out
    _emoji->setFont(face);
    _emoji->setMaximumWidth(64);
    _vibe = new QLineEdit(_base.vibe);
    _vibe->setPlaceholderText(tr("a few words of manner, e.g. calm and precise"));
    const QString fixedText = tr("Built in: Vuro's persona and directions are part of the app.");
    _soul = textArea(_base.soul, builtIn ? fixedText : tr("Who the agent is and what it won't do. Write to it as “you”."), 4);
    _duty = textArea(_base.duty, builtIn ? fixedText : tr("What the agent does and how. Write to it as “you”."), 4);
    _memory = textArea(_base.memory, tr("Facts it remembers, one “- ” line each."), 4);

    _backEnd = new QComboBox;
    const AssistantChoice current = _base.cliTool ? AssistantChoice::cli(*_base.cliTool) : AssistantChoice::api(_base.provider);
    for (const auto& option : ProviderOptions::all()) {
        _backEnd->addItem(option.label, option.choice.rawText());
        if (option.choice == current) _backEnd->setCurrentIndex(_backEnd->count() - 1);
    }
    _backEnd->insertSeparator(static_cast<int>(allCases<AIProviderKind>().size()));
    _model = new QLineEdit(_base.model);
    _model->setClearButtonEnabled(true);
    _access = new QComboBox;
    _access->addItem(tr("No access to notes"), rawText(NoteAccess::none));
    _access->addItem(tr("Reads notes"), rawText(NoteAccess::read));
    _access->addItem(tr("Reads and changes notes"), rawText(NoteAccess::readWrite));
    _access->setCurrentIndex(_access->findData(rawText(_base.access)));
    _web = new QCheckBox(tr("May search and read the web"));
    _web->setChecked(_base.web);

    _soul->setReadOnly(!AgentEditRules::isEditable(_base, AgentEditRules::Field::soul));
    _duty->setReadOnly(!AgentEditRules::isEditable(_base, AgentEditRules::Field::duty));
    _access->setEnabled(AgentEditRules::isEditable(_base, AgentEditRules::Field::access));
    _web->setEnabled(AgentEditRules::isEditable(_base, AgentEditRules::Field::web));

    auto* faceRow = new QWidget;
    auto* faceLayout = new QHBoxLayout(faceRow);
    faceLayout->setContentsMargins(0, 0, 0, 0);
    faceLayout->addWidget(_emoji);
    faceLayout->addWidget(colorRow(), 1);

    auto* form = new QFormLayout;
    form->addRow(tr("Name"), _name);
    form->addRow(tr("Face and colour"), faceRow);
    form->addRow(tr("Vibe"), _vibe);
    form->addRow(tr("Persona"), _soul);
    form->addRow(tr("Directions"), _duty);
    form->addRow(tr("Memory"), _memory);
    form->addRow(tr("Model back-end"), _backEnd);
    form->addRow(tr("Model"), _model);
    form->addRow(tr("Notes"), _access);
    form->addRow(QString(), _web);

    _problem = new QLabel;
    _problem->setWordWrap(true);
    _problem->setStyleSheet(QStringLiteral("color: #b3261e;"));
    _problem->hide();

    _delete = new QPushButton(tr("Delete…"));
    _delete->setEnabled(!_isNew && !builtIn);
    if (builtIn) _delete->setToolTip(tr("The built-in agent can't be deleted."));
    auto* cancel = new QPushButton(tr("Cancel"));
    _save = new QPushButton(tr("Save"));
    _save->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(_delete);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(_save);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(_problem);
    layout->addStretch(1);
    layout->addLayout(buttons);

    connect(_backEnd, &QComboBox::currentIndexChanged, this, &AgentEditorWindow::updateModelHint);
    connect(_save, &QPushButton::clicked, this, &AgentEditorWindow::save);
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    connect(_delete, &QPushButton::clicked, this, &AgentEditorWindow::deleteAgent);
    updateModelHint();
    resize(560, 700);
}

QWidget* AgentEditorWindow::colorRow() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(8, 0, 0, 0);
    layout->setSpacing(2);
    _colors = new QButtonGroup(this);
    _colors->setExclusive(true);
    for (int raw = 0; raw <= 7; ++raw) {
        const NoteColor color = static_cast<NoteColor>(raw);
        auto* button = new QToolButton;
        button->setIcon(swatch(color));
        button->setIconSize(QSize(22, 22));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setToolTip(NotePalette::name(color));
        _colors->addButton(button, raw);
        layout->addWidget(button);
    }
    layout->addStretch(1);
    setColor(_base.color);
    return row;
}

void AgentEditorWindow::setColor(NoteColor color) {
    if (QAbstractButton* button = _colors->button(rawValue(color))) button->setChecked(true);
}

void AgentEditorWindow::updateModelHint() {
    const auto choice = AssistantChoice::fromRawText(_backEnd->currentData().toString());
    if (!choice) return;
    if (choice->cliTool()) {
        _model->setPlaceholderText(tr("Empty: the tool's own default"));
    } else {
        const AIProviderKind kind = *choice->apiKind();
        const QString fallback = AIProviderSettings::defaultModel(kind);
        if (kind == AIProviderKind::apple)
            _model->setPlaceholderText(tr("The on-device model has no choice of model"));
        else
            _model->setPlaceholderText(fallback.isEmpty() ? tr("Empty: the model chosen in Settings → Assistant")
                                                          : tr("Empty: the default (%1)").arg(fallback));
    }
    const bool onDevice = choice->apiKind() == AIProviderKind::apple;
    _model->setEnabled(!onDevice);
}

Agent AgentEditorWindow::draft() const {
    Agent agent = _base;
    agent.name = _name->text();
    agent.emoji = _emoji->text();
    agent.color = noteColorFromRaw(_colors->checkedId()).value_or(_base.color);
    agent.vibe = _vibe->text();
    agent.soul = _soul->toPlainText();
    agent.duty = _duty->toPlainText();
    agent.memory = _memory->toPlainText();
    if (const auto choice = AssistantChoice::fromRawText(_backEnd->currentData().toString())) {
        agent.cliTool = choice->cliTool();
        if (const auto kind = choice->apiKind()) agent.provider = *kind;
    }
    agent.model = _model->isEnabled() ? _model->text() : QString();
    agent.access = fromRawText<NoteAccess>(_access->currentData().toString()).value_or(_base.access);
    agent.web = _web->isChecked();
    return agent;
}

bool AgentEditorWindow::save() {
    const Agent edited = draft();
    if (const auto sentence = AgentEditRules::problem(edited, _center.agents())) {
        showProblem(*sentence);
        return false;
    }
    const Agent prepared = AgentEditRules::prepared(edited, _center.agent(edited.id));
    _center.save(prepared);
    _base = prepared;
    _isNew = false;
    _problem->hide();
    Q_EMIT saved(prepared.id);
    close();
    return true;
}

bool AgentEditorWindow::deleteAgent() {
    if (_isNew || AgentEditRules::isBuiltIn(_base)) return false;
    if (!confirmDelete(_base.displayName())) return false;
    if (!_center.remove(_base.id)) {
        showProblem(tr("%1 couldn't be deleted.").arg(_base.displayName()));
        return false;
    }
    Q_EMIT deleted(_base.id);
    close();
    return true;
}

void AgentEditorWindow::showProblem(const QString& sentence) {
    _problem->setText(sentence);
    _problem->show();
}

}  // namespace vuro
