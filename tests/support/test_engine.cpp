#include "support/test_engine.h"

#include "database/connection.h"
#include "files/whole_file.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The connection string of a database on the test server.
QString onTestServer(const QString& database)
{
    const QStringList parts =
        QString::fromUtf8(readWholeFile(qEnvironmentVariable("VELMORA_TEST_SERVER"))).trimmed().split(u';');
    return u"Provider=MariaDB;Data Source=%1;Port=%2;User ID=%3;Password=%4;Initial Catalog=%5"_s.arg(
        parts[0], parts[1], parts[2], parts[3], database);
}

void executeOnServer(const QString& statement)
{
    execute(onTestServer(u"information_schema"_s), statement);
}

} // namespace

bool onServer()
{
    return !qEnvironmentVariable("VELMORA_TEST_SERVER").isEmpty();
}

EmptyDatabase::EmptyDatabase(const QString& file)
{
    if (!onServer()) {
        m_connectionString = "Provider=SQLite;Data Source="_L1 + file;
        return;
    }
    static int number = 0;
    m_name = u"test_%1_%2"_s.arg(QCoreApplication::applicationPid()).arg(++number);
    executeOnServer("CREATE DATABASE "_L1 + m_name);
    m_connectionString = onTestServer(m_name);
}

EmptyDatabase::~EmptyDatabase()
{
    try {
        if (!m_name.isEmpty())
            executeOnServer("DROP DATABASE "_L1 + m_name);
    } catch (const DatabaseError&) {
        // The server has gone, and its data with it.
    }
}

void execute(const QString& database, const QString& statement)
{
    Connection connection;
    connection.open(database);
    connection.execute(statement);
}

QStringList rowsOf(const QString& database, const QString& query)
{
    Connection connection;
    connection.open(database);
    QStringList rows;
    Cursor cursor = connection.cursor(query);
    while (cursor.next()) {
        QStringList fields;
        for (int field = 0; field < cursor.fieldCount(); ++field)
            fields << cursor.text(field);
        rows << fields.join(u'|');
    }
    return rows;
}

QStringList everyRow(const QString& database)
{
    Connection connection;
    connection.open(database);
    QStringList rows;
    for (const QString& table : connection.tables())
        rows << rowsOf(database, "SELECT '"_L1 + table + "', "_L1 + table + ".* FROM "_L1 + table);
    rows.sort();
    return rows;
}

} // namespace velmora
