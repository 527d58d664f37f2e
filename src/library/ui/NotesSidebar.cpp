#include "library/ui/NotesSidebar.h"

#include "library/LibraryModel.h"
#include "notes/NoteStore.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>

namespace vuro {

namespace {
constexpr int kindRole = Qt::UserRole + 1;
constexpr int valueRole = Qt::UserRole + 2;
constexpr int headingKind = -1;
}  // namespace

NotesSidebar::NotesSidebar(LibraryModel& library, QWidget* parent) : QTreeWidget(parent), _library(library) {
    setColumnCount(2);
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(12);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(tr("Sections"));
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    connect(&_library, &LibraryModel::changed, this, &NotesSidebar::rebuild);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (_rebuilding || !item || item->data(0, kindRole).toInt() == headingKind) return;
        _library.setSection(sectionOf(item));
    });
    rebuild();
}

NotesSection NotesSidebar::sectionOf(const QTreeWidgetItem* item) {
    return {static_cast<NotesSection::Kind>(item->data(0, kindRole).toInt()), item->data(0, valueRole).toString()};
}

void NotesSidebar::addRow(QTreeWidgetItem* parent, const QString& name, int count, const NotesSection& section) {
    auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    item->setText(0, name);
    item->setText(1, QString::number(count));
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    item->setForeground(1, palette().color(QPalette::PlaceholderText));
    item->setData(0, kindRole, int(section.kind));
    item->setData(0, valueRole, section.value);
}

QTreeWidgetItem* NotesSidebar::itemFor(const NotesSection& section) const {
    for (QTreeWidgetItemIterator it(const_cast<NotesSidebar*>(this)); *it; ++it)
        if ((*it)->data(0, kindRole).toInt() != headingKind && sectionOf(*it) == section) return *it;
    return nullptr;
}

void NotesSidebar::rebuild() {
    const LibraryModel::Counts& counts = _library.counts();
    // Most changes (a keystroke, a click in the list) leave the sidebar as it is.
    QStringList signature{QString::number(counts.all), QString::number(counts.tasks), QString::number(counts.agents),
                          QString::number(counts.archive), QString::number(int(_library.section().kind)),
                          _library.section().value};
    for (const NoteFolder& folder : _library.store().folders())
        signature << folder.id << folder.name << QString::number(counts.folders.value(folder.id));
    for (auto tag = counts.tags.cbegin(); tag != counts.tags.cend(); ++tag) signature << tag.key() << QString::number(tag.value());
    if (signature == _signature) return;
    _signature = signature;

    _rebuilding = true;
    clear();
    addRow(nullptr, tr("All Notes"), counts.all, NotesSection::all());
    addRow(nullptr, tr("Tasks"), counts.tasks, NotesSection::tasks());
    addRow(nullptr, tr("From Agents"), counts.agents, NotesSection::agents());
    addRow(nullptr, tr("Archive"), counts.archive, NotesSection::archive());

    const auto heading = [this](const QString& title) {
        auto* item = new QTreeWidgetItem(this);
        item->setText(0, title);
        item->setData(0, kindRole, headingKind);
        item->setFlags(Qt::ItemIsEnabled);
        QFont font = item->font(0);
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 0.9);
        item->setFont(0, font);
        item->setForeground(0, palette().color(QPalette::PlaceholderText));
        item->setExpanded(true);
        return item;
    };
    QTreeWidgetItem* folders = heading(tr("Folders"));
    for (const NoteFolder& folder : _library.store().folders())
        addRow(folders, folder.name, counts.folders.value(folder.id), NotesSection::folder(folder.id));
    folders->setExpanded(true);
    const QStringList tags = _library.store().allTags();
    if (!tags.isEmpty()) {
        QTreeWidgetItem* tagHeading = heading(tr("Tags"));
        for (const QString& tag : tags) addRow(tagHeading, QLatin1Char('#') + tag, counts.tags.value(tag), NotesSection::tag(tag));
        tagHeading->setExpanded(true);
    }
    QTreeWidgetItem* current = itemFor(_library.section());
    _rebuilding = false;
    if (current) setCurrentItem(current);
    else _library.setSection(NotesSection::all());  // its folder or tag is gone
}

void NotesSidebar::renameCurrent() {
    QTreeWidgetItem* item = currentItem();
    if (!item) return;
    const NotesSection section = sectionOf(item);
    if (section.kind == NotesSection::Kind::folder) {
        const auto folder = _library.store().folder(section.value);
        if (!folder) return;
        bool ok = false;
        const QString name = QInputDialog::getText(this, tr("Rename Folder"), tr("Folder name:"), QLineEdit::Normal, folder->name, &ok);
        if (ok && !name.trimmed().isEmpty()) _library.store().renameFolder(folder->id, name.trimmed());
    } else if (section.kind == NotesSection::Kind::tag) {
        bool ok = false;
        const QString name = QInputDialog::getText(this, tr("Rename Tag"), tr("Tag name:"), QLineEdit::Normal, section.value, &ok);
        const QString tag = Note::normalizedTag(name);
        if (!ok || tag.isEmpty() || tag == section.value) return;
        _library.store().renameTag(section.value, tag);
        _library.setSection(NotesSection::tag(tag));
    }
}

void NotesSidebar::deleteCurrent() {
    QTreeWidgetItem* item = currentItem();
    if (!item) return;
    const NotesSection section = sectionOf(item);
    if (section.kind == NotesSection::Kind::folder) {
        const auto folder = _library.store().folder(section.value);
        if (!folder) return;
        const auto answer = QMessageBox::question(
            this, tr("Delete Folder"),
            tr("Delete the folder “%1”? Its notes stay, outside any folder.").arg(folder->name));
        if (answer == QMessageBox::Yes) _library.store().deleteFolder(folder->id);
    } else if (section.kind == NotesSection::Kind::tag) {
        const auto answer = QMessageBox::question(
            this, tr("Delete Tag"), tr("Remove the tag #%1 from every note? The notes stay.").arg(section.value));
        if (answer == QMessageBox::Yes) _library.store().deleteTag(section.value);
    }
}

void NotesSidebar::newFolder() {
    bool ok = false;
    const QString name = QInputDialog::getText(this, tr("New Folder"), tr("Folder name:"), QLineEdit::Normal, {}, &ok);
    if (!ok || name.trimmed().isEmpty()) return;
    if (const auto folder = _library.store().createFolder(name.trimmed())) _library.setSection(NotesSection::folder(folder->id));
}

void NotesSidebar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F2) return renameCurrent();
    if (event->key() == Qt::Key_Delete) return deleteCurrent();
    QTreeWidget::keyPressEvent(event);
}

void NotesSidebar::contextMenuEvent(QContextMenuEvent* event) {
    QTreeWidgetItem* item = itemAt(event->pos());
    QMenu menu(this);
    if (item && item->data(0, kindRole).toInt() != headingKind) {
        setCurrentItem(item);
        const auto kind = sectionOf(item).kind;
        if (kind == NotesSection::Kind::folder || kind == NotesSection::Kind::tag) {
            menu.addAction(tr("Rename…"), this, &NotesSidebar::renameCurrent);
            menu.addAction(tr("Delete…"), this, &NotesSidebar::deleteCurrent);
            menu.addSeparator();
        }
    }
    menu.addAction(tr("New Folder…"), this, &NotesSidebar::newFolder);
    menu.exec(event->globalPos());
}

}  // namespace vuro
