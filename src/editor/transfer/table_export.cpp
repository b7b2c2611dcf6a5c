#include "editor/transfer/table_export.h"

#include "common/MMain.h"
#include "editor/record_list.h"
#include "files/separated_values.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many rows are read before others may do something.
constexpr qsizetype rowsTogether = 1000;

} // namespace

std::optional<TableExport> exportTable(MMain& main, const OpenTable& table, char separator,
                                       const std::function<bool(qsizetype rows)>& goOn)
{
    TableExport exported;
    QStringList fields;
    for (const TableColumn& column : table.description.columns)
        fields << column.name;
    appendSeparatedRow(exported.bytes, fields, separator);
    main.sqlText = listStatement(table.description, {}, table.access);
    Cursor rows = main.connection.cursor(main.sqlText);
    for (; rows.next(); ++exported.rows) {
        if (exported.rows % rowsTogether == 0 && !goOn(exported.rows))
            return std::nullopt;
        for (int field = 0; field < fields.size(); ++field)
            fields[field] = rows.textOrNull(field);
        appendSeparatedRow(exported.bytes, fields, separator);
    }
    return exported;
}

} // namespace velmora
