// A table as a file of separated values.
#pragma once

#include "editor/table_access.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace velmora {

/// A table's rows as a file.
struct TableExport {
    QByteArray bytes;
    qsizetype rows = 0;
};

/// The names of the columns and, in the order of the key, every row that is open to the user: the system rows
/// with Access::Admin, all others with Access::True. `goOn` is asked now and then with the rows so far; false
/// ends it with nothing.
std::optional<TableExport> exportTable(MMain& main, const OpenTable& table, char separator,
                                       const std::function<bool(qsizetype rows)>& goOn);

} // namespace velmora
