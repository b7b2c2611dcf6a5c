#include "editor/panel/record_opening.h"

#include "common/MMain.h"
#include "editor/record/pick_list.h"
#include "windows/failure_report.h"

namespace velmora {

namespace {

RecordForm::Fill pickLists(MMain& main)
{
    return
        [&main, failed = QStringList()](const QString& statement, const QList<RecordField>& fields) mutable {
            try {
                return pickListEntries(main, substitutePlaceholders(statement, fields));
            } catch (const DatabaseError& error) {
                if (!failed.contains(statement) || error.reason() == DatabaseError::Reason::ConnectionLost)
                    reportFailures(main, [] { throw; });
                failed << statement;
                return QStringList();
            }
        };
}

} // namespace

RecordForm openRecord(MMain& main, RecordMode mode, const TableDescription& table, const QStringList& values)
{
    return RecordForm(mode, table, pickListStatements(main, table), values, pickLists(main));
}

} // namespace velmora
