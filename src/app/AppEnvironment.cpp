#include "app/AppEnvironment.h"

#include "base/Defaults.h"
#include "base/TestHost.h"
#include "inbox/DefaultsUnreadDropStore.h"
#include "notes/InMemoryNotePersistence.h"
#include "storage/SealedStorage.h"

namespace vuro {
namespace {
AppEnvironment* currentEnvironment = nullptr;
}

AppEnvironment::AppEnvironment(Stores stores, std::chrono::milliseconds saveDelay,
                               std::chrono::milliseconds undoWindow, QObject* parent)
    : QObject(parent),
      _notes(std::make_unique<NoteStore>(std::move(stores.notes), saveDelay, undoWindow, std::move(stores.images),
                                         std::move(stores.files))),
      _inbox(std::make_unique<DropInbox>(*_notes, std::make_shared<DefaultsUnreadDropStore>(Defaults::standard()))) {
    currentEnvironment = this;
}

AppEnvironment::~AppEnvironment() {
    if (currentEnvironment == this) currentEnvironment = nullptr;
}

AppEnvironment* AppEnvironment::current() { return currentEnvironment; }

std::unique_ptr<AppEnvironment> AppEnvironment::build() {
    if (isRunningTests()) return std::make_unique<AppEnvironment>(Stores{std::make_shared<InMemoryNotePersistence>(), {}, {}});
    return std::make_unique<AppEnvironment>(openStores());
}

AppEnvironment::Stores AppEnvironment::openStores() {
    SealedStorage storage = SealedStorage::openForUser();
    return {std::move(storage.notes), std::move(storage.images), std::move(storage.files)};
}

}  // namespace vuro
