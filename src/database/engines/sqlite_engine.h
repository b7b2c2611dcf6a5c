// The embedded engine.
#pragma once

#include "database/engines/engine.h"

namespace velmora {

/// SQLite in one file: `Data Source` names it. Foreign keys on, write-ahead log, full durability.
/// Widths and required keys are held by temporary triggers, so that the stored schema stays exactly the
/// creation statements (https://www.sqlite.org/lang_createtrigger.html#temp_triggers_on_non_temp_tables).
class SqliteEngine final : public Engine {
public:
    QString driver() const override;
    void configure(QSqlDatabase& database, const ConnectionString& string, OpenMode mode) const override;
    void restrictSession(const QSqlDatabase& database) const override;
    void prepareSession(Connection& connection, OpenMode mode) const override;
    void executePortable(Connection& connection, const QString& statement) const override;
    QString file(const ConnectionString& string) const override;
    bool isUnused(Connection& connection) const override;
    void executeStep(Connection& connection, const QString& statement) const override;
    QString keepCopy(Connection& connection, const QString& name) const override;
    QString beginTransaction() const override;
    bool schemaChangeEndsTransaction() const override;
    bool lockSchema(Connection& connection) const override;
    void unlockSchema(Connection& connection) const override;
    DatabaseError::Cause cause(const QSqlError& error) const override;
    QString hint(const QSqlError& error, const QString& database) const override;
    QStringList tables(Connection& connection) const override;
    QList<Column> columns(Connection& connection, const QString& table) const override;
    QList<Reference> references(Connection& connection) const override;
    void holdDeclaredTypes(Connection& connection) const override;
    void releaseDeclaredTypes(Connection& connection, const QString& table) const override;
    void holdDeclaredTypesAgain(Connection& connection, const QString& table) const override;
    qsizetype rowsTogether() const override;
};

} // namespace velmora
