#include "database/recordset.h"

#include "database/database_error.h"

#include <QSqlDriver>
#include <QSqlError>
#include <QSqlRecord>

using namespace Qt::StringLiterals;

namespace velmora {

Cursor::Cursor(QSqlQuery query) : m_query(std::move(query))
{
    const QSqlRecord record = m_query.record();
    for (int field = 0; field < record.count(); ++field)
        m_names << record.fieldName(field);
}

bool Cursor::next()
{
    if (m_query.next())
        return true;
    // A query whose session has been given up ends without an error.
    if (!m_query.driver() || !m_query.driver()->isOpen())
        throw DatabaseError(m_query.lastQuery(), u"The connection was lost."_s,
                            DatabaseError::Reason::ConnectionLost);
    if (m_query.lastError().isValid())
        throw DatabaseError(m_query.lastQuery(), m_query.lastError().databaseText());
    return false;
}

QString Cursor::textOrNull(int field) const
{
    if (isNull(field))
        return {};
    const QString value = text(field);
    return value.isNull() ? u""_s : value;
}

Recordset::Recordset(Cursor& cursor) : m_fieldCount(cursor.fieldCount()), m_names(cursor.fieldNames())
{
    while (cursor.next())
        for (int field = 0; field < m_fieldCount; ++field)
            m_values << cursor.textOrNull(field);
}

QString Recordset::text(int field) const
{
    Q_ASSERT(!eof() && field < m_fieldCount);
    return m_values[m_row * m_fieldCount + field];
}

QString Recordset::text(QLatin1StringView column) const
{
    const qsizetype field = m_names.indexOf(column);
    if (field < 0)
        throw DatabaseError(QString(), u"The result holds no column %1."_s.arg(column));
    return text(static_cast<int>(field));
}

bool Recordset::isNull(int field) const
{
    return text(field).isNull();
}

} // namespace velmora
