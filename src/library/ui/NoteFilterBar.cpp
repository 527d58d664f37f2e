#include "library/ui/NoteFilterBar.h"

#include "library/LibraryModel.h"
#include "library/ui/NotePalette.h"
#include "notes/NoteStore.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QToolButton>

namespace vuro {

namespace {

QIcon swatchIcon(NoteColor color) {
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor paper = NotePalette::paper(color);
    painter.setPen(QPen(paper.darker(140), 2));
    painter.setBrush(paper);
    painter.drawEllipse(QRectF(3, 3, 26, 26));
    return QIcon(pixmap);
}

using Content = NoteFilter::Content;
const QList<std::pair<Content, const char*>> contentNames{
    {Content::openTasks, QT_TRANSLATE_NOOP("NoteFilterBar", "Open tasks")},
    {Content::dueTasks, QT_TRANSLATE_NOOP("NoteFilterBar", "Tasks with a date")},
    {Content::images, QT_TRANSLATE_NOOP("NoteFilterBar", "Images")},
    {Content::attachments, QT_TRANSLATE_NOOP("NoteFilterBar", "Attachments")},
    {Content::untagged, QT_TRANSLATE_NOOP("NoteFilterBar", "No tags")},
};

}  // namespace

NoteFilterBar::NoteFilterBar(LibraryModel& library, QWidget* parent) : QWidget(parent), _library(library) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 2, 8, 2);
    layout->setSpacing(2);
    for (int raw = 0; raw < 8; ++raw) {
        const auto color = static_cast<NoteColor>(raw);
        auto* button = new QToolButton(this);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setIcon(swatchIcon(color));
        button->setIconSize(QSize(14, 14));
        button->setToolTip(NotePalette::name(color));
        button->setAccessibleName(NotePalette::name(color));
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QToolButton::toggled, this, &NoteFilterBar::apply);
        layout->addWidget(button);
        _colors.append(button);
    }
    layout->addSpacing(8);

    _source = new QComboBox(this);
    _source->setAccessibleName(tr("Made by"));
    connect(_source, &QComboBox::currentIndexChanged, this, &NoteFilterBar::apply);
    layout->addWidget(_source);

    _content = new QToolButton(this);
    _content->setText(tr("Content"));
    _content->setPopupMode(QToolButton::InstantPopup);
    _content->setToolButtonStyle(Qt::ToolButtonTextOnly);
    auto* contentMenu = new QMenu(_content);
    for (const auto& [content, name] : contentNames) {
        QAction* action = contentMenu->addAction(tr(name));
        action->setCheckable(true);
        action->setData(int(content));
        connect(action, &QAction::toggled, this, &NoteFilterBar::apply);
    }
    _content->setMenu(contentMenu);
    layout->addWidget(_content);

    _period = new QComboBox(this);
    _period->setAccessibleName(tr("Edited"));
    _period->addItem(tr("Any time"), int(NoteFilter::Period::any));
    _period->addItem(tr("Today"), int(NoteFilter::Period::today));
    _period->addItem(tr("Past 7 days"), int(NoteFilter::Period::week));
    _period->addItem(tr("Past 30 days"), int(NoteFilter::Period::month));
    connect(_period, &QComboBox::currentIndexChanged, this, &NoteFilterBar::apply);
    layout->addWidget(_period);

    layout->addStretch();
    _clear = new QToolButton(this);
    _clear->setText(tr("Clear"));
    _clear->setToolTip(tr("Clear the filters"));
    connect(_clear, &QToolButton::clicked, this, [this] {
        NoteFilter cleared;
        cleared.sort = _library.filter().sort;
        _library.setFilter(cleared);
        syncFromModel();
    });
    layout->addWidget(_clear);

    auto* sortLabel = new QLabel(tr("Sort:"), this);
    layout->addWidget(sortLabel);
    _sort = new QComboBox(this);
    _sort->setAccessibleName(tr("Sort"));
    sortLabel->setBuddy(_sort);
    _sort->addItem(tr("Date edited"), int(NoteFilter::Sort::edited));
    _sort->addItem(tr("Date created"), int(NoteFilter::Sort::created));
    _sort->addItem(tr("Title"), int(NoteFilter::Sort::title));
    _sort->addItem(tr("Shelf order"), int(NoteFilter::Sort::shelf));
    connect(_sort, &QComboBox::currentIndexChanged, this, &NoteFilterBar::apply);
    layout->addWidget(_sort);

    connect(&_library, &LibraryModel::changed, this, &NoteFilterBar::fillSources);
    fillSources();
    syncFromModel();
}

