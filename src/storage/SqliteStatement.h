#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace vuro {

// One prepared SQL statement on a VuroDatabase connection. Parameters are numbered from 1,
// result columns from 0. Dates are kept as whole milliseconds since the epoch (UTC), an invalid
// date as NULL. Failures throw DatabaseError. Used on the thread that owns the connection.
class SqliteStatement {
public:
    SqliteStatement(sqlite3* handle, const char* sql);
    ~SqliteStatement();
    SqliteStatement(SqliteStatement&& other) noexcept;
    SqliteStatement& operator=(SqliteStatement&&) = delete;
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    SqliteStatement& bindText(int index, const QString& value);
    SqliteStatement& bindText(int index, const std::optional<QString>& value);  // none: NULL
    SqliteStatement& bindBlob(int index, const QByteArray& value);
    SqliteStatement& bindInt(int index, qint64 value);
    SqliteStatement& bindReal(int index, double value);
    SqliteStatement& bindDate(int index, const QDateTime& value);
    SqliteStatement& bindNull(int index);

    // Advances to the next row: true while there is one.
    bool step();
    // Steps to the end, for statements that return no rows.
    void run();
    // Makes the statement ready to run again; bindings are kept.
    void reset();

    bool isNull(int column) const;
    QString text(int column) const;
    std::optional<QString> optionalText(int column) const;  // NULL: none
    QByteArray blob(int column) const;
    qint64 integer(int column) const;
    double real(int column) const;
    QDateTime date(int column) const;

private:
    void check(int result, const char* doing) const;

    sqlite3* _handle;
    sqlite3_stmt* _statement = nullptr;
};

}  // namespace vuro
