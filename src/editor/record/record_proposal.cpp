#include "editor/record/record_proposal.h"

#include "common/MMain.h"
#include "common/list_entry.h"
#include "editor/record/pick_list.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The codes in a column of those records that have the proposed values in the other columns.
QSet<QString> codesInUse(MMain& main, const RecordForm& form, const RecordProposal& proposal,
                         const QStringList& others)
{
    const QString& column = form.fields()[proposal.counted].column;
    QStringList conditions;
    QStringList values;
    for (qsizetype place = 0; place < form.fields().size(); ++place)
        if (others.contains(form.fields()[place].column)) {
            conditions << form.fields()[place].column + " = ?"_L1;
            values << proposal.values[place];
        }
    const QString where = conditions.isEmpty() ? QString() : " WHERE "_L1 + conditions.join(" AND "_L1);
    Cursor rows =
        main.connection.cursor("SELECT DISTINCT "_L1 + column + " FROM "_L1 + form.table() + where, values);
    QSet<QString> codes;
    while (rows.next())
        codes << rows.text(0);
    return codes;
}

/// The first of the codes that is allowed and comes after that one, else the first of all; null where none
/// is.
QString nextCode(const QStringList& codes, const QSet<QString>& allowed, const QString& previous)
{
    const auto there = std::find(codes.begin(), codes.end(), previous);
    const auto after =
        there != codes.end()
            ? there + 1
            : std::find_if(codes.begin(), codes.end(), [&](const QString& code) { return code > previous; });
    const auto isAllowed = [&allowed](const QString& code) { return allowed.contains(code); };
    auto next = std::find_if(after, codes.end(), isAllowed);
    if (next == codes.end())
        next = std::find_if(codes.begin(), after, isAllowed);
    return next != codes.end() && isAllowed(*next) ? *next : QString();
}

/// The code that comes next in a field that is open and has a list.
QString nextFree(MMain& main, const RecordForm& form, const RecordProposal& proposal)
{
    const RecordField& field = form.fields()[proposal.counted];
    const QString previous = proposal.values[proposal.counted];
    QStringList otherKeys;
    for (const RecordField& other : form.fields())
        if (other.key && other.column != field.column)
            otherKeys << other.column;
    QStringList codes;
    for (const QString& entry : field.entries)
        codes << codeOf(entry);
    QSet<QString> free(codes.begin(), codes.end());
    free -= codesInUse(main, form, proposal, otherKeys);
    const bool isLast = std::none_of(form.fields().begin() + proposal.counted + 1, form.fields().end(),
                                     [](const RecordField& later) { return later.key; });
    QSet<QString> usual;
    if (isLast)
        usual = codesInUse(main, form, proposal, placeholderColumns(field.pickList)) & free;
    return nextCode(codes, usual.isEmpty() ? free : usual, previous);
}

/// What to enter into a field; null where nothing is proposed.
QString valueFor(MMain& main, const RecordForm& form, const RecordProposal& proposal, qsizetype place)
{
    if (place != proposal.counted)
        return proposal.values[place];
    if (form.fields()[place].dropDown)
        return nextFree(main, form, proposal);
    return proposal.all ? proposal.values[place] : QString();
}

/// The field with which the user goes on in a record that is complete: the one in which it has to differ, if
/// it is not counted on by itself, else the first text.
qsizetype firstToChange(const RecordForm& form, const RecordProposal& proposal)
{
    if (proposal.counted >= 0 && !form.fields()[proposal.counted].dropDown)
        return proposal.counted;
    const auto text = std::find_if(form.fields().begin(), form.fields().end(),
                                   [](const RecordField& field) { return !field.key && !field.dropDown; });
    return text == form.fields().end() ? 0 : text - form.fields().begin();
}

} // namespace

RecordProposal proposalFrom(const TableDescription& table, const QList<KeyFilter>& filters,
                            const QStringList& record, bool all)
{
    RecordProposal proposal{{}, -1, all};
    const bool namesAll =
        std::all_of(filters.begin(), filters.end(), [](const KeyFilter& one) { return one.index != 0; });
    for (qsizetype place = 0; place < table.columns.size(); ++place) {
        const TableColumn& column = table.columns[place];
        const auto filter = std::find_if(filters.begin(), filters.end(), [&column](const KeyFilter& one) {
            return one.column == column.name && one.index != 0;
        });
        const bool filtered = filter != filters.end();
        const bool takenOver = all || column.key;
        // A null text is "nothing proposed", a missing value an empty text.
        QString value;
        if (takenOver && filtered && !all)
            value = filter->text;
        else if (takenOver && place < record.size())
            value = record[place].isNull() ? u""_s : record[place];
        proposal.values << value;
        // Where filters name the whole key, the record that they show is there already.
        if (column.key && (!filtered || namesAll))
            proposal.counted = place;
    }
    return proposal;
}

qsizetype propose(MMain& main, RecordForm& form, const RecordProposal& proposal)
{
    for (qsizetype place = 0; place < form.fields().size(); ++place) {
        const QString value = valueFor(main, form, proposal, place);
        if (value.isNull() || !form.propose(place, value))
            return place;
    }
    return firstToChange(form, proposal);
}

} // namespace velmora
