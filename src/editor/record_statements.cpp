#include "editor/record_statements.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString equals(const QString& column, const QString& value)
{
    return column + " = '"_L1 + value + u'\'';
}

/// The record's key. Empty for a table without one: the statement then ends in its "WHERE", which no engine
/// takes, so that a record can't stand for the whole table.
QString keyCondition(const QList<RecordField>& fields)
{
    QStringList conditions;
    for (const RecordField& field : fields)
        if (field.key)
            conditions << equals(field.column, field.value());
    return conditions.join(" AND "_L1);
}

} // namespace

QString insertStatement(const QString& table, const QList<RecordField>& fields)
{
    QStringList values;
    for (const RecordField& field : fields)
        values << (field.dropDown ? field.value() : field.value().replace(u'\'', "''"_L1));
    return "INSERT INTO "_L1 + table + " VALUES('"_L1 + values.join("', '"_L1) + "' )"_L1;
}

QString updateStatement(const QString& table, const QList<RecordField>& fields, const QStringList& before)
{
    QStringList changes;
    for (qsizetype place = 0; place < fields.size(); ++place)
        if (fields[place].value() != before[place])
            changes << equals(fields[place].column, fields[place].value());
    if (changes.isEmpty())
        return {};
    return "UPDATE "_L1 + table + " SET "_L1 + changes.join(", "_L1) + " WHERE "_L1 + keyCondition(fields);
}

QString deleteStatement(const QString& table, const QList<RecordField>& fields)
{
    return "DELETE FROM "_L1 + table + " WHERE "_L1 + keyCondition(fields);
}

} // namespace velmora
