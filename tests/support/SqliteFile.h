#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

// Direct access to an SQLite file beside the code under test, so that tests can build old
// stores, damage rows and look at what really is on disk.
namespace vuro::test {

// Runs statements that return no rows; fails the test on an error.
void execSql(const QString& path, const QString& sql);
// The rows of one query, each as its column values (NULL as an invalid QVariant).
QList<QVariantList> querySql(const QString& path, const QString& sql);
// Binds one blob parameter (?1) and runs the statement.
void execWithBlob(const QString& path, const QString& sql, const QByteArray& blob);
// Every regular file under a folder, by relative path, with its bytes.
QMap<QString, QByteArray> filesUnder(const QString& folder);

}  // namespace vuro::test
