#include "library/ui/NoteListModel.h"

#include "base/Text.h"
#include "library/LibraryModel.h"
#include "notes/NoteTokens.h"

#include <QRegularExpression>

namespace vuro {

NoteListModel::NoteListModel(LibraryModel& library, QObject* parent) : QAbstractListModel(parent), _library(library) {
    _ids = _library.shownIDs();
    connect(&_library, &LibraryModel::changed, this, &NoteListModel::update);
}

void NoteListModel::update() {
    const QStringList& ids = _library.shownIDs();
    if (ids != _ids) {
        beginResetModel();
        _ids = ids;
        endResetModel();
    } else if (!_ids.isEmpty()) {
        Q_EMIT dataChanged(index(0), index(int(_ids.size()) - 1));
    }
}

int NoteListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : int(_ids.size()); }

QString NoteListModel::preview(const QString& body, const QString& title) {
    static const QRegularExpression marks(QStringLiteral("^\\s*(?:#{1,6}\\s+|[-*+]\\s+(?:\\[[ xX]\\]\\s*)?|\\d+[.)]\\s+|[☐☑]\\s*)"));
    QStringList lines;
    bool titleSkipped = false;
    for (const QString& raw : body.split(QLatin1Char('\n'))) {
        QString line = raw;
        line.remove(NoteTokens::imageTokenPattern()).remove(NoteTokens::fileTokenPattern()).remove(marks);
        line = Text::trimmed(line);
        if (line.isEmpty()) continue;
        if (!titleSkipped && title.startsWith(line.left(20))) {
            titleSkipped = true;
            continue;
        }
        titleSkipped = true;
        lines.append(line);
        if (lines.size() == 3) break;
    }
    return Text::cut(lines.join(QStringLiteral(" · ")), 200);
}

QVariant NoteListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= _ids.size()) return {};
    auto& library = _library;
    const QList<Note>& shown = library.shown();
    if (index.row() >= shown.size()) return {};
    const Note& note = shown[index.row()];
    switch (role) {
    case Qt::DisplayRole: return library.facts(note).displayTitle;
    case Qt::ToolTipRole: return library.facts(note).displayTitle;
    case IdRole: return note.id;
    case PreviewRole: return preview(note.body, library.facts(note).displayTitle);
    case ColorRole: return rawValue(note.color);
    case ModifiedRole: return note.modified;
    case SelectedRole: return library.selection().selected.contains(note.id);
    case PrimaryRole: return library.selection().primary == note.id;
    case PinnedRole: return note.pinned;
    default: return {};
    }
}

}  // namespace vuro