// Anyone, me, any agent, then each agent that made a note.
void NoteFilterBar::fillSources() {
    QMap<QString, QString> agents;  // id → name, sorted by id for a steady order
    for (const Note& note : _library.store().notes()) {
        if (const auto* agent = std::get_if<NoteOrigin::FromAgent>(&note.origin.value)) agents.insert(agent->agentID, agent->agentName);
        else if (const auto id = NoteFacts::agentOf(note.origin); id && !agents.contains(*id))
            agents.insert(*id, std::get<NoteOrigin::FromDrop>(note.origin.value).senderName);
    }
    QStringList wanted{QStringLiteral("any"), QStringLiteral("mine"), QStringLiteral("agents")};
    for (auto it = agents.cbegin(); it != agents.cend(); ++it) wanted << QStringLiteral("agent.") + it.key();
    QStringList present;
    for (int i = 0; i < _source->count(); ++i) present << _source->itemData(i).toString();
    if (wanted == present) return;

    _syncing = true;
    _source->clear();
    _source->addItem(tr("Anyone"), QStringLiteral("any"));
    _source->addItem(tr("Me"), QStringLiteral("mine"));
    _source->addItem(tr("Any agent"), QStringLiteral("agents"));
    for (auto it = agents.cbegin(); it != agents.cend(); ++it)
        _source->addItem(it.value().isEmpty() ? it.key() : it.value(), QStringLiteral("agent.") + it.key());
    _syncing = false;
    syncFromModel();
}

void NoteFilterBar::syncFromModel() {
    _syncing = true;
    const NoteFilter& filter = _library.filter();
    for (int raw = 0; raw < 8; ++raw) _colors[raw]->setChecked(filter.colors.contains(static_cast<NoteColor>(raw)));
    QString source;
    switch (filter.source.kind) {
    case NoteFilter::Source::Kind::any: source = QStringLiteral("any"); break;
    case NoteFilter::Source::Kind::mine: source = QStringLiteral("mine"); break;
    case NoteFilter::Source::Kind::agents: source = QStringLiteral("agents"); break;
    case NoteFilter::Source::Kind::agent: source = QStringLiteral("agent.") + filter.source.agentID; break;
    }
    _source->setCurrentIndex(std::max(0, _source->findData(source)));
    for (QAction* action : _content->menu()->actions())
        action->setChecked(filter.content.contains(static_cast<Content>(action->data().toInt())));
    _content->setText(filter.content.empty() ? tr("Content") : tr("Content (%1)").arg(filter.content.size()));
    _period->setCurrentIndex(_period->findData(int(filter.period)));
    _sort->setCurrentIndex(_sort->findData(int(filter.sort)));
    NoteFilter cleared;
    cleared.sort = filter.sort;
    _clear->setEnabled(!(filter == cleared));
    _syncing = false;
}

void NoteFilterBar::apply() {
    if (_syncing) return;
    NoteFilter filter = _library.filter();
    filter.colors.clear();
    for (int raw = 0; raw < 8; ++raw)
        if (_colors[raw]->isChecked()) filter.colors.insert(static_cast<NoteColor>(raw));
    const QString source = _source->currentData().toString();
    if (source == QStringLiteral("mine")) filter.source = NoteFilter::Source::mine();
    else if (source == QStringLiteral("agents")) filter.source = NoteFilter::Source::agents();
    else if (source.startsWith(QStringLiteral("agent."))) filter.source = NoteFilter::Source::agent(source.mid(6));
    else filter.source = NoteFilter::Source::any();
    filter.content.clear();
    for (QAction* action : _content->menu()->actions())
        if (action->isChecked()) filter.content.insert(static_cast<Content>(action->data().toInt()));
    filter.period = static_cast<NoteFilter::Period>(_period->currentData().toInt());
    filter.sort = static_cast<NoteFilter::Sort>(_sort->currentData().toInt());
    _library.setFilter(filter);
    syncFromModel();
}

}  // namespace vuro
