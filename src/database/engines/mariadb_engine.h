// The server engine.
#pragma once

#include "database/engines/engine.h"

namespace velmora {

/// A MariaDB server: `Data Source` is its host, `Port` its port (3306 where it is missing), `Initial Catalog`
/// the database, `User ID` and `Password` the account. Strict mode, a backslash is an ordinary character,
/// utf8mb4 with binary comparison in which blanks at the end count, as in the embedded engine.
class MariaDbEngine final : public Engine {
public:
    QString driver() const override;
    void configure(QSqlDatabase& database, const ConnectionString& string, OpenMode mode) const override;
    void restrictSession(const QSqlDatabase& database) const override;
    void prepareSession(Connection& connection, OpenMode mode) const override;
    void executePortable(Connection& connection, const QString& statement) const override;
    void executeStep(Connection& connection, const QString& statement) const override;
    QString keepCopy(Connection& connection, const QString& name) const override;
    QString beginTransaction() const override;
    bool schemaChangeEndsTransaction() const override;
    bool lockSchema(Connection& connection) const override;
    void unlockSchema(Connection& connection) const override;
    DatabaseError::Cause cause(const QSqlError& error) const override;
    QStringList tables(Connection& connection) const override;
    QList<Column> columns(Connection& connection, const QString& table) const override;
    QList<Reference> references(Connection& connection) const override;
    void holdDeclaredTypes(Connection& connection) const override;
    qsizetype rowsTogether() const override;
};

} // namespace velmora
