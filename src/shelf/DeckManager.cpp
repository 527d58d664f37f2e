#include "shelf/DeckManager.h"

#include "base/Defaults.h"
#include "notes/NoteStore.h"
#include "shelf/DeckHost.h"

#include <algorithm>

namespace vuro {

namespace {

bool isDeckPreference(const QString& key) {
    static const QStringList keys{
        QStringLiteral("deckAlwaysShown"), QStringLiteral("deckOnLeftEdge"),  QStringLiteral("deckScale"),
        QStringLiteral("deckYRatio"),      QStringLiteral("edgeWidth"),       QStringLiteral("deckStyle"),
        QStringLiteral("noteSize"),        QStringLiteral("noteFontSize"),    QStringLiteral("markdown"),
        QStringLiteral("revealMarkdownMarks"), QStringLiteral("deckHideActions"), QStringLiteral("deckPillHidden"),
        QStringLiteral("deckOpenOnHover"), QStringLiteral("deckTabPreview")};
    return keys.contains(key);
}

}  // namespace

DeckManager::DeckManager(DeckHost& host, NoteStore& notes, Defaults& defaults, QObject* parent)
    : QObject(parent), _host(host), _notes(notes), _defaults(defaults) {
    connect(&_defaults, &Defaults::changed, this, [this](const QString& key) {
        if (key == QLatin1String("deckDisplay")) {
            refreshScreens();
        } else if (isDeckPreference(key)) {
            for (auto& [id, deck] : _decks) deck->applyPrefs();
        }
    });
}

DeckManager::~DeckManager() {
    for (auto& [id, deck] : _decks) deck->shutDown();
}

void DeckManager::refreshScreens() {
    QList<DeckScreen> served = _host.screens();
    const quint32 chosen = DeckPrefs::read(_defaults).displayID;
    if (chosen != 0) {
        QList<DeckScreen> only;
        for (const auto& screen : served)
            if (screen.id == chosen) only.append(screen);
        // A chosen screen that is not attached leaves every screen served rather than none.
        if (!only.isEmpty()) served = only;
    }

    for (auto it = _decks.begin(); it != _decks.end();) {
        const bool kept = std::any_of(served.cbegin(), served.cend(),
                                      [&](const DeckScreen& screen) { return screen.id == it->first; });
        if (kept) {
            ++it;
        } else {
            it->second->shutDown();
            it = _decks.erase(it);
        }
    }
    for (const auto& screen : served) {
        if (auto it = _decks.find(screen.id); it != _decks.end()) {
            it->second->setScreen(screen);
            continue;
        }
        auto deck = std::make_unique<DeckController>(screen, _host, _notes, _defaults, this);
        DeckController* raw = deck.get();
        _decks.emplace(screen.id, std::move(deck));
        raw->start();
    }
    Q_EMIT decksChanged();
}

DeckController* DeckManager::deck(quint32 displayID) const {
    const auto it = _decks.find(displayID);
    return it == _decks.end() ? nullptr : it->second.get();
}

DeckController* DeckManager::deckUnderPointer() const {
    const QPointF pointer = _host.pointer();
    for (const auto& [id, deck] : _decks)
        if (QRectF(deck->screen().frame).contains(pointer)) return deck.get();
    const QList<DeckScreen> screens = _host.screens();
    for (const auto& screen : screens)
        if (auto* found = deck(screen.id)) return found;
    return _decks.empty() ? nullptr : _decks.begin()->second.get();
}

void DeckManager::returnOthersToIdle(quint32 exceptDisplayID) {
    for (auto& [id, deck] : _decks)
        if (id != exceptDisplayID) deck->returnToIdle();
}

void DeckManager::announce() {
    if (auto* target = deckUnderPointer()) target->announce();
}

void DeckManager::expand(const QString& noteID) {
    if (auto* target = deckUnderPointer()) target->expand(noteID);
}

QString DeckManager::createAndExpand() {
    const Note note = _notes.create();
    if (!_notes.note(note.id)) return {};  // read-only store: nothing to open
    expand(note.id);
    return note.id;
}

}  // namespace vuro
