#include "database/engines/sqlite_schema_change.h"

#include "database/connection.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString shapeOf(Connection& connection, const QString& table)
{
    const Recordset rows =
        connection.select(u"SELECT sql FROM sqlite_master WHERE type = 'table' AND name = ?"_s, {table});
    if (rows.eof())
        throw DatabaseError({}, u"no such table: "_s + table);
    return rows.text(0);
}

QString countRows(Connection& connection, const QString& table)
{
    return connection.select("SELECT count(*) FROM "_L1 + table).text(0);
}

/// The foreign key of that name in a table's shape, with the comma before it.
QRegularExpression foreignKey(const QString& name)
{
    return QRegularExpression(
        "\\s*,\\s*CONSTRAINT\\s+\"?"_L1 + QRegularExpression::escape(name) +
            "\"?\\s+FOREIGN\\s+KEY\\s*\\([^)]*\\)\\s*REFERENCES\\s+\"?\\w+\"?\\s*\\([^)]*\\)"
            "(\\s*ON\\s+(UPDATE|DELETE)\\s+(CASCADE|RESTRICT|NO\\s+ACTION|SET\\s+(NULL|DEFAULT)))*"_L1,
        QRegularExpression::CaseInsensitiveOption);
}

void checkReferences(Connection& connection, const QString& table)
{
    const Recordset broken = connection.select("PRAGMA foreign_key_check("_L1 + table + u')');
    if (!broken.eof())
        throw DatabaseError({}, u"%1 rows of %2 refer to rows of %3 that do not exist"_s.arg(
                                    QString::number(broken.recordCount()), table, broken.text(2)));
}

/// Puts a table of the shape `shape`, filled with the same rows, in the place of `table`.
void rebuild(Connection& connection, const QString& table, QString shape)
{
    const QString successor = table + "_NEW"_L1;
    static const QRegularExpression heading(u"^CREATE\\s+TABLE\\s+(\"[^\"]*\"|\\w+)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QString rows = countRows(connection, table);
    Recordset companions = connection.select(
        u"SELECT sql FROM sqlite_master WHERE tbl_name = ? AND type <> 'table' AND sql IS NOT NULL"_s,
        {table});

    connection.execute(shape.replace(heading, "CREATE TABLE "_L1 + successor));
    connection.execute("INSERT INTO "_L1 + successor + " SELECT * FROM "_L1 + table);
    connection.execute("DROP TABLE "_L1 + table);
    connection.execute("ALTER TABLE "_L1 + successor + " RENAME TO "_L1 + table);
    for (; !companions.eof(); companions.moveNext())
        connection.execute(companions.text(0));

    checkReferences(connection, table);
    if (countRows(connection, table) != rows)
        throw DatabaseError({}, u"rows of %1 were lost"_s.arg(table));
}

void dropForeignKey(Connection& connection, const QString& table, const QString& name)
{
    const QString shape = shapeOf(connection, table);
    QString without = shape;
    if (without.remove(foreignKey(name)) == shape)
        throw DatabaseError({}, u"%1 has no foreign key %2"_s.arg(table, name));
    rebuild(connection, table, without);
}

void addForeignKey(Connection& connection, const QString& table, const QString& constraint)
{
    const QString shape = shapeOf(connection, table);
    const qsizetype end = shape.lastIndexOf(u')');
    rebuild(connection, table, shape.first(end) + ", "_L1 + constraint.trimmed() + shape.sliced(end));
}

} // namespace

bool changeSqliteSchema(Connection& connection, const QString& statement)
{
    static const QRegularExpression alteration(
        u"^ALTER TABLE (?<table>\\w+) (?:DROP CONSTRAINT (?<dropped>\\w+)|ADD (?<constraint>CONSTRAINT .*)|"
        "ADD (?<columns>.*))\\s*$"_s);
    const QRegularExpressionMatch match = alteration.match(statement);
    if (!match.hasMatch())
        return false;
    const QString table = match.captured("table"_L1);
    if (match.hasCaptured("dropped"_L1))
        dropForeignKey(connection, table, match.captured("dropped"_L1));
    else if (match.hasCaptured("constraint"_L1))
        addForeignKey(connection, table, match.captured("constraint"_L1));
    else
        for (const QString& column : match.captured("columns"_L1).split(", "_L1))
            connection.execute("ALTER TABLE "_L1 + table + " ADD "_L1 + column);
    return true;
}

} // namespace velmora
