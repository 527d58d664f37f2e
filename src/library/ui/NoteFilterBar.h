#pragma once

#include <QWidget>

class QComboBox;
class QToolButton;

namespace vuro {

class LibraryModel;

// The filters under the search line: colours, who made the note, what it holds, when it was
// edited, and the order of the list. Every control is reachable with Tab.
class NoteFilterBar : public QWidget {
    Q_OBJECT
public:
    NoteFilterBar(LibraryModel& library, QWidget* parent = nullptr);

private:
    void apply();
    void fillSources();
    void syncFromModel();

    LibraryModel& _library;
    QList<QToolButton*> _colors;
    QComboBox* _source;
    QToolButton* _content;
    QComboBox* _period;
    QComboBox* _sort;
    QToolButton* _clear;
    bool _syncing = false;
};

}  // namespace vuro
