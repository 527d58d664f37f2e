#include "app/AppEnvironment.h"

#include "agents/InMemoryAgentPersistence.h"
#include "base/Defaults.h"
#include "base/HttpSession.h"
#include "base/TestHost.h"
#include "inbox/AssistantAwaySummaryProvider.h"
#include "inbox/DefaultsUnreadDropStore.h"
#include "models/AttachmentText.h"
#include "models/OnDeviceProvider.h"
#include "models/RoutingProvider.h"
#include "notes/InMemoryNotePersistence.h"
#include "storage/InMemoryKeychain.h"
#include "storage/SealedStorage.h"
#include "storage/SecretServiceKeychain.h"

namespace vuro {
namespace {
AppEnvironment* currentEnvironment = nullptr;
}

AppEnvironment::AppEnvironment(Stores stores, std::chrono::milliseconds saveDelay,
                               std::chrono::milliseconds undoWindow, QObject* parent, Defaults* preferences)
    : QObject(parent),
      _preferences(preferences ? preferences : &Defaults::standard()),
      _notes(std::make_unique<NoteStore>(std::move(stores.notes), saveDelay, undoWindow, std::move(stores.images),
                                         std::move(stores.files))),
      _keychain(stores.keychain ? std::move(stores.keychain) : std::make_shared<InMemoryKeychain>()) {
    // The keychain was chosen by whoever built the stores (a test host never opens the user's),
    // so the key store uses it as it is.
    _keys = std::make_unique<AIKeyStore>(*_keychain, true);
    _onDevice = std::make_unique<OnDeviceProvider>();
    Defaults* settings = _preferences;
    AIKeyStore* keys = _keys.get();
    _assistant = std::make_unique<RoutingProvider>(
        *_onDevice, [settings, keys] { return selectedAPIProvider(*settings, *keys, httpSession()); });
    _chatModels = std::make_unique<ChatModelFactory>(*_keys, *_preferences, httpSession());
    _presence = std::make_unique<AgentConversationPresence>();

    auto agentStore = stores.agents ? std::move(stores.agents) : std::make_shared<InMemoryAgentPersistence>();
    auto attachments = stores.attachments ? std::move(stores.attachments)
                                          : std::shared_ptr<AgentAttachmentFiles>(std::make_shared<InMemoryAgentAttachmentFiles>());
    ChatModelFactory* models = _chatModels.get();
    _agents = std::make_unique<AgentCenter>(
        std::move(agentStore), _notes.get(), std::move(attachments),
        [models](const Agent& agent) { return models->modelFor(agent); }, _preferences, agentTextIsTurkish());
    _agents->unread().observe(*_presence);

    // What agents deliver; the unread ids are kept in the preferences. Summaries of what came
    // during an absence come from the same assistant, and only while the user allows them.
    _inbox = std::make_unique<DropInbox>(*_notes, std::make_shared<DefaultsUnreadDropStore>(*_preferences));
    _awaySummarizer = std::make_unique<AwaySummarizer>(
        std::make_shared<AssistantAwaySummaryProvider>(*_assistant),
        [settings] { return settings->boolValue(QStringLiteral("summarizeAwayDrops")); }, agentTextIsTurkish());
    currentEnvironment = this;
}

AppEnvironment::~AppEnvironment() {
    if (currentEnvironment == this) currentEnvironment = nullptr;
}

AppEnvironment* AppEnvironment::current() { return currentEnvironment; }

std::unique_ptr<AppEnvironment> AppEnvironment::build() {
    if (isRunningTests()) return std::make_unique<AppEnvironment>(Stores{std::make_shared<InMemoryNotePersistence>()});
    return std::make_unique<AppEnvironment>(openStores());
}

AppEnvironment::Stores AppEnvironment::openStores() {
    SealedStorage storage = SealedStorage::openForUser();
    return {std::move(storage.notes),  std::move(storage.images),      std::move(storage.files),
            std::move(storage.agents), std::move(storage.attachments),
            std::make_shared<SecretServiceKeychain>(QString(Keychain::defaultService))};
}

}  // namespace vuro
