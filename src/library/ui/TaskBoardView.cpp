#include "library/ui/TaskBoardView.h"

#include "base/Clock.h"
#include "library/LibraryModel.h"
#include "notes/NoteStore.h"
#include "notes/TaskBoard.h"
#include "notes/TaskDue.h"
#include "notes/TaskLine.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace vuro {

namespace {

constexpr int noteRole = Qt::UserRole + 1;
constexpr int lineRole = Qt::UserRole + 2;

QString groupTitle(TaskBoard::DueGroup group) {
    switch (group) {
    case TaskBoard::DueGroup::overdue: return TaskBoardView::tr("Overdue");
    case TaskBoard::DueGroup::today: return TaskBoardView::tr("Today");
    case TaskBoard::DueGroup::tomorrow: return TaskBoardView::tr("Tomorrow");
    case TaskBoard::DueGroup::nextSevenDays: return TaskBoardView::tr("Next 7 Days");
    case TaskBoard::DueGroup::later: return TaskBoardView::tr("Later");
    case TaskBoard::DueGroup::noDate: return TaskBoardView::tr("No Date");
    case TaskBoard::DueGroup::done: return TaskBoardView::tr("Done");
    }
    return {};
}

}  // namespace

TaskBoardView::TaskBoardView(LibraryModel& library, QWidget* parent) : QWidget(parent), _library(library) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 0, 8, 0);
    _showDone = new QCheckBox(tr("Show done"), this);
    connect(_showDone, &QCheckBox::toggled, this, &TaskBoardView::rebuild);
    layout->addWidget(_showDone);
    _tree = new QTreeWidget(this);
    _tree->setColumnCount(3);
    _tree->setHeaderHidden(true);
    _tree->setRootIsDecorated(false);
    _tree->setFrameShape(QFrame::NoFrame);
    _tree->setAccessibleName(tr("Tasks"));
    _tree->header()->setStretchLastSection(false);
    _tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    _tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    _tree->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    connect(_tree, &QTreeWidget::itemChanged, this, &TaskBoardView::toggled);
    connect(_tree, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        const QString id = item->data(0, noteRole).toString();
        if (!id.isEmpty()) Q_EMIT openNote(id);
    });
    layout->addWidget(_tree, 1);
    connect(&_library, &LibraryModel::changed, this, &TaskBoardView::rebuild);
    rebuild();
}

void TaskBoardView::rebuild() {
    // Only the Tasks section shows the board; elsewhere it need not follow every keystroke.
    if (_library.section().kind != NotesSection::Kind::tasks) return;
    _rebuilding = true;
    const QString keepNote = _tree->currentItem() ? _tree->currentItem()->data(0, noteRole).toString() : QString();
    const int keepLine = _tree->currentItem() ? _tree->currentItem()->data(0, lineRole).toInt() : -1;
    _tree->clear();
    const QDateTime now = Clock::now();
    // The section's notes as the filters leave them; the search line narrows the tasks.
    const auto sections = TaskBoard::dueSections(_library.shown(), _library.query(), now, {}, _showDone->isChecked());
    QTreeWidgetItem* restore = nullptr;
    for (const auto& section : sections) {
        auto* heading = new QTreeWidgetItem(_tree);
        heading->setText(0, groupTitle(section.group));
        heading->setText(1, QString::number(section.entries.size()));
        heading->setFlags(Qt::ItemIsEnabled);
        QFont bold = heading->font(0);
        bold.setBold(true);
        heading->setFont(0, bold);
        if (section.group == TaskBoard::DueGroup::overdue) heading->setForeground(0, QColor(0xC0, 0x39, 0x2B));
        for (const auto& entry : section.entries) {
            auto* item = new QTreeWidgetItem(heading);
            const auto parsed = TaskDue::parse(entry.task.text);
            item->setText(0, parsed ? parsed->text : entry.task.text);
            item->setCheckState(0, entry.task.isDone ? Qt::Checked : Qt::Unchecked);
            item->setText(1, entry.note.displayTitle());
            item->setForeground(1, palette().color(QPalette::PlaceholderText));
            if (parsed) item->setText(2, parsed->due.label(now));
            item->setData(0, noteRole, entry.note.id);
            item->setData(0, lineRole, entry.task.lineIndex);
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            if (entry.note.id == keepNote && entry.task.lineIndex == keepLine) restore = item;
        }
        heading->setExpanded(true);
    }
    if (restore) _tree->setCurrentItem(restore);
    _rebuilding = false;
}

void TaskBoardView::toggled(QTreeWidgetItem* item, int column) {
    if (_rebuilding || column != 0) return;
    const QString id = item->data(0, noteRole).toString();
    if (id.isEmpty()) return;
    const bool done = item->checkState(0) == Qt::Checked;
    const int line = item->data(0, lineRole).toInt();
    _library.store().setTaskDone(done, line, id);
    // A read-only store, or a line edited meanwhile, leaves the note as it was: so goes the box.
    const std::optional<Note> note = _library.store().note(id);
    const QList<TaskLine> tasks = note ? TaskLine::all(note->body) : QList<TaskLine>();
    const bool applied = std::any_of(tasks.cbegin(), tasks.cend(),
                                     [&](const TaskLine& task) { return task.lineIndex == line && task.isDone == done; });
    if (applied) return;
    _rebuilding = true;
    item->setCheckState(0, done ? Qt::Unchecked : Qt::Checked);
    _rebuilding = false;
}

}  // namespace vuro
