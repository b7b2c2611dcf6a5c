#include "editor/record/pick_list.h"

#include "common/MMain.h"
#include "common/list_entry.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The place at which the placeholder that begins at `start` ends.
qsizetype endOfPlaceholder(const QString& statement, qsizetype start)
{
    const auto end = std::find_if(statement.begin() + start, statement.end(),
                                  [](QChar c) { return c == u' ' || c == u')' || c == u'\''; });
    return end - statement.begin();
}

QString placeholderValue(const QString& statement, const QString& column, const QList<RecordField>& fields)
{
    const auto field = std::find_if(fields.begin(), fields.end(),
                                    [&column](const RecordField& one) { return one.column == column; });
    if (field == fields.end())
        throw DatabaseError(statement,
                            u"This pick list names &%1, which is no column of the table."_s.arg(column));
    return !field->pickList.isEmpty() ? u'\'' + field->value() + u'\'' : field->value();
}

} // namespace

QStringList pickListStatements(MMain& main, const TableDescription& table)
{
    QStringList statements;
    for (const TableColumn& column : table.columns)
        statements << main.setting("$$"_L1 + table.name, "L_"_L1 + column.name).value_or(QString());
    return statements;
}

QStringList placeholderColumns(const QString& statement)
{
    QStringList columns;
    for (qsizetype start = statement.indexOf(u'&'); start >= 0; start = statement.indexOf(u'&', start + 1))
        columns << statement.sliced(start + 1, endOfPlaceholder(statement, start) - start - 1);
    columns.removeDuplicates();
    return columns;
}

QString substitutePlaceholders(const QString& statement, const QList<RecordField>& fields)
{
    QString result;
    qsizetype copied = 0;
    for (qsizetype start = statement.indexOf(u'&'); start >= 0; start = statement.indexOf(u'&', copied)) {
        const qsizetype end = endOfPlaceholder(statement, start);
        result += statement.sliced(copied, start - copied);
        result += placeholderValue(statement, statement.sliced(start + 1, end - start - 1), fields);
        copied = end;
    }
    return result + statement.sliced(copied);
}

QStringList pickListEntries(MMain& main, const QString& statement)
{
    main.sqlText = statement;
    Cursor rows = main.connection.cursor(statement);
    QStringList entries;
    while (rows.next())
        entries << (rows.fieldCount() > 1 ? ListEntry{rows.text(0), rows.text(1)}.text() : rows.text(0));
    return entries;
}

} // namespace velmora
