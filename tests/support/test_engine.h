// The database engine that a test program runs against.
#pragma once

#include <QStringList>

namespace velmora {

/// Whether this run is for the server engine: VELMORA_TEST_SERVER then names the file with its connection.
bool onServer();

/// A database of one test's own, without tables: a file in a folder, or a database on the test server, which
/// is dropped when this object ends.
class EmptyDatabase {
public:
    /// `file` is where the embedded engine keeps it.
    explicit EmptyDatabase(const QString& file);
    ~EmptyDatabase();
    EmptyDatabase(const EmptyDatabase&) = delete;
    EmptyDatabase& operator=(const EmptyDatabase&) = delete;

    QString connectionString() const { return m_connectionString; }

private:
    QString m_connectionString;
    QString m_name;
};

/// Runs a statement on the database that the connection string names.
void execute(const QString& database, const QString& statement);
/// The rows of a query there, the fields of each apart by "|".
QStringList rowsOf(const QString& database, const QString& query);
/// Every row of that database, behind the name of its table, sorted.
QStringList everyRow(const QString& database);

} // namespace velmora
