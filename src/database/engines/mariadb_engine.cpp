#include "database/engines/mariadb_engine.h"

#include "database/connection.h"
#include "database/engines/mariadb_schema_change.h"

#include <QCoreApplication>
#include <QLibrary>
#include <QRegularExpression>
#include <QSqlDriver>
#include <QVariant>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// https://mariadb.com/kb/en/mariadb-error-codes/
constexpr int columnIsNull = 1048;
constexpr int duplicateEntry = 1062;
constexpr int lockWaitTimeout = 1205;
constexpr int deadlock = 1213;
constexpr int noDefault = 1364;
constexpr int dataTooLong = 1406;
constexpr int rowIsReferenced = 1451;
constexpr int noReferencedRow = 1452;
constexpr int connectionErrors[] = {
    1927,       // the connection was killed
    2002, 2003, // can't connect
    2006,       // the server has gone away
    2013,       // lost during a query
    4031,       // closed by the server for being idle
};

/// What the words of a broken foreign key tell: "... (`base`.`table`, CONSTRAINT `name` FOREIGN KEY
/// (`column`, `column`) REFERENCES ...".
DatabaseError::Cause brokenReference(const QString& words)
{
    static const QRegularExpression reference(u"`\\.`(\\w+)`.* FOREIGN KEY \\(([^)]*)\\)"_s);
    const QRegularExpressionMatch match = reference.match(words);
    return {DatabaseError::Reason::ForeignKey, match.captured(1), match.captured(2).remove(u'`')};
}

/// What a broken rule of one column is about: the first name between quotes is the column's.
DatabaseError::Cause brokenRule(DatabaseError::Reason reason, const QString& words)
{
    return {reason, {}, words.section(u'\'', 1, 1)};
}

/// One lock for each database of the server.
constexpr auto schemaLockName = "CONCAT('velmora ', MD5(DATABASE()))"_L1;

/// In the words of this server: NVARCHAR would mean a character set of three bytes; a table's own follows its
/// declaration; and each of several new columns has an ADD of its own.
QString adapted(QString statement)
{
    static const QRegularExpression nationalText(u"\\bnvarchar\\b"_s,
                                                 QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression creation(u"^CREATE (TEMPORARY )?TABLE "_s);
    static const QRegularExpression newColumns(u"^ALTER TABLE \\w+ ADD (?!CONSTRAINT)"_s);
    statement.replace(nationalText, u"varchar"_s);
    if (creation.match(statement).hasMatch())
        return statement + " ENGINE=InnoDB CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin"_L1;
    if (newColumns.match(statement).hasMatch())
        return statement.replace(", "_L1, ", ADD "_L1);
    return statement;
}

/// A function of the client library that the driver itself uses; null where it can't be found.
QFunctionPointer clientFunction(const char* name)
{
#ifdef Q_OS_WIN
    // There a library gives out no functions of those that it needs itself. The driver has loaded this one.
    return QLibrary(u"libmariadb"_s).resolve(name);
#else
    for (const QString& folder : QCoreApplication::libraryPaths()) {
        QLibrary driver(folder + "/sqldrivers/qsqlmysql"_L1);
        if (const QFunctionPointer function = driver.resolve(name))
            return function;
    }
    return nullptr;
#endif
}

} // namespace

QString MariaDbEngine::driver() const
{
    return u"QMARIADB"_s;
}

void MariaDbEngine::configure(QSqlDatabase& database, const ConnectionString& string, OpenMode) const
{
    database.setHostName(string.required(u"Data Source"_s));
    database.setDatabaseName(string.required(u"Initial Catalog"_s));
    database.setUserName(string.required(u"User ID"_s));
    database.setPassword(string.value(u"Password"_s));
    const QString port = string.value(u"Port"_s);
    bool isNumber = true;
    database.setPort(port.isEmpty() ? 3306 : port.toUShort(&isNumber));
    if (!isNumber)
        throw DatabaseError(string.text(), u"The Port \"%1\" is no port number."_s.arg(port));
    database.setConnectOptions(
        u"CLIENT_FOUND_ROWS=1;MYSQL_OPT_CONNECT_TIMEOUT=%1;MYSQL_OPT_READ_TIMEOUT=%2;MYSQL_OPT_WRITE_TIMEOUT=%2"_s
            .arg(QString::number(Connection::connectionTimeoutSeconds),
                 QString::number(Connection::commandTimeoutSeconds)));
}

void MariaDbEngine::restrictSession(const QSqlDatabase& database) const
{
    // The driver opens every session for several statements a call, and has no option for files: both are
    // taken back through the client library's own calls (https://mariadb.com/kb/en/mysql_optionsv/).
    constexpr int multiStatementsOff = 1;
    constexpr int optionLocalInfile = 8;
    using SetServerOption = int (*)(void* session, int option);
    using SetOption = int (*)(void* session, int option, const void* value);
    const auto setServerOption = reinterpret_cast<SetServerOption>(clientFunction("mysql_set_server_option"));
    const auto setOption = reinterpret_cast<SetOption>(clientFunction("mysql_options"));
    const QVariant handle = database.driver()->handle();
    const bool isSession = handle.metaType().flags().testFlag(QMetaType::IsPointer);
    void* const session = isSession ? *static_cast<void* const*>(handle.constData()) : nullptr;
    const unsigned int off = 0;
    if (!setServerOption || !setOption || !session || setOption(session, optionLocalInfile, &off) != 0 ||
        setServerOption(session, multiStatementsOff) != 0)
        throw DatabaseError(database.databaseName(), u"The session can't be held to one statement a call."_s);
}

