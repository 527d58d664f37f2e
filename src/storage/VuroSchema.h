#pragma once

namespace vuro {

// The versions of the tables in Vuro.store and the steps between them. The version a file is at
// is its PRAGMA user_version (0: a new, empty file). Every step only adds tables or columns that
// are optional or have a default, or drops tables with their rows; each runs in one transaction
// with the version bump, so a file is always at one whole version.
//
// The tables of the current version (5). Dates are INTEGER milliseconds since the epoch (UTC),
// NULL when absent; flags are INTEGER 0/1; columns named sealed… hold BodyCipher blobs; every
// `id` is the TEXT primary key.
//
//   StoredNote     id, title, sealedBody, colorIndex, created, modified, archived, pinned,
//                  "order" (REAL), originChannelID, originDropID, originSenderName (TEXT or NULL),
//                  tags (TEXT, "\n"-joined, default ''), folderID (TEXT or NULL)
//   StoredFolder   id, name, created
//   StoredAgent    id, name, emoji, colorIndex, vibe, sealedProfile, providerRaw, model,
//                  accessRaw (TEXT), createdAt
//   StoredAgentJob id, agentID, title, sealedInstruction, noteID (TEXT or NULL),
//                  triggerData (BLOB, plain JSON), enabled, createdAt, lastRun (or NULL),
//                  lastStatusRaw (TEXT or NULL), lastError (TEXT or NULL)
//   StoredAgentMessage id, agentID, roleRaw, createdAt, jobID (TEXT or NULL), sealedPayload;
//                  indexed by (agentID, createdAt)
//
// The agent rows carry JSON sealed with BodyCipher: sealedProfile, sealedInstruction and
// sealedPayload. Any row in StoredNote or in the three agent tables makes the database refuse to
// make a new key (see VuroDatabase::cipher).
class VuroSchema {
public:
    static constexpr int currentVersion = 5;

    // The SQL that takes a file from version toVersion - 1 to toVersion (1 … currentVersion).
    // Version 1 creates the first tables on an empty file.
    static const char* step(int toVersion);
};

}  // namespace vuro
