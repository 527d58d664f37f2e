#include "app/AppEnvironment.h"

#include "app/AppPaths.h"
#include "base/Log.h"
#include "base/TestHost.h"
#include "notes/InMemoryNotePersistence.h"

namespace vuro {
namespace {
AppEnvironment* currentEnvironment = nullptr;
}

AppEnvironment::AppEnvironment(Stores stores, std::chrono::milliseconds saveDelay,
                               std::chrono::milliseconds undoWindow, QObject* parent)
    : QObject(parent),
      _notes(std::make_unique<NoteStore>(std::move(stores.notes), saveDelay, undoWindow, std::move(stores.images),
                                         std::move(stores.files))) {
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
    AppPaths::ensureSupportFolder();
    // The sealed database plugs in here (Vuro.store, Images/, NoteFiles/ in the support folder).
    log(QStringLiteral("no note database in this build — notes are kept in memory for this session only"));
    return {std::make_shared<InMemoryNotePersistence>(), {}, {}};
}

}  // namespace vuro
