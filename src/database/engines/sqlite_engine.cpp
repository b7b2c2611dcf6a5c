#include "database/engines/sqlite_engine.h"

#include "database/connection.h"
#include "database/engines/sqlite_schema_change.h"
#include "files/move_into_place.h"
#include "files/unfinished_file.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QThread>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString identifier(const QString& schema, const QString& name)
{
    return schema + u".\""_s + QString(name).replace(u'"', "\"\""_L1) + u'"';
}

QString literal(QString text)
{
    return u'\'' + text.replace(u'\'', "''"_L1) + u'\'';
}

/// One "WHEN ... THEN RAISE" branch per rule that the declared type of a column sets.
QString guardBranches(const QString& table, const QList<Column>& columns)
{
    QString branches;
    for (const Column& column : columns) {
        const QString value = identifier(u"NEW"_s, column.name);
        const QString name = table + u'.' + column.name;
        if (column.keyPosition > 0)
            branches +=
                u" WHEN %1 IS NULL THEN RAISE(ABORT, %2)"_s.arg(value, literal(name + u" is required"_s));
        if (column.width > 0) {
            const QString limit = QString::number(column.width);
            const QString refusal = name + u" holds at most "_s + limit + u" characters"_s;
            branches += u" WHEN length(%1) > %2 THEN RAISE(ABORT, %3)"_s.arg(value, limit, literal(refusal));
        }
    }
    return branches;
}

/// What the guards of a table guard against.
constexpr const char* guardedEvents[] = {"INSERT", "UPDATE"};

QString guardName(const QString& event, const QString& table)
{
    return identifier(u"temp"_s, u"guard_%1_%2"_s.arg(event, table));
}

void guardTable(Connection& connection, const QString& table, const QList<Column>& columns)
{
    const QString branches = guardBranches(table, columns);
    if (branches.isEmpty())
        return;
    for (const char* event : guardedEvents) {
        const QString trigger = guardName(QLatin1StringView(event), table);
        connection.execute(u"DROP TRIGGER IF EXISTS "_s + trigger);
        connection.execute(u"CREATE TRIGGER %1 BEFORE %2 ON %3 BEGIN SELECT CASE%4 END; END"_s.arg(
            trigger, QLatin1StringView(event), identifier(u"main"_s, table), branches));
    }
}

/// The creation of a table of the session alone: its shape is nobody else's, so that it can hold the declared
/// widths and required keys itself, at a lower cost than triggers.
QString withOwnGuards(QString creation)
{
    static const QRegularExpression sizedColumn(u"(\\w+) (nvarchar\\((\\d+)\\))"_s);
    creation.replace(sizedColumn,
                     u"\\1 \\2 CONSTRAINT \"\\1 holds at most \\3 characters\" CHECK (length(\\1) <= \\3)"_s);
    return creation + " WITHOUT ROWID"_L1;
}

/// https://www.sqlite.org/rescode.html
constexpr int busy = 5;
constexpr int constraint = 19;
constexpr int constraintForeignKey = 787;
constexpr int constraintPrimaryKey = 1555;
constexpr int constraintUnique = 2067;
/// The primary result codes that may roll a transaction back: out of memory, input or output error, full
/// disk.
constexpr int fatalCodes[] = {7, 10, 13};
/// Those that are about a file without naming it: read-only, input or output error, full disk, can't open.
constexpr int fileCodes[] = {8, 10, 13, 14};

template <std::size_t size> bool isOneOf(const int (&codes)[size], const QSqlError& error)
{
    const int primary = error.nativeErrorCode().toInt() % 256;
    return std::find(std::begin(codes), std::end(codes), primary) != std::end(codes);
}

/// What a broken rule of one column is about: the engine's words for a missing value, and those of the guards
/// above.
DatabaseError::Cause brokenRule(const QString& words)
{
    static const QRegularExpression missing(
        u"^(?:NOT NULL constraint failed: )?(\\w+)\\.(\\w+)( is required)?$"_s);
    static const QRegularExpression tooLong(
        u"^(?:CHECK constraint failed: )?(?:(\\w+)\\.)?(\\w+) holds at most \\d+ characters$"_s);
    if (const auto match = missing.match(words); match.hasMatch())
        return {DatabaseError::Reason::Required, match.captured(1), match.captured(2)};
    if (const auto match = tooLong.match(words); match.hasMatch())
        return {DatabaseError::Reason::TooLong, match.captured(1), match.captured(2)};
    return {};
}

