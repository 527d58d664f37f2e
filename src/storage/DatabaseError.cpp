#include "storage/DatabaseError.h"

#include <sqlite3.h>

namespace vuro {

DatabaseError DatabaseError::from(sqlite3* handle, const QString& doing) {
    const char* detail = handle ? sqlite3_errmsg(handle) : "out of memory";
    return DatabaseError(doing + QStringLiteral(" (") + QString::fromUtf8(detail) + QStringLiteral(")."));
}

}  // namespace vuro
