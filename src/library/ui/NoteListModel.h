#pragma once

#include <QAbstractListModel>

namespace vuro {

class LibraryModel;

// The rows of the Notes window's list: LibraryModel's shown notes. Resets only when the rows
// themselves change; a change of content or selection repaints in place.
class NoteListModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role { IdRole = Qt::UserRole + 1, PreviewRole, ColorRole, ModifiedRole, SelectedRole, PrimaryRole, PinnedRole };

    explicit NoteListModel(LibraryModel& library, QObject* parent = nullptr);
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    // The lines under the title: the body without its title line, tokens or Markdown marks.
    static QString preview(const QString& body, const QString& title);

private:
    void update();

    LibraryModel& _library;
    QStringList _ids;
};

}  // namespace vuro
