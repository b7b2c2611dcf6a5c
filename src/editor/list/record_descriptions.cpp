#include "editor/list/record_descriptions.h"

#include "common/MMain.h"
#include "common/texts/folded_text.h"
#include "editor/record/pick_list.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

void RecordDescriptions::readPickLists(MMain& main)
{
    QStringList names;
    for (const TableColumn& column : m_table.columns)
        names << column.name;
    m_statements = pickListStatements(main, m_table);
    for (const QString& statement : m_statements) {
        PickList list;
        for (const QString& column : placeholderColumns(statement))
            list.columns << static_cast<int>(names.indexOf(column));
        // Only a query may run unasked.
        if (statement.startsWith("SELECT "_L1, Qt::CaseInsensitive) && !list.columns.contains(-1))
            list.statement = statement;
        m_lists.push_back(std::move(list));
    }
}

bool RecordDescriptions::describes(int column) const
{
    return static_cast<size_t>(column) < m_lists.size() &&
           !m_lists[static_cast<size_t>(column)].statement.isEmpty();
}

/// What has been read of the pick list for that record; null where nothing has.
const RecordDescriptions::Descriptions* RecordDescriptions::descriptionsFor(PickList& list,
                                                                            const QStringList& record)
{
    bool same = list.last && list.lastValues.size() == list.columns.size();
    for (qsizetype place = 0; same && place < list.columns.size(); ++place)
        same = record[list.columns[place]] == list.lastValues[place];
    if (same)
        return list.last;
    list.lastValues.clear();
    for (const int column : list.columns)
        list.lastValues << record[column];
    const auto known = list.known.find(list.lastValues.join(QChar::Null));
    list.last = known == list.known.end() ? nullptr : &known->second;
    return list.last;
}

void RecordDescriptions::learn(MMain& main, const QStringList& record)
{
    if (m_lists.size() < static_cast<size_t>(m_table.columns.size()))
        readPickLists(main);
    for (PickList& list : m_lists)
        if (!list.statement.isEmpty() && !descriptionsFor(list, record))
            read(main, list, record);
}

void RecordDescriptions::read(MMain& main, PickList& list, const QStringList& record) const
{
    Descriptions& found = list.known[list.lastValues.join(QChar::Null)];
    // A value with an apostrophe would end the text in which it stands.
    if (std::any_of(list.lastValues.begin(), list.lastValues.end(),
                    [](const QString& value) { return value.contains(u'\''); }))
        return;
    QList<RecordField> fields;
    for (qsizetype place = 0; place < record.size(); ++place)
        fields << RecordField{
            m_table.columns[place].name, {}, false, m_statements[place], false, {}, record[place], false};
    try {
        Cursor rows = main.connection.cursor(substitutePlaceholders(list.statement, fields));
        if (rows.fieldCount() < 2) {
            list.statement.clear();
            return;
        }
        while (rows.next())
            found.insert(rows.text(0), {rows.text(1), foldedText(rows.text(1))});
    } catch (const DatabaseError& error) {
        // What is wrong with a pick list is told where it is needed for a choice.
        if (error.reason() == DatabaseError::Reason::ConnectionLost)
            throw;
    }
}

const CodeDescription& RecordDescriptions::description(const QStringList& record, int column) const
{
    static const CodeDescription none;
    if (!describes(column))
        return none;
    const Descriptions* known = descriptionsFor(m_lists[static_cast<size_t>(column)], record);
    if (!known)
        return none;
    const auto found = known->constFind(record[column]);
    return found == known->constEnd() ? none : *found;
}

} // namespace velmora
