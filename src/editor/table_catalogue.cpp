#include "editor/table_catalogue.h"

#include "common/MMain.h"
#include "common/texts/schema_captions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// A "*" row overrides the rows of single users.
std::optional<QString> tabRights(MMain& main)
{
    if (const auto everybody = main.setting(u"AUTHC"_s, u"*"_s))
        return everybody;
    return main.setting(u"AUTHC"_s, main.userName.toUpper());
}

QStringList tablesGrantedToUser(MMain& main)
{
    const auto rights = tabRights(main);
    QStringList numbers;
    QStringList tables;
    if (rights)
        for (Recordset rows = main.query(
                 u"SELECT * FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$TABS' ORDER BY SY_SUBCODE"_s);
             !rows.eof(); rows.moveNext()) {
            numbers << rows.text("SY_SUBCODE"_L1);
            tables << rows.text("SY_VALUE"_L1);
        }
    return grantedTables(rights.value_or(QString()), numbers, tables);
}

QStringList tablesOfUser(MMain& main)
{
    const QStringList granted = tablesGrantedToUser(main);
    return granted.isEmpty() ? QStringList(u"SYSTEM_PARAMETERS"_s) : granted;
}

} // namespace

QStringList grantedTables(const QString& rights, const QStringList& numbers, const QStringList& tables)
{
    QStringList granted;
    for (qsizetype row = 0; row < tables.size(); ++row) {
        const QString right = rights.mid(std::max(numbers[row].toInt(), 0) - 1, 1);
        if (rights == "*"_L1 || (numbers[row].toInt() > 0 && right.toUpper() == "Y"_L1))
            granted << tables[row];
    }
    return granted;
}

bool isGranted(MMain& main, const QString& table)
{
    return tablesGrantedToUser(main).contains(table);
}

QList<TableTab> tableTabs(MMain& main)
{
    QList<TableTab> tabs;
    for (const QString& table : tablesOfUser(main))
        tabs << TableTab{table, main.GetDescription("FPARAMETERS_"_L1 + table.toUpper())};
    return tabs;
}

TablePasswords passwordsOf(MMain& main, const QString& table)
{
    // The two rows differ in their code: the second password is itself a system row of the table.
    const QString second = main.setting("$$"_L1 + table, u"$$PWD2"_s).value_or(QString());
    return {main.setting(table, u"$$PWD"_s), second};
}

Access accessFor(const TablePasswords& passwords, const QString& entry)
{
    if (!passwords.first || entry == *passwords.first)
        return Access::True;
    return entry == passwords.second ? Access::Admin : Access::False;
}

TableDescription describeTable(MMain& main, const QString& table)
{
    const QList<Column> columns = main.connection.columns(table);
    if (columns.isEmpty())
        throw DatabaseError(table,
                            u"The database has no table %1, which a \"$$TABS\" row names."_s.arg(table));

    TableDescription description{table, {}, {}};
    const auto keyCount = std::count_if(columns.begin(), columns.end(),
                                        [](const Column& column) { return column.keyPosition > 0; });
    description.keys.resize(keyCount);
    for (const Column& column : columns) {
        const bool key = column.keyPosition > 0;
        if (key)
            description.keys[column.keyPosition - 1] = column.name;
        description.columns << TableColumn{column.name, columnCaption(main, column), key};
    }
    return description;
}

QStringList distinctValues(MMain& main, const QString& table, const QString& column)
{
    main.sqlText = "SELECT DISTINCT "_L1 + column + " FROM "_L1 + table;
    Cursor rows = main.connection.cursor(main.sqlText);
    QStringList values;
    while (rows.next())
        values << rows.text(0);
    values.sort();
    return values;
}

} // namespace velmora
