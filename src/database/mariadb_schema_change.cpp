#include "database/mariadb_schema_change.h"

#include "database/connection.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool hasForeignKey(Connection& connection, const QString& table, const QString& name)
{
    return !connection
                .select(u"SELECT 1 FROM information_schema.TABLE_CONSTRAINTS WHERE CONSTRAINT_SCHEMA = "
                        u"DATABASE() "
                        "AND TABLE_NAME = ? AND CONSTRAINT_NAME = ? AND CONSTRAINT_TYPE = 'FOREIGN KEY'"_s,
                        {table, name})
                .eof();
}

QStringList columnNames(Connection& connection, const QString& table)
{
    QStringList names;
    for (const Column& column : connection.columns(table))
        names << column.name;
    return names;
}

/// One statement adds its columns together, so that all of them are there or none is.
bool hasColumns(Connection& connection, const QString& table, const QString& declarations)
{
    const QStringList present = columnNames(connection, table);
    const QStringList added = declarations.split(u", "_s);
    return std::all_of(added.begin(), added.end(), [&present](const QString& declaration) {
        return present.contains(declaration.section(u' ', 0, 0));
    });
}

bool hasRow(Connection& connection, const QString& table, const QString& literals)
{
    static const QRegularExpression literal(u"'((?:[^']|'')*)'"_s);
    QStringList values;
    for (QRegularExpressionMatchIterator found = literal.globalMatch(literals); found.hasNext();)
        values << found.next().captured(1).replace("''"_L1, "'"_L1);
    const QStringList columns = columnNames(connection, table);
    if (columns.isEmpty() || columns.size() != values.size())
        return false;
    return !connection
                .select("SELECT 1 FROM "_L1 + table + " WHERE "_L1 + columns.join(" = ? AND "_L1) + " = ?"_L1,
                        values)
                .eof();
}

} // namespace

bool standsAlready(Connection& connection, const QString& statement)
{
    static const QRegularExpression change(
        u"^(?:ALTER TABLE (?<altered>\\w+) (?:DROP CONSTRAINT (?<dropped>\\w+)|ADD CONSTRAINT (?<key>\\w+) "
        u".*|"
        "ADD (?<columns>.*))|INSERT INTO (?<table>\\w+) VALUES\\((?<row>.*)\\))\\s*$"_s);
    const QRegularExpressionMatch match = change.match(statement);
    const QString altered = match.captured("altered"_L1);
    if (match.hasCaptured("dropped"_L1))
        return !hasForeignKey(connection, altered, match.captured("dropped"_L1));
    if (match.hasCaptured("key"_L1))
        return hasForeignKey(connection, altered, match.captured("key"_L1));
    if (match.hasCaptured("columns"_L1))
        return hasColumns(connection, altered, match.captured("columns"_L1));
    return match.hasCaptured("row"_L1) &&
           hasRow(connection, match.captured("table"_L1), match.captured("row"_L1));
}

} // namespace velmora