/// Two sessions that begin a database at one moment would be refused at once: each has the file open and
/// waits for the other one, which the engine's own waiting does not resolve.
void useWriteAheadLog(Connection& connection)
{
    QElapsedTimer waited;
    waited.start();
    for (;;) {
        try {
            connection.execute(u"PRAGMA journal_mode = WAL"_s);
            return;
        } catch (const DatabaseError& error) {
            if (error.reason() != DatabaseError::Reason::Busy ||
                waited.elapsed() > Connection::connectionTimeoutSeconds * 1000)
                throw;
        }
        QThread::msleep(20);
    }
}

} // namespace

QString SqliteEngine::driver() const
{
    return u"QSQLITE"_s;
}

void SqliteEngine::configure(QSqlDatabase& database, const ConnectionString& string, OpenMode mode) const
{
    database.setDatabaseName(file(string));
    QString options = u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(Connection::connectionTimeoutSeconds * 1000);
    if (mode == OpenMode::ReadOnly)
        options += u";QSQLITE_OPEN_READONLY"_s;
    database.setConnectOptions(options);
}

void SqliteEngine::restrictSession(const QSqlDatabase&) const
{
    // The driver refuses a second statement, and there is no server.
}

void SqliteEngine::prepareSession(Connection& connection, OpenMode mode) const
{
    // The engine reads a file only when a statement needs it: this one finds out that it is no database.
    connection.execute(u"PRAGMA schema_version"_s);
    connection.execute(u"PRAGMA temp_store = MEMORY"_s);
    if (mode == OpenMode::ReadOnly)
        return;
    useWriteAheadLog(connection);
    connection.execute(u"PRAGMA synchronous = FULL"_s);
    connection.execute(u"PRAGMA foreign_keys = ON"_s);
}

void SqliteEngine::executePortable(Connection& connection, const QString& statement) const
{
    try {
        if (changeSqliteSchema(connection, statement))
            holdDeclaredTypes(connection);
        else if (statement.startsWith("CREATE TEMPORARY TABLE "_L1))
            connection.execute(withOwnGuards(statement));
        else
            connection.execute(QString(statement).replace("'$$' + "_L1, "'$$' || "_L1));
    } catch (const DatabaseError& error) {
        throw DatabaseError(statement, error.description(), error.cause());
    }
}

QString SqliteEngine::file(const ConnectionString& string) const
{
    return string.requiredFile(u"Data Source"_s);
}

bool SqliteEngine::isUnused(Connection& connection) const
{
    // First of all: one that is filled is left as it is, or another start that opens it just now would fail.
    if (!tables(connection).isEmpty())
        return false;
    connection.execute(u"PRAGMA busy_timeout = 0"_s);
    // Refused while anybody else has the file open, perhaps to fill it.
    connection.execute(u"PRAGMA journal_mode = DELETE"_s);
    return tables(connection).isEmpty();
}

void SqliteEngine::executeStep(Connection& connection, const QString& statement) const
{
    executePortable(connection, statement);
}

QString SqliteEngine::keepCopy(Connection& connection, const QString& name) const
{
    const QFileInfo database(
        connection.select(u"SELECT file FROM pragma_database_list WHERE name = 'main'"_s).text(0));
    const QString suffix = database.suffix().isEmpty() ? QString() : u'.' + database.suffix();
    const QString path = database.path() + u'/' + database.completeBaseName() + u'-' + name + suffix;
    // Under another name until it is whole: a copy that an earlier start has kept is not lost to a full disk.
    removeLeftovers(database.path());
    QFile unfinished(unfinishedName(path));
    auto remove = qScopeGuard([&unfinished] { unfinished.remove(); });
    if (!openNew(unfinished, database.filePath()))
        throw DatabaseError(path, unfinished.errorString());
    unfinished.close();
    connection.execute(u"VACUUM INTO ?"_s, {unfinished.fileName()});
    if (const QString reason = moveIntoPlace(unfinished.fileName(), path); !reason.isEmpty())
        throw DatabaseError(path, reason);
    remove.dismiss();
    return QDir::toNativeSeparators(path);
}

