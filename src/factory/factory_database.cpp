#include "factory/factory_database.h"

#include "database/connection.h"
#include "database/transaction.h"
#include "schema/tables.h"
#include "schema/version.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

void insertRow(Connection& connection, const QString& table, const QStringList& row)
{
    const QStringList places(row.size(), u"?"_s);
    connection.execute("INSERT INTO "_L1 + table + " VALUES("_L1 + places.join(", "_L1) + u')', row);
}

} // namespace

void writeFactoryDatabase(const QString& path, const QList<TableRows>& data)
{
    QFile::remove(path);
    Connection connection;
    connection.open("Provider=SQLite;Data Source="_L1 + path);
    {
        Transaction filling(connection);
        for (const QString& statement : creationStatements())
            connection.executePortable(statement);
        connection.holdDeclaredTypes();
        for (const TableRows& each : data)
            for (const QStringList& row : each.rows)
                insertRow(connection, each.table, row);
        insertRow(connection, u"SYSTEM_PARAMETERS"_s, {u"$$BASEVER"_s, u"$"_s, versionDigits()});
        filling.commit();
    }
    // A write-ahead log would have to be made beside the file by whoever reads it.
    connection.execute(u"PRAGMA journal_mode = DELETE"_s);
}

} // namespace velmora
