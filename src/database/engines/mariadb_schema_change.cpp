#include "database/engines/mariadb_schema_change.h"

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

/// Throws DatabaseError where rows of `table` refer to none of `parent`.
void checkReferences(Connection& connection, const QString& table, const QStringList& columns,
                     const QString& parent, const QStringList& parentColumns)
{
    QStringList required;
    QStringList equal;
    for (qsizetype column = 0; column < columns.size(); ++column) {
        const QString own = table + u'.' + columns[column];
        required << own + " IS NOT NULL"_L1;
        equal << parent + u'.' + parentColumns.value(column) + " = "_L1 + own;
    }
    const QString broken = connection
                               .select("SELECT COUNT(*) FROM "_L1 + table + " WHERE "_L1 +
                                       required.join(" AND "_L1) + " AND NOT EXISTS (SELECT 1 FROM "_L1 +
                                       parent + " WHERE "_L1 + equal.join(" AND "_L1) + u')')
                               .text(0);
    if (broken != "0"_L1)
        throw DatabaseError(
            {}, u"%1 rows of %2 refer to rows of %3 that do not exist"_s.arg(broken, table, parent));
}

/// The server adds a foreign key in place only where it need not check the rows itself.
void addForeignKey(Connection& connection, const QString& statement, const QRegularExpressionMatch& match)
{
    static const QString separator = u", "_s;
    checkReferences(connection, match.captured("altered"_L1), match.captured("own"_L1).split(separator),
                    match.captured("parent"_L1), match.captured("others"_L1).split(separator));
    connection.execute(u"SET SESSION foreign_key_checks = 0"_s);
    try {
        connection.executePortable(statement);
    } catch (const DatabaseError&) {
        if (!connection.isLost())
            connection.execute(u"SET SESSION foreign_key_checks = 1"_s);
        throw;
    }
    connection.execute(u"SET SESSION foreign_key_checks = 1"_s);
}

} // namespace

bool changeMariaDbSchema(Connection& connection, const QString& statement)
{
    static const QRegularExpression change(
        u"^(?:ALTER TABLE (?<altered>\\w+) (?:DROP CONSTRAINT (?<dropped>\\w+)|"
        "ADD CONSTRAINT (?<key>\\w+) FOREIGN KEY \\((?<own>[^)]*)\\) REFERENCES "
        "(?<parent>\\w+)\\((?<others>[^)]*)\\).*|"
        "ADD (?<columns>.*))|INSERT INTO (?<table>\\w+) VALUES\\((?<row>.*)\\))\\s*$"_s);
    const QRegularExpressionMatch match = change.match(statement);
    const QString altered = match.captured("altered"_L1);
    if (match.hasCaptured("dropped"_L1))
        return !hasForeignKey(connection, altered, match.captured("dropped"_L1));
    if (match.hasCaptured("key"_L1)) {
        if (!hasForeignKey(connection, altered, match.captured("key"_L1)))
            addForeignKey(connection, statement, match);
        return true;
    }
    if (match.hasCaptured("columns"_L1))
        return hasColumns(connection, altered, match.captured("columns"_L1));
    return match.hasCaptured("row"_L1) &&
           hasRow(connection, match.captured("table"_L1), match.captured("row"_L1));
}

} // namespace velmora
