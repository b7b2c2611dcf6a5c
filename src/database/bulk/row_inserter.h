// Many rows into one table.
#pragma once

#include "database/database_error.h"
#include "database/engines/engine.h"

#include <QStringList>

namespace velmora {

class Connection;

/// The statement that inserts a row of texts, up to what would be its next value; and as it ends after these
/// values. Without any it is none that a database would take.
QString insertBeginning(const QString& table, const QStringList& values);
QString insertStatement(const QString& table, const QStringList& values);

/// Inserts rows of texts with the effect of insertStatement() for each, in their order, at a fraction of the
/// cost: many rows in a statement that is prepared once, and without the session's guards of widths and keys,
/// where the values are seen to keep to them. A row whose values are not is given to the database as its
/// statement, and from then on the guards stay.
///
/// REQUIRES: one transaction for its whole life, in which nobody else writes to the table; a table that does
/// not refer to itself.
class RowInserter {
public:
    /// A row that the database refused; the error has its statement.
    struct Refusal {
        qsizetype row;
        DatabaseError error;
    };

    RowInserter(Connection& connection, QString table);
    /// Sets the guards again.
    ~RowInserter();
    RowInserter(const RowInserter&) = delete;
    RowInserter& operator=(const RowInserter&) = delete;

    /// How many values a row has; 0 where there is no such table.
    qsizetype columnCount() const { return m_columns.size(); }
    /// Inserts the rows, each with a value for every column, and returns the refused ones. What ends the
    /// transaction is thrown.
    QList<Refusal> insert(const QList<QStringList>& rows);
    /// Whether the values keep to the declared widths, and stand for the same bound as within quotes.
    bool fits(const QStringList& values) const;
    /// Takes the guards away already, for other statements that write only what fits.
    void release();
    /// Sets the guards again, for good: for what is not known to fit.
    void guard();

private:
    void bindWhatIsNotEmpty(const QList<QStringList>& rows);
    void insertFitting(const QList<QStringList>& rows, qsizetype first, qsizetype count);
    const QString& statementFor(qsizetype rows);

    Connection& m_connection;
    const QString m_table;
    const QList<Column> m_columns;
    /// Whether a row has been met that does not fit.
    bool m_guarded = false;
    /// The columns whose values are bound, the names of these, and the statements for 1, 2, 4 and so on rows.
    QList<qsizetype> m_bound;
    QStringList m_names;
    QStringList m_statements;
};

} // namespace velmora
