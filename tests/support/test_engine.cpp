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
    Connection server;
    server.open(onTestServer(u"information_schema"_s));
    server.execute(statement);
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

} // namespace velmora