QString SqliteEngine::beginTransaction() const
{
    // Takes the write lock at once: a transaction that first reads and then writes could fail without
    // waiting.
    return u"BEGIN IMMEDIATE"_s;
}

bool SqliteEngine::schemaChangeEndsTransaction() const
{
    return false;
}

bool SqliteEngine::lockSchema(Connection&) const
{
    return true;
}

void SqliteEngine::unlockSchema(Connection&) const
{
    // The end of the transaction lets the others go on.
}

DatabaseError::Cause SqliteEngine::cause(const QSqlError& error) const
{
    const int code = error.nativeErrorCode().toInt();
    if (code == constraintPrimaryKey || code == constraintUnique)
        return DatabaseError::Reason::DuplicateKey;
    if (code == constraintForeignKey)
        return DatabaseError::Reason::ForeignKey; // the engine does not say which
    if (code % 256 == constraint)
        return brokenRule(error.databaseText());
    if (code % 256 == busy)
        return DatabaseError::Reason::Busy;
    return isOneOf(fatalCodes, error) ? DatabaseError::Reason::TransactionLost : DatabaseError::Reason::Other;
}

QString SqliteEngine::hint(const QSqlError& error, const QString& database) const
{
    if (!isOneOf(fileCodes, error))
        return {};
    for (const QString& name :
         {database, database + "-wal"_L1, database + "-shm"_L1, QFileInfo(database).path()})
        if (const QFileInfo part(name); part.exists() && !part.isWritable())
            return QDir::toNativeSeparators(name) + " can't be written"_L1;
    return QDir::toNativeSeparators(database);
}

QStringList SqliteEngine::tables(Connection& connection) const
{
    Cursor cursor = connection.cursor(u"SELECT name FROM sqlite_master WHERE type = 'table' AND "
                                      "substr(name, 1, 7) <> 'sqlite_' ORDER BY name"_s);
    QStringList names;
    while (cursor.next())
        names << cursor.text(0);
    return names;
}

QList<Column> SqliteEngine::columns(Connection& connection, const QString& table) const
{
    static const QRegularExpression sizedText(u"^n?(?:var)?char\\((\\d+)\\)$"_s,
                                              QRegularExpression::CaseInsensitiveOption);
    Cursor cursor = connection.cursor(
        u"SELECT name, type, pk, \"notnull\" FROM pragma_table_info(?) ORDER BY cid"_s, {table});
    QList<Column> columns;
    while (cursor.next()) {
        const QRegularExpressionMatch sized = sizedText.match(cursor.text(1));
        const int keyPosition = cursor.text(2).toInt();
        columns << Column{cursor.text(0),
                          sized.captured(1).toInt(),
                          keyPosition,
                          {},
                          keyPosition == 0 && cursor.text(3) == "0"_L1};
    }
    return columns;
}

QList<Reference> SqliteEngine::references(Connection& connection) const
{
    // A key that is not named is the primary key.
    return gathered(connection.select(
        u"SELECT M.name, F.seq, F.\"from\", F.\"table\", coalesce(F.\"to\", "
        "(SELECT name FROM pragma_table_info(F.\"table\") WHERE pk = F.seq + 1)) FROM sqlite_master M "
        "JOIN pragma_foreign_key_list(M.name) F WHERE M.type = 'table' ORDER BY M.name, F.id DESC, F.seq"_s));
}

void SqliteEngine::holdDeclaredTypes(Connection& connection) const
{
    for (const QString& table : tables(connection))
        guardTable(connection, table, columns(connection, table));
}

void SqliteEngine::releaseDeclaredTypes(Connection& connection, const QString& table) const
{
    for (const char* event : guardedEvents)
        connection.execute("DROP TRIGGER IF EXISTS "_L1 + guardName(QLatin1StringView(event), table));
}

void SqliteEngine::holdDeclaredTypesAgain(Connection& connection, const QString& table) const
{
    // Whoever names the table need not do so as it was created; the words of a refusal do.
    const Recordset names = connection.select(
        u"SELECT name FROM main.sqlite_master WHERE type = 'table' AND name = ? COLLATE NOCASE"_s, {table});
    if (!names.eof())
        guardTable(connection, names.text(0), columns(connection, names.text(0)));
}

qsizetype SqliteEngine::rowsTogether() const
{
    return 32;
}

} // namespace velmora
