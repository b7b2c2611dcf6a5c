// The statement that lists the records of a table.
#pragma once

#include "editor/table_access.h"

#include <optional>

namespace velmora {

/// What a filter drop-down of a key column shows.
struct KeyFilter {
    QString column;
    /// 0 is "All"; -1, no entry chosen, filters by the text.
    int index = 0;
    QString text;
};

/// The statement that lists the records, in key order: those whose first key begins with "$$" for
/// Access::Admin, the others for everybody else. A filter's text stands in it as it is: one with a "'" makes
/// the statement fail, or list other records than those that were asked for.
QString listStatement(const TableDescription& table, const QList<KeyFilter>& filters, Access access);

/// The first filter whose text would do that, if there is one.
std::optional<KeyFilter> brokenFilter(const QList<KeyFilter>& filters);

/// Whether the list of those with this access has a record with these values, in table order.
bool listsRecord(const TableDescription& table, const QStringList& record, Access access);

} // namespace velmora
