#include "storage/SqliteStatement.h"

#include "storage/DatabaseError.h"

#include <sqlite3.h>
#include <utility>

namespace vuro {

SqliteStatement::SqliteStatement(sqlite3* handle, const char* sql) : _handle(handle) {
    check(sqlite3_prepare_v2(handle, sql, -1, &_statement, nullptr), "The store could not prepare a query");
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(_statement); }

SqliteStatement::SqliteStatement(SqliteStatement&& other) noexcept
    : _handle(other._handle), _statement(std::exchange(other._statement, nullptr)) {}

void SqliteStatement::check(int result, const char* doing) const {
    if (result != SQLITE_OK) throw DatabaseError::from(_handle, QString::fromUtf8(doing));
}

SqliteStatement& SqliteStatement::bindText(int index, const QString& value) {
    const QByteArray utf8 = value.toUtf8();
    check(sqlite3_bind_text64(_statement, index, utf8.constData(), sqlite3_uint64(utf8.size()), SQLITE_TRANSIENT,
                              SQLITE_UTF8),
          "The store could not take a value");
    return *this;
}

SqliteStatement& SqliteStatement::bindText(int index, const std::optional<QString>& value) {
    return value ? bindText(index, *value) : bindNull(index);
}

SqliteStatement& SqliteStatement::bindBlob(int index, const QByteArray& value) {
    // A zero-length blob must stay a blob, not become NULL: pass a non-null pointer.
    static const char empty = 0;
    check(sqlite3_bind_blob64(_statement, index, value.isEmpty() ? &empty : value.constData(),
                              sqlite3_uint64(value.size()), SQLITE_TRANSIENT),
          "The store could not take a value");
    return *this;
}

SqliteStatement& SqliteStatement::bindInt(int index, qint64 value) {
    check(sqlite3_bind_int64(_statement, index, value), "The store could not take a value");
    return *this;
}

SqliteStatement& SqliteStatement::bindReal(int index, double value) {
    check(sqlite3_bind_double(_statement, index, value), "The store could not take a value");
    return *this;
}

SqliteStatement& SqliteStatement::bindDate(int index, const QDateTime& value) {
    return value.isValid() ? bindInt(index, value.toMSecsSinceEpoch()) : bindNull(index);
}

SqliteStatement& SqliteStatement::bindNull(int index) {
    check(sqlite3_bind_null(_statement, index), "The store could not take a value");
    return *this;
}

bool SqliteStatement::step() {
    const int result = sqlite3_step(_statement);
    if (result == SQLITE_ROW) return true;
    if (result == SQLITE_DONE) return false;
    throw DatabaseError::from(_handle, QStringLiteral("The store could not be read or written"));
}

void SqliteStatement::run() {
    while (step()) {
    }
}

void SqliteStatement::reset() { sqlite3_reset(_statement); }

bool SqliteStatement::isNull(int column) const { return sqlite3_column_type(_statement, column) == SQLITE_NULL; }

QString SqliteStatement::text(int column) const {
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(_statement, column));
    return QString::fromUtf8(data, sqlite3_column_bytes(_statement, column));
}

std::optional<QString> SqliteStatement::optionalText(int column) const {
    if (isNull(column)) return std::nullopt;
    return text(column);
}

QByteArray SqliteStatement::blob(int column) const {
    const auto* data = static_cast<const char*>(sqlite3_column_blob(_statement, column));
    return QByteArray(data, sqlite3_column_bytes(_statement, column));
}

qint64 SqliteStatement::integer(int column) const { return sqlite3_column_int64(_statement, column); }

double SqliteStatement::real(int column) const { return sqlite3_column_double(_statement, column); }

QDateTime SqliteStatement::date(int column) const {
    if (isNull(column)) return {};
    return QDateTime::fromMSecsSinceEpoch(integer(column), Qt::UTC);
}

}  // namespace vuro
