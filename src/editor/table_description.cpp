#include "editor/table_description.h"

#include "common/MMain.h"
#include "common/texts/schema_captions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

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
        description.columns << TableColumn{column.name, columnCaption(main, column), key, column.width,
                                           column.mayBeNull};
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
