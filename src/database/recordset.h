// Reading query results: row by row (Cursor) or held whole in memory (Recordset).
#pragma once

#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVector>

namespace velmora {

/// A forward-only result, for reading many rows without holding them. Movable, not copyable.
class Cursor {
public:
    explicit Cursor(QSqlQuery query);

    /// Moves to the next row (the first call, to the first). Throws DatabaseError when reading fails.
    bool next();

    int fieldCount() const { return static_cast<int>(m_names.size()); }
    const QStringList& fieldNames() const { return m_names; }

    /// The field as text; a NULL value gives an empty text.
    QString text(int field) const { return m_query.value(field).toString(); }
    bool isNull(int field) const { return m_query.isNull(field); }
    /// The field as text, null only for a NULL value.
    QString textOrNull(int field) const;

    /// Gives the query away; the cursor can't be used any more.
    QSqlQuery takeQuery() { return std::move(m_query); }

private:
    QSqlQuery m_query;
    QStringList m_names;
};

/// A result held whole on the client, with a current row. A copy shares its rows with the original.
class Recordset {
public:
    Recordset() = default;
    /// Reads every row that `cursor` has left. The current row is the first one.
    explicit Recordset(Cursor& cursor);
    /// One column with one row.
    Recordset(const QString& column, const QString& value)
        : m_fieldCount(1), m_names(column), m_values({value})
    {
    }

    bool eof() const { return m_row >= recordCount(); }
    void moveNext() { ++m_row; }
    qsizetype recordCount() const { return m_fieldCount == 0 ? 0 : m_values.size() / m_fieldCount; }
    /// The 1-based position of the current row.
    qsizetype absolutePosition() const { return m_row + 1; }

    /// A field of the current row as text; a NULL value gives an empty text.
    /// REQUIRES: !eof() and a column of that name or number.
    QString text(int field) const;
    QString text(QLatin1StringView column) const;
    bool isNull(int field) const;

private:
    qsizetype m_row = 0;
    qsizetype m_fieldCount = 0;
    QStringList m_names;
    /// All rows one after the other; a null QString stands for NULL.
    QVector<QString> m_values;
};

} // namespace velmora
