#pragma once

#include <QByteArray>
#include <QString>

namespace vuro {

// Whole-file writes that a crash can't tear, and folders only their owner can enter.
class AtomicFile {
public:
    // Writes a temporary file beside path, flushes it to disk and renames it over path.
    // Throws Error with the system's reason.
    static void write(const QString& path, const QByteArray& bytes);
    // Creates folder (and its parents) with owner-only access, or tightens an existing one.
    // Throws Error when it can't be made, or when it is not a folder of this user.
    static void makePrivateFolder(const QString& folder);
};

}  // namespace vuro
