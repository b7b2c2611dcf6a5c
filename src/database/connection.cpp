#include "database/connection.h"

#include <QAtomicInt>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString uniqueName()
{
    static QAtomicInt counter;
    return u"velmora-%1"_s.arg(counter.fetchAndAddRelaxed(1));
}

/// The engine's words where it has some, else those of its driver.
QString wordsOf(const QSqlError& error)
{
    return error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
}

} // namespace

Connection::Connection() : m_name(uniqueName()) {}

Connection::~Connection()
{
    close();
}

void Connection::open(const QString& connectionString, OpenMode mode)
{
    close();
    const ConnectionString string(connectionString);
    m_engine = engineFor(string);
    try {
        QSqlDatabase database = QSqlDatabase::addDatabase(m_engine->driver(), m_name);
        m_engine->configure(database, string, mode);
        if (!database.open())
            throw DatabaseError(connectionString, wordsOf(database.lastError()));
        m_engine->prepareSession(*this, mode);
    } catch (const DatabaseError&) {
        close();
        throw;
    }
}

void Connection::close()
{
    if (QSqlDatabase::contains(m_name))
        QSqlDatabase::removeDatabase(m_name);
    m_engine.reset();
}

void Connection::execute(const QString& statement, const QVariantList& values)
{
    run(statement, values);
}

void Connection::executePortable(const QString& statement)
{
    m_engine->executePortable(*this, statement);
}

Recordset Connection::select(const QString& statement, const QVariantList& values)
{
    return Recordset(cursor(statement, values));
}

Cursor Connection::cursor(const QString& statement, const QVariantList& values)
{
    return Cursor(run(statement, values));
}

QStringList Connection::tables()
{
    return m_engine->tables(*this);
}

QList<Column> Connection::columns(const QString& table)
{
    return m_engine->columns(*this, table);
}

QString Connection::keepCopy(const QString& name)
{
    return m_engine->keepCopy(*this, name);
}

void Connection::holdDeclaredTypes()
{
    m_engine->holdDeclaredTypes(*this);
}

QSqlQuery Connection::run(const QString& statement, const QVariantList& values)
{
    if (!m_engine)
        throw DatabaseError(statement, u"No database is open."_s);
    QSqlQuery query(QSqlDatabase::database(m_name, false));
    query.setForwardOnly(true);
    bool done = false;
    if (values.isEmpty()) {
        done = query.exec(statement);
    } else if (query.prepare(statement)) {
        for (const QVariant& value : values)
            query.addBindValue(value);
        done = query.exec();
    }
    if (!done)
        throw DatabaseError(statement, wordsOf(query.lastError()), m_engine->reason(query.lastError()));
    return query;
}

} // namespace velmora
