#include "editor/record_list.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString whereClause(const QStringList& keys, const QList<KeyFilter>& filters, Access access)
{
    if (keys.isEmpty())
        return {};
    QStringList conditions(keys.first() +
                           (access == Access::Admin ? " LIKE '$$%'"_L1 : " NOT LIKE '$$%'"_L1));
    for (const KeyFilter& filter : filters)
        if (filter.index != 0)
            conditions << filter.column + " = '"_L1 + filter.text + u'\'';
    return " WHERE "_L1 + conditions.join(" AND "_L1);
}

} // namespace

QString listStatement(const TableDescription& table, const QList<KeyFilter>& filters, Access access)
{
    QStringList names;
    for (const TableColumn& column : table.columns)
        names << column.name;
    const QString order = table.keys.isEmpty() ? QString() : " ORDER BY "_L1 + table.keys.join(", "_L1);
    return "SELECT "_L1 + names.join(", "_L1) + " FROM "_L1 + table.name +
           whereClause(table.keys, filters, access) + order;
}

std::optional<KeyFilter> brokenFilter(const QList<KeyFilter>& filters)
{
    const auto broken = std::find_if(filters.begin(), filters.end(), [](const KeyFilter& filter) {
        return filter.index != 0 && filter.text.contains(u'\'');
    });
    return broken == filters.end() ? std::nullopt : std::optional(*broken);
}

bool listsRecord(const TableDescription& table, const QStringList& record, Access access)
{
    for (qsizetype column = 0; column < table.columns.size(); ++column)
        if (table.columns[column].name == table.keys.value(0))
            return record[column].startsWith("$$"_L1) == (access == Access::Admin);
    return true;
}

} // namespace velmora
