// What differs between database engines, in one place each.
#pragma once

#include "database/connection_string.h"
#include "database/database_error.h"

#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>

#include <memory>

namespace velmora {

class Connection;
class Recordset;

/// Whether a connection may write. An earlier database is only read, and must exist.
enum class OpenMode { ReadWrite, ReadOnly };

/// A column as the schema declares it.
struct Column {
    QString name;
    /// The declared number of characters; 0 when the type names none.
    int width = 0;
    /// The 1-based place in the primary key; 0 for a column outside it.
    int keyPosition = 0;
    /// What the schema says about the column; empty where the engine keeps no such texts.
    QString description;
    /// Whether a row may lack a value here.
    bool mayBeNull = false;
};

/// A foreign key: `columns` of `table` must be found in `keys` of `target`.
struct Reference {
    QString table;
    QStringList columns;
    QString target;
    QStringList keys;
};

/// The differences between one engine and the others. Stateless.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    virtual ~Engine() = default;

    /// How long lockSchema() waits: long enough for a server to clear up after a session that was killed.
    static constexpr int schemaLockSeconds = 5;

    /// The name of the Qt SQL driver.
    virtual QString driver() const = 0;
    /// Fills `database` from the connection string. Throws DatabaseError naming a missing key.
    virtual void configure(QSqlDatabase& database, const ConnectionString& string, OpenMode mode) const = 0;
    /// Holds an opened session to one statement a call, and to reading no file of this computer for the
    /// server. Throws DatabaseError where that can't be done.
    virtual void restrictSession(const QSqlDatabase& database) const = 0;
    /// Prepares an opened session; a statement that fails here counts as a failed open.
    virtual void prepareSession(Connection& connection, OpenMode mode) const = 0;
    /// Runs a statement whose text is the same for all engines, in the words of this one.
    virtual void executePortable(Connection& connection, const QString& statement) const = 0;
    /// The file that holds the database; an empty text for an engine whose databases are no files.
    virtual QString file(const ConnectionString& string) const;
    /// Whether the database holds no table and nobody else has it open.
    virtual bool isUnused(Connection& connection) const;
    /// Runs a statement of an upgrade step. Where the engine can't undo changes of the schema, one whose
    /// effect already stands, left by a step that was cut off, is passed over.
    virtual void executeStep(Connection& connection, const QString& statement) const = 0;
    /// Keeps a copy of the whole database beside it, `name` added to its file name, and returns where; an
    /// empty text for an engine whose databases are no files. REQUIRES: no transaction.
    virtual QString keepCopy(Connection& connection, const QString& name) const = 0;
    /// The statement that begins a transaction which is going to write.
    virtual QString beginTransaction() const = 0;
    /// Whether a change of the schema makes everything before it in its transaction lasting, and ends it.
    virtual bool schemaChangeEndsTransaction() const = 0;
    /// Has the other sessions that call this wait. False where another one has not let go within
    /// Engine::schemaLockSeconds. An engine whose transactions hold off all others needs no such lock.
    virtual bool lockSchema(Connection& connection) const = 0;
    virtual void unlockSchema(Connection& connection) const = 0;
    /// Why the engine refused a statement.
    virtual DatabaseError::Cause cause(const QSqlError& error) const = 0;
    /// Which part of `database` the error is about, where the engine's words don't tell; else an empty text.
    virtual QString hint(const QSqlError& error, const QString& database) const;
    /// The names of all permanent tables.
    virtual QStringList tables(Connection& connection) const = 0;
    /// The columns of `table` in table order; none when there is no such table.
    virtual QList<Column> columns(Connection& connection, const QString& table) const = 0;
    /// The foreign keys of all permanent tables.
    virtual QList<Reference> references(Connection& connection) const = 0;
    /// Makes the session refuse texts longer than declared and missing key values in the permanent tables,
    /// where the engine does not do so by itself.
    virtual void holdDeclaredTypes(Connection& connection) const = 0;
    /// Ends that for one table, and begins it again: for those who write only what it would let pass.
    virtual void releaseDeclaredTypes(Connection& connection, const QString& table) const;
    virtual void holdDeclaredTypesAgain(Connection& connection, const QString& table) const;
    /// How many rows one statement inserts best. A power of two.
    virtual qsizetype rowsTogether() const = 0;

protected:
    /// The foreign keys from rows with table, place in the key from 0 on, column, target and its column.
    static QList<Reference> gathered(Recordset rows);
};

/// The engine that `Provider` names. Throws DatabaseError when it is missing or unknown.
std::unique_ptr<Engine> engineFor(const ConnectionString& string);

} // namespace velmora
