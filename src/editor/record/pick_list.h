// Pick lists: the queries, kept as rows of the database, that fill the drop-downs of the editing panel.
#pragma once

#include "editor/record/record_field.h"
#include "editor/table_description.h"

namespace velmora {

class MMain;

/// The pick-list statement of each column of the table, in table order; an empty text for free text.
QStringList pickListStatements(MMain& main, const TableDescription& table);

/// The columns that the placeholders of a pick-list statement name.
QStringList placeholderColumns(const QString& statement);

/// Replaces the placeholders of a pick-list statement: "&" and a column name, ended by a blank, a ")", a "'"
/// or the end of the text. A free-text field gives its text as it stands, a drop-down its code between
/// quotes. Throws DatabaseError for a column that is not among the fields.
QString substitutePlaceholders(const QString& statement, const QList<RecordField>& fields);

/// The entries that a pick-list statement gives: the code alone, or code, " \\ ", description.
QStringList pickListEntries(MMain& main, const QString& statement);

} // namespace velmora
