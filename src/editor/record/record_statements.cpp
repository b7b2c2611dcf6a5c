#include "editor/record/record_statements.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString equals(const QString& column, const QString& value)
{
    return column + " = '"_L1 + value + u'\'';
}

/// The record's key. Empty for a table without one: the statement then ends in its "WHERE", which no engine
/// takes, so that a record can't stand for the whole table.
QString keyCondition(const RecordForm& form)
{
    QStringList conditions;
    for (const RecordField& field : form.fields())
        if (field.key)
            conditions << equals(field.column, field.value());
    return conditions.join(" AND "_L1);
}

QString insertStatement(const RecordForm& form)
{
    QStringList values;
    for (const RecordField& field : form.fields())
        values << (field.dropDown ? field.value() : field.value().replace(u'\'', "''"_L1));
    return "INSERT INTO "_L1 + form.table() + " VALUES('"_L1 + values.join("', '"_L1) + "' )"_L1;
}

QString updateStatement(const RecordForm& form)
{
    QStringList changes;
    for (qsizetype place = 0; place < form.fields().size(); ++place)
        if (form.changed(place))
            changes << equals(form.fields()[place].column, form.fields()[place].value());
    if (changes.isEmpty())
        return {};
    return "UPDATE "_L1 + form.table() + " SET "_L1 + changes.join(", "_L1) + " WHERE "_L1 +
           keyCondition(form);
}

} // namespace

QString recordStatement(const RecordForm& form)
{
    switch (form.mode()) {
    case RecordMode::Insert:
        return insertStatement(form);
    case RecordMode::Update:
        return updateStatement(form);
    case RecordMode::Delete:
        return "DELETE FROM "_L1 + form.table() + " WHERE "_L1 + keyCondition(form);
    }
    return {};
}

} // namespace velmora
