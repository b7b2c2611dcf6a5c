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
        /// A reference: to a record that does not exist, or to one that was to be deleted.
        ForeignKey,
        TooLong,
        Required,
        /// Somebody else held the lock for too long.
        Busy,
        /// The statements before it in the same transaction are undone as well.
        TransactionLost,
        ConnectionLost,
        Other,
    };

    /// The reason, and what it is about as far as the engine tells: the table (of a reference, the one that
    /// holds it) and the column, or the columns apart by ", ".
    struct Cause {
        // Not explicit: a reason alone is a cause.
        Cause(Reason given = Reason::Other, QString ofTable = {}, QString ofColumn = {})
            : reason(given), table(std::move(ofTable)), column(std::move(ofColumn))
        {
        }

        Reason reason;
        QString table;
        QString column;
    };

    DatabaseError(QString statement, QString description, Cause cause = {})
        : std::runtime_error((description + QLatin1String("\n") + statement).toStdString()),
          m_statement(std::move(statement)),
          m_description(std::move(description)),
          m_cause(std::move(cause))
    {
    }

    /// The SQL text that failed; for a failed open, the connection string.
    const QString& statement() const { return m_statement; }
    /// The engine's own words.
    const QString& description() const { return m_description; }
    Reason reason() const { return m_cause.reason; }
    const Cause& cause() const { return m_cause; }
    /// Whether the statements before it in the same transaction are undone, or can't be made lasting any
    /// more.
    bool endsTransaction() const
    {
        return reason() == Reason::TransactionLost || reason() == Reason::ConnectionLost;
    }
    /// Whether it is no matter of the one statement: those that follow would fail like it, or be lost.
    bool endsAll() const
    {
        return reason() == Reason::ConnectionLost || reason() == Reason::TransactionLost ||
               reason() == Reason::Busy;
    }

private:
    QString m_statement;
    QString m_description;
    Cause m_cause;
};

} // namespace velmora
