#pragma once

#include "inbox/DropInbox.h"
#include "notes/NotePersistence.h"
#include "notes/NoteStore.h"

#include <QObject>
#include <chrono>
#include <memory>

namespace vuro {

// The composition root: every long-lived model object of the process, built once at start and
// never torn down before exit. Parts that have no other route reach it through current().
// Main thread only.
class AppEnvironment : public QObject {
    Q_OBJECT
public:
    // What the stores are built on. Opening the real database is stores' business; when it
    // fails the notes persistence is an UnavailableNotePersistence and the store opens read-only.
    struct Stores {
        std::shared_ptr<NotePersistence> notes;
        std::shared_ptr<NoteImageFiles> images;
        std::shared_ptr<NoteImageFiles> files;
    };

    explicit AppEnvironment(Stores stores, std::chrono::milliseconds saveDelay = std::chrono::milliseconds(250),
                            std::chrono::milliseconds undoWindow = std::chrono::seconds(10), QObject* parent = nullptr);
    ~AppEnvironment() override;

    // The environment of this process: in a test host on empty in-memory stores, touching no
    // file; otherwise on the stores in the support folder.
    static std::unique_ptr<AppEnvironment> build();
    // The stores in the support folder.
    static Stores openStores();

    // Set when an environment is built (the latest one wins), cleared when it is destroyed.
    static AppEnvironment* current();

    NoteStore& notes() const { return *_notes; }
    // Where agents deliver their results; unread ids are kept in the preferences.
    DropInbox& inbox() const { return *_inbox; }

private:
    std::unique_ptr<NoteStore> _notes;
    std::unique_ptr<DropInbox> _inbox;
};

}  // namespace vuro
