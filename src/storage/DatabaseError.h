#pragma once

#include "base/Error.h"

struct sqlite3;

namespace vuro {

// A failure of the store file itself: it can't be opened, read, migrated or written.
class DatabaseError : public Error {
public:
    using Error::Error;
    // The database's own description of its last failure, after what was being done.
    static DatabaseError from(sqlite3* handle, const QString& doing);
};

}  // namespace vuro