void MariaDbEngine::prepareSession(Connection& connection, OpenMode mode) const
{
    connection.execute(u"SET NAMES utf8mb4 COLLATE utf8mb4_nopad_bin"_s);
    // Staging reads other tables; only this isolation lets others write to them meanwhile.
    connection.execute(u"SET SESSION TRANSACTION ISOLATION LEVEL READ COMMITTED"_s);
    connection.execute(u"SET SESSION sql_mode = "
                       u"'STRICT_ALL_TABLES,NO_ENGINE_SUBSTITUTION,NO_BACKSLASH_ESCAPES,PIPES_AS_CONCAT', "
                       "max_statement_time = %1, innodb_lock_wait_timeout = %2, lock_wait_timeout = %2"_s.arg(
                           QString::number(Connection::commandTimeoutSeconds),
                           QString::number(Connection::connectionTimeoutSeconds)));
    if (mode == OpenMode::ReadOnly)
        connection.execute(u"SET SESSION TRANSACTION READ ONLY"_s);
}

void MariaDbEngine::executePortable(Connection& connection, const QString& statement) const
{
    connection.execute(adapted(QString(statement).replace("'$$' + "_L1, "'$$' || "_L1)));
}

void MariaDbEngine::executeStep(Connection& connection, const QString& statement) const
{
    if (!changeMariaDbSchema(connection, statement))
        executePortable(connection, statement);
}

QString MariaDbEngine::keepCopy(Connection&, const QString&) const
{
    return {};
}

QString MariaDbEngine::beginTransaction() const
{
    return u"START TRANSACTION"_s;
}

bool MariaDbEngine::schemaChangeEndsTransaction() const
{
    return true;
}

bool MariaDbEngine::lockSchema(Connection& connection) const
{
    // The server ends with the session what it held; one whose computer has gone silent must end in time.
    connection.execute(u"SET SESSION wait_timeout = %1"_s.arg(Connection::commandTimeoutSeconds));
    return connection.select(u"SELECT GET_LOCK(%1, %2)"_s.arg(schemaLockName).arg(schemaLockSeconds))
               .text(0) == "1"_L1;
}

void MariaDbEngine::unlockSchema(Connection& connection) const
{
    connection.execute(u"DO RELEASE_LOCK(%1)"_s.arg(schemaLockName));
    connection.execute(u"SET SESSION wait_timeout = DEFAULT"_s);
}

DatabaseError::Cause MariaDbEngine::cause(const QSqlError& error) const
{
    const int code = error.nativeErrorCode().toInt();
    switch (code) {
    case duplicateEntry:
        return DatabaseError::Reason::DuplicateKey;
    case rowIsReferenced:
    case noReferencedRow:
        return brokenReference(error.databaseText());
    case dataTooLong:
        return brokenRule(DatabaseError::Reason::TooLong, error.databaseText());
    case columnIsNull:
    case noDefault:
        return brokenRule(DatabaseError::Reason::Required, error.databaseText());
    case lockWaitTimeout:
        return DatabaseError::Reason::Busy;
    case deadlock:
        return DatabaseError::Reason::TransactionLost;
    default:
        break;
    }
    return std::find(std::begin(connectionErrors), std::end(connectionErrors), code) !=
                   std::end(connectionErrors)
               ? DatabaseError::Reason::ConnectionLost
               : DatabaseError::Reason::Other;
}

QStringList MariaDbEngine::tables(Connection& connection) const
{
    QStringList names;
    for (Recordset rows = connection.select(
             u"SELECT TABLE_NAME FROM information_schema.TABLES WHERE TABLE_SCHEMA = DATABASE() AND "
             "TABLE_TYPE = 'BASE TABLE' ORDER BY TABLE_NAME"_s);
         !rows.eof(); rows.moveNext())
        names << rows.text(0);
    return names;
}

QList<Column> MariaDbEngine::columns(Connection& connection, const QString& table) const
{
    QList<Column> columns;
    for (Recordset rows = connection.select(
             u"SELECT C.COLUMN_NAME, C.CHARACTER_MAXIMUM_LENGTH, K.ORDINAL_POSITION, "
             u"C.COLUMN_COMMENT, C.IS_NULLABLE FROM "
             u"information_schema.COLUMNS C "
             "LEFT JOIN information_schema.KEY_COLUMN_USAGE K ON K.TABLE_SCHEMA = C.TABLE_SCHEMA AND "
             "K.TABLE_NAME = "
             "C.TABLE_NAME AND K.COLUMN_NAME = C.COLUMN_NAME AND K.CONSTRAINT_NAME = 'PRIMARY' "
             "WHERE C.TABLE_SCHEMA = DATABASE() AND C.TABLE_NAME = ? ORDER BY C.ORDINAL_POSITION"_s,
             {table});
         !rows.eof(); rows.moveNext())
        columns << Column{rows.text(0), rows.text(1).toInt(), rows.text(2).toInt(), rows.text(3),
                          rows.text(4) == "YES"_L1};
    return columns;
}

QList<Reference> MariaDbEngine::references(Connection& connection) const
{
    return gathered(connection.select(
        u"SELECT TABLE_NAME, ORDINAL_POSITION - 1, COLUMN_NAME, REFERENCED_TABLE_NAME, "
        u"REFERENCED_COLUMN_NAME "
        "FROM information_schema.KEY_COLUMN_USAGE WHERE TABLE_SCHEMA = DATABASE() AND "
        "REFERENCED_TABLE_NAME IS NOT NULL ORDER BY TABLE_NAME, CONSTRAINT_NAME, ORDINAL_POSITION"_s));
}

void MariaDbEngine::holdDeclaredTypes(Connection&) const
{
    // Strict mode holds them.
}

qsizetype MariaDbEngine::rowsTogether() const
{
    return 256; // each statement is a journey to the server
}

} // namespace velmora
