#include "support/SqliteFile.h"

#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace vuro::test {

namespace {

struct Connection {
    explicit Connection(const QString& path) {
        if (sqlite3_open(QFile::encodeName(path).constData(), &handle) != SQLITE_OK)
            ADD_FAILURE() << "cannot open " << path.toStdString();
    }
    ~Connection() { sqlite3_close(handle); }
    sqlite3* handle = nullptr;
};

}  // namespace

void execSql(const QString& path, const QString& sql) {
    Connection connection(path);
    char* message = nullptr;
    if (sqlite3_exec(connection.handle, sql.toUtf8().constData(), nullptr, nullptr, &message) != SQLITE_OK)
        ADD_FAILURE() << "SQL failed: " << (message ? message : "") << "\n" << sql.toStdString();
    sqlite3_free(message);
}

QList<QVariantList> querySql(const QString& path, const QString& sql) {
    Connection connection(path);
    QList<QVariantList> rows;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection.handle, sql.toUtf8().constData(), -1, &statement, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << "SQL failed: " << sqlite3_errmsg(connection.handle) << "\n" << sql.toStdString();
        return rows;
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
        QVariantList row;
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            switch (sqlite3_column_type(statement, column)) {
            case SQLITE_NULL: row.append(QVariant()); break;
            case SQLITE_INTEGER: row.append(qint64(sqlite3_column_int64(statement, column))); break;
            case SQLITE_FLOAT: row.append(sqlite3_column_double(statement, column)); break;
            case SQLITE_TEXT:
                row.append(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, column))));
                break;
            default:
                row.append(QByteArray(static_cast<const char*>(sqlite3_column_blob(statement, column)),
                                      sqlite3_column_bytes(statement, column)));
            }
        }
        rows.append(row);
    }
    sqlite3_finalize(statement);
    return rows;
}

void execWithBlob(const QString& path, const QString& sql, const QByteArray& blob) {
    Connection connection(path);
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection.handle, sql.toUtf8().constData(), -1, &statement, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << "SQL failed: " << sqlite3_errmsg(connection.handle);
        return;
    }
    sqlite3_bind_blob(statement, 1, blob.constData(), int(blob.size()), SQLITE_TRANSIENT);
    if (sqlite3_step(statement) != SQLITE_DONE) ADD_FAILURE() << "SQL failed: " << sqlite3_errmsg(connection.handle);
    sqlite3_finalize(statement);
}

QMap<QString, QByteArray> filesUnder(const QString& folder) {
    QMap<QString, QByteArray> files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) files.insert(path.mid(folder.size() + 1), file.readAll());
    }
    return files;
}

}  // namespace vuro::test
