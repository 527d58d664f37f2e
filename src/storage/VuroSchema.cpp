#include "storage/VuroSchema.h"

#include <stdexcept>

namespace vuro {

namespace {

// The first store: notes, and the channels, drops and sync records of a sharing feature that
// later versions removed. They are still created so that every file walks the same steps.
constexpr const char* version1 = R"(
CREATE TABLE StoredNote (
    id TEXT PRIMARY KEY NOT NULL, title TEXT NOT NULL, sealedBody BLOB NOT NULL,
    colorIndex INTEGER NOT NULL, created INTEGER, modified INTEGER,
    archived INTEGER NOT NULL, pinned INTEGER NOT NULL, "order" REAL NOT NULL,
    originChannelID TEXT, originDropID TEXT, originSenderName TEXT);
CREATE TABLE StoredChannel (
    id TEXT PRIMARY KEY NOT NULL, name TEXT NOT NULL, kindRaw TEXT NOT NULL, roleRaw TEXT NOT NULL,
    hostName TEXT NOT NULL, createdAt INTEGER, historyDays INTEGER, inviteURL TEXT,
    zoneOwnerName TEXT NOT NULL);
CREATE TABLE StoredDrop (
    id TEXT PRIMARY KEY NOT NULL, channelID TEXT NOT NULL, senderID TEXT NOT NULL,
    senderName TEXT NOT NULL, createdAt INTEGER, kindRaw TEXT NOT NULL, sealedText BLOB NOT NULL,
    attachmentFileName TEXT, attachmentByteCount INTEGER);
CREATE TABLE StoredRecordMeta (key TEXT PRIMARY KEY NOT NULL, systemFields BLOB NOT NULL);
CREATE TABLE StoredSyncState (scope TEXT PRIMARY KEY NOT NULL, data BLOB NOT NULL);
)";

constexpr const char* version2 = R"(
CREATE TABLE StoredAgent (
    id TEXT PRIMARY KEY NOT NULL, name TEXT NOT NULL, emoji TEXT NOT NULL,
    colorIndex INTEGER NOT NULL, vibe TEXT NOT NULL, sealedProfile BLOB NOT NULL,
    providerRaw TEXT NOT NULL, model TEXT NOT NULL, accessRaw TEXT NOT NULL, createdAt INTEGER);
CREATE TABLE StoredAgentJob (
    id TEXT PRIMARY KEY NOT NULL, agentID TEXT NOT NULL, title TEXT NOT NULL,
    sealedInstruction BLOB NOT NULL, noteID TEXT, triggerData BLOB NOT NULL,
    enabled INTEGER NOT NULL, createdAt INTEGER, lastRun INTEGER, lastStatusRaw TEXT, lastError TEXT);
CREATE TABLE StoredAgentMessage (
    id TEXT PRIMARY KEY NOT NULL, agentID TEXT NOT NULL, roleRaw TEXT NOT NULL, createdAt INTEGER,
    jobID TEXT, sealedPayload BLOB NOT NULL);
CREATE INDEX StoredAgentMessageByAgent ON StoredAgentMessage (agentID, createdAt);
)";

constexpr const char* version3 = R"(
ALTER TABLE StoredNote ADD COLUMN tags TEXT NOT NULL DEFAULT '';
)";

constexpr const char* version4 = R"(
ALTER TABLE StoredNote ADD COLUMN folderID TEXT;
CREATE TABLE StoredFolder (id TEXT PRIMARY KEY NOT NULL, name TEXT NOT NULL, created INTEGER);
)";

constexpr const char* version5 = R"(
DROP TABLE StoredChannel;
DROP TABLE StoredDrop;
DROP TABLE StoredRecordMeta;
DROP TABLE StoredSyncState;
)";

}  // namespace

const char* VuroSchema::step(int toVersion) {
    switch (toVersion) {
    case 1: return version1;
    case 2: return version2;
    case 3: return version3;
    case 4: return version4;
    case 5: return version5;
    default: throw std::out_of_range("no schema step to that version");
    }
}

}  // namespace vuro
