// A connection to one database.
#pragma once

#include "database/engines/engine.h"
#include "database/recordset.h"

#include <QSet>

#include <functional>
#include <memory>
#include <unordered_map>

namespace velmora {

/// One open database. Every failing call throws DatabaseError. Not for use from several threads.
///
/// When a server has gone away, the statement that meets this fails with ConnectionLost, and so do the others
/// of its transaction; the next one after it connects anew.
class Connection {
public:
    /// How long opening, or waiting for another session's lock, may take.
    static constexpr int connectionTimeoutSeconds = 30;
    /// How long one statement may take on a server.
    static constexpr int commandTimeoutSeconds = 180;

    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Opens the database that `connectionString` names (see ConnectionString); a relative file name starts
    /// from `folder`, or, when that is empty, from the current directory. Read-only, the database must exist.
    /// What the error tells shows no password.
    void open(const QString& connectionString, OpenMode mode = OpenMode::ReadWrite,
              const QString& folder = {});
    void close();
    /// Closes. A database file that the open has made and that still holds nothing is removed.
    void closeUnused();

    /// Whether the session is lost; the next statement will connect anew.
    bool isLost() const { return m_lost; }

    /// Runs `preparation` now and whenever a lost session is replaced by a new one.
    void prepareSessions(std::function<void(Connection&)> preparation);

    /// Runs a statement, the values bound to its "?" in order. An empty text is never taken for NULL. Returns
    /// how many rows it inserted, found to update or deleted.
    int execute(const QString& statement, const QStringList& values = {});
    /// The same with values that have names, each ":" and letters: many are bound at a fraction of the cost.
    int executeNamed(const QString& statement, const QStringList& names, const QStringList& values);
    /// Runs a statement whose text is the same for all engines, in the words of this one.
    void executePortable(const QString& statement);
    /// Runs a statement of an upgrade step, in the words of this engine. Where it can't undo changes of the
    /// schema, a statement whose effect already stands, left by a step that was cut off, is passed over.
    void executeStep(const QString& statement);
    /// Runs a query and holds its whole result.
    Recordset select(const QString& statement, const QStringList& values = {});
    /// Runs a query whose rows are read one by one.
    Cursor cursor(const QString& statement, const QStringList& values = {});

    /// The names of all permanent tables.
    QStringList tables();
    /// The columns of `table` in table order; none when there is no such table.
    QList<Column> columns(const QString& table);
    /// The foreign keys of all permanent tables.
    QList<Reference> references();
    /// Keeps a copy of the whole database beside it, `name` added to its file name, and returns where; an
    /// empty text for an engine whose databases are no files. REQUIRES: no transaction.
    QString keepCopy(const QString& name);
    /// Makes the session refuse too long texts and missing keys in the tables that exist now.
    void holdDeclaredTypes();
    /// Ends that for one table, and begins it again: for those who write only what it would let pass. The
    /// name may differ in case.
    void releaseDeclaredTypes(const QString& table);
    void holdDeclaredTypes(const QString& table);
    /// How many rows one statement inserts best. A power of two.
    qsizetype rowsTogether() const;

private:
    friend class SchemaLock;
    friend class Transaction;

    void openSession();
    void reconnect(const QString& statement);
    [[noreturn]] void fail(const QString& statement, const QSqlError& error);
    QSqlQuery run(const QString& statement, const QStringList& values, const QStringList& names = {});
    QSqlQuery prepared(const QString& statement);
    void keep(const QString& statement, QSqlQuery query);

    QString m_name;
    std::unique_ptr<Engine> m_engine;
    QString m_connectionString;
    OpenMode m_mode = OpenMode::ReadWrite;
    QString m_folder;
    /// The database file, where the open has made it.
    QString m_newFile;
    std::function<void(Connection&)> m_preparation;
    bool m_lost = false;
    bool m_inTransaction = false;
    /// The tables, in lower case, whose declared types are not held.
    QSet<QString> m_released;
    /// Statements with values that are not running, by their text: they come again, and need no second
    /// preparing.
    std::unordered_map<QString, QSqlQuery> m_prepared;
};

} // namespace velmora
