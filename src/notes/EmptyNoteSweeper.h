#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <chrono>
#include <functional>

namespace vuro {

class NoteStore;

// Removes a note that was opened for editing, left blank and closed, half a second after the
// last editor let go of it. Editors call open(id) when they show a note and close(id) when it
// goes away; a note moving from one panel to another survives because the second open comes
// first. Main thread only; destroying the sweeper cancels what it was waiting for.
class EmptyNoteSweeper : public QObject {
    Q_OBJECT
public:
    explicit EmptyNoteSweeper(std::function<NoteStore*()> store, QObject* parent = nullptr);

    // The store to sweep, looked up when the delay ends (it may not exist yet, or any more).
    std::function<NoteStore*()> store;
    // True while something (an attachment being written) still works on the note.
    std::function<bool(const QString& id)> isBusy;
    std::chrono::milliseconds delay{500};
    QHash<QString, int> openCounts;

    void open(const QString& id);
    void close(const QString& id);
};

}  // namespace vuro
