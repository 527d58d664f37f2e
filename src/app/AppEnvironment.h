#pragma once

#include "agents/AgentAttachmentFiles.h"
#include "agents/AgentCenter.h"
#include "agents/AgentConversationPresence.h"
#include "agents/AgentPersistence.h"
#include "inbox/AwaySummarizer.h"
#include "inbox/DropInbox.h"
#include "models/AIKeyStore.h"
#include "models/AIProvider.h"
#include "models/ChatModelFactory.h"
#include "notes/NotePersistence.h"
#include "notes/NoteStore.h"
#include "storage/Keychain.h"

#include <QObject>
#include <chrono>
#include <memory>

namespace vuro {

class Defaults;

// The composition root: every long-lived model object of the process, built once at start and
// never torn down before exit. Parts that have no other route reach it through current().
// Main thread only.
class AppEnvironment : public QObject {
    Q_OBJECT
public:
    // What the stores are built on. Opening the real database is stores' business; when it
    // fails the notes persistence is an UnavailableNotePersistence and the store opens read-only.
    // A member left empty gets its in-memory twin: agents and their attachments then live for the
    // session only, and keys in a keychain of this process's own.
    struct Stores {
        Stores(std::shared_ptr<NotePersistence> notes = {}, std::shared_ptr<NoteImageFiles> images = {},
               std::shared_ptr<NoteImageFiles> files = {}, std::shared_ptr<AgentPersistence> agents = {},
               std::shared_ptr<AgentAttachmentFiles> attachments = {}, std::shared_ptr<Keychain> keychain = {})
            : notes(std::move(notes)), images(std::move(images)), files(std::move(files)), agents(std::move(agents)),
              attachments(std::move(attachments)), keychain(std::move(keychain)) {}

        std::shared_ptr<NotePersistence> notes;
        std::shared_ptr<NoteImageFiles> images;
        std::shared_ptr<NoteImageFiles> files;
        std::shared_ptr<AgentPersistence> agents;
        std::shared_ptr<AgentAttachmentFiles> attachments;
        std::shared_ptr<Keychain> keychain;
    };

    // preferences: where the provider choices and the unread agents are kept; none takes
    // Defaults::standard().
    explicit AppEnvironment(Stores stores, std::chrono::milliseconds saveDelay = std::chrono::milliseconds(250),
                            std::chrono::milliseconds undoWindow = std::chrono::seconds(10), QObject* parent = nullptr,
                            Defaults* preferences = nullptr);
    ~AppEnvironment() override;

    // The environment of this process: in a test host on empty in-memory stores, touching no
    // file and no keyring; otherwise on the stores in the support folder.
    static std::unique_ptr<AppEnvironment> build();
    // The stores in the support folder, and the desktop keyring.
    static Stores openStores();

    // Set when an environment is built (the latest one wins), cleared when it is destroyed.
    static AppEnvironment* current();

    NoteStore& notes() const { return *_notes; }
    AgentCenter& agents() const { return *_agents; }
    AIKeyStore& keys() const { return *_keys; }
    // Where the provider choices (AIProviderSettings) are kept.
    Defaults& providerSettings() const { return *_preferences; }
    // The one-shot assistant, routed to the provider the user chose.
    AIProvider& assistant() const { return *_assistant; }
    AgentConversationPresence& presence() const { return *_presence; }
    // How an agent's run gets its chat model; command-line and on-device back-ends plug in here.
    ChatModelFactory& chatModels() const { return *_chatModels; }
    // Where agents deliver their results, and the summaries of what came while the user was away.
    DropInbox& inbox() const { return *_inbox; }
    AwaySummarizer& awaySummarizer() const { return *_awaySummarizer; }

private:
    Defaults* _preferences;
    std::unique_ptr<NoteStore> _notes;
    std::shared_ptr<Keychain> _keychain;
    std::unique_ptr<AIKeyStore> _keys;
    std::unique_ptr<AIProvider> _onDevice;
    std::unique_ptr<AIProvider> _assistant;
    std::unique_ptr<ChatModelFactory> _chatModels;
    std::unique_ptr<AgentConversationPresence> _presence;
    std::unique_ptr<AgentCenter> _agents;
    std::unique_ptr<DropInbox> _inbox;
    std::unique_ptr<AwaySummarizer> _awaySummarizer;
};

}  // namespace vuro
