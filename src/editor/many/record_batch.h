// Writing many records together.
#pragma once

#include "editor/record/record_form.h"

#include <vector>

namespace velmora {

class MMain;

/// What came of writing many records.
struct RecordBatch {
    /// For each record why it was refused; an empty text where it was not.
    QStringList refusals;
    /// Whether they were written: all or none.
    bool written = false;
};

/// Writes each record by a statement of its own, as the editing panel writes it alone. All are one
/// transaction, which is kept only when none was refused: nothing waits, half done, for an answer. Throws
/// DatabaseError when connection or transaction are lost, or another program holds the database.
RecordBatch writeRecords(MMain& main, const std::vector<RecordForm>& records);

/// The deletion of a record with those values, for writeRecords().
RecordForm deletionOf(const TableDescription& table, const QStringList& record);

/// The change of one column of such a record, for writeRecords().
RecordForm changeOf(const TableDescription& table, const QStringList& record, qsizetype column,
                    const QString& value);

/// The records as lines with tabs between the values, the names of the columns above them: what a spreadsheet
/// takes, and the import.
QString tabbedText(const TableDescription& table, const QList<QStringList>& records);

} // namespace velmora
