#include "database/connection.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QScopeGuard>
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

void Connection::open(const QString& connectionString, OpenMode mode, const QString& folder)
{
    close();
    m_connectionString = connectionString;
    m_mode = mode;
    m_folder = folder;
    m_preparation = {};
    openSession();
}

void Connection::openSession()
{
    close();
    try {
        const ConnectionString string(m_connectionString, m_folder);
        m_engine = engineFor(string);
        const QString file = m_mode == OpenMode::ReadWrite ? m_engine->file(string) : QString();
        m_newFile = QFile::exists(file) ? QString() : file;
        QSqlDatabase database = QSqlDatabase::addDatabase(m_engine->driver(), m_name);
        m_engine->configure(database, string, m_mode);
        if (!database.open())
            fail(string.text(), database.lastError());
        m_engine->restrictSession(database);
        m_engine->prepareSession(*this, m_mode);
        if (m_preparation)
            m_preparation(*this);
    } catch (const DatabaseError& error) {
        closeUnused();
        // A server repeats what it was told, and a slip of the pen makes a password a part of something else.
        throw DatabaseError(withoutPasswords(error.statement()), withoutPasswords(error.description()),
                            error.reason());
    }
}

void Connection::close()
{
    m_prepared.clear();
    m_released.clear();
    if (QSqlDatabase::contains(m_name))
        QSqlDatabase::removeDatabase(m_name);
    m_engine.reset();
    m_lost = false;
}

void Connection::closeUnused()
{
    bool unused = false;
    try {
        unused = m_engine && !m_newFile.isEmpty() && m_engine->isUnused(*this);
    } catch (const DatabaseError& error) {
        // Somebody else has it open, perhaps to fill it, or the engine could not even begin it.
        unused = error.reason() != DatabaseError::Reason::Busy && QFileInfo(m_newFile).size() == 0;
    }
    close();
    if (unused)
        QFile::remove(m_newFile);
}

void Connection::prepareSessions(std::function<void(Connection&)> preparation)
{
    preparation(*this);
    m_preparation = std::move(preparation);
}

int Connection::execute(const QString& statement, const QStringList& values)
{
    return executeNamed(statement, {}, values);
}

int Connection::executeNamed(const QString& statement, const QStringList& names, const QStringList& values)
{
    QSqlQuery query = run(statement, values, names);
    const int rows = query.numRowsAffected();
    if (!values.isEmpty())
        keep(statement, std::move(query));
    return rows;
}

void Connection::executePortable(const QString& statement)
{
    m_engine->executePortable(*this, statement);
}

void Connection::executeStep(const QString& statement)
{
    m_engine->executeStep(*this, statement);
}

Recordset Connection::select(const QString& statement, const QStringList& values)
{
    Cursor rows = cursor(statement, values);
    Recordset held(rows);
    if (!values.isEmpty())
        keep(statement, rows.takeQuery());
    return held;
}

Cursor Connection::cursor(const QString& statement, const QStringList& values)
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

QList<Reference> Connection::references()
{
    return m_engine->references(*this);
}

QString Connection::keepCopy(const QString& name)
{
    return m_engine->keepCopy(*this, name);
}

void Connection::holdDeclaredTypes()
{
    m_engine->holdDeclaredTypes(*this);
}

void Connection::releaseDeclaredTypes(const QString& table)
{
    if (m_released.contains(table.toLower()))
        return;
    m_engine->releaseDeclaredTypes(*this, table);
    m_released.insert(table.toLower());
}

void Connection::holdDeclaredTypes(const QString& table)
{
    if (!m_released.contains(table.toLower()))
        return;
    m_engine->holdDeclaredTypesAgain(*this, table);
    m_released.remove(table.toLower());
}

qsizetype Connection::rowsTogether() const
{
    return m_engine->rowsTogether();
}

QSqlQuery Connection::run(const QString& statement, const QStringList& values, const QStringList& names)
{
    if (m_lost)
        reconnect(statement);
    if (!m_engine)
        throw DatabaseError(statement, u"No database is open."_s);
    QSqlQuery query =
        values.isEmpty() ? QSqlQuery(QSqlDatabase::database(m_name, false)) : prepared(statement);
    query.setForwardOnly(true);
    for (int place = 0; place < values.size(); ++place) {
        const QString& value = values[place].isEmpty() ? u""_s : values[place];
        if (names.isEmpty())
            query.bindValue(place, value);
        else
            query.bindValue(names[place], value);
    }
    if (values.isEmpty() ? query.exec(statement) : query.exec())
        return query;
    const QSqlError error = query.lastError();
    if (!values.isEmpty())
        keep(statement, std::move(query)); // it may be refused for one row and not for the next
    fail(statement, error);
}

void Connection::reconnect(const QString& statement)
{
    if (m_inTransaction)
        throw DatabaseError(statement, u"The connection was lost."_s, DatabaseError::Reason::ConnectionLost);
    const auto stillLost = qScopeGuard([this] { m_lost = !m_engine; });
    openSession();
}

QSqlQuery Connection::prepared(const QString& statement)
{
    if (auto kept = m_prepared.extract(statement))
        return std::move(kept.mapped());
    QSqlQuery query(QSqlDatabase::database(m_name, false));
    if (!query.prepare(statement))
        fail(statement, query.lastError());
    return query;
}

void Connection::keep(const QString& statement, QSqlQuery query)
{
    query.finish();
    m_prepared.insert_or_assign(statement, std::move(query));
}

void Connection::fail(const QString& statement, const QSqlError& error)
{
    const DatabaseError::Cause cause = m_engine->cause(error);
    m_lost = m_lost || cause.reason == DatabaseError::Reason::ConnectionLost;
    const QString hint = m_engine->hint(error, QSqlDatabase::database(m_name, false).databaseName());
    throw DatabaseError(statement, hint.isEmpty() ? wordsOf(error) : wordsOf(error) + ": "_L1 + hint, cause);
}

} // namespace velmora
