#include "editor/table_catalogue.h"

#include "common/MMain.h"

#include <algorithm>
#include <optional>

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

} // namespace velmora
