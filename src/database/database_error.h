// The one way in which the database layer fails.
#pragma once

#include <QString>

#include <stdexcept>

namespace velmora {

/// A statement, or the opening of a database, that the engine refused.
class DatabaseError : public std::runtime_error {
public:
    /// Why the engine refused, as far as callers act on it.
    enum class Reason {
        DuplicateKey,
        /// The statements before it in the same transaction are undone as well.
        TransactionLost,
        ConnectionLost,
        Other,
    };

    DatabaseError(QString statement, QString description, Reason reason = Reason::Other)
        : std::runtime_error((description + QLatin1String("\n") + statement).toStdString()),
          m_statement(std::move(statement)),
          m_description(std::move(description)),
          m_reason(reason)
    {
    }

    /// The SQL text that failed; for a failed open, the connection string.
    const QString& statement() const { return m_statement; }
    /// The engine's own words.
    const QString& description() const { return m_description; }
    Reason reason() const { return m_reason; }

private:
    QString m_statement;
    QString m_description;
    Reason m_reason;
};

} // namespace velmora
