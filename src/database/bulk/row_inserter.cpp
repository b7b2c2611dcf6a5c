#include "database/bulk/row_inserter.h"

#include "database/bulk/halves.h"
#include "database/connection.h"

#include <algorithm>
#include <bit>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The widest that a value in a statement for many rows may be: a server takes no statement of any length.
constexpr int widestValue = 255;

bool fitsColumn(const QString& value, const Column& column)
{
    // An engine may count a pair of surrogates as one character, and never less than that.
    return value.size() <= std::min(column.width, widestValue);
}

/// Whether a value is stored alike, bound or within quotes: a zero would end a statement, and a mark of the
/// byte order is taken off what is bound.
bool bindsAsItStands(const QString& value)
{
    return !value.startsWith(QChar(QChar::ByteOrderMark)) &&
           !value.startsWith(QChar(QChar::ByteOrderSwapped)) && !value.contains(QChar(QChar::Null));
}

} // namespace

QString insertBeginning(const QString& table, const QStringList& values)
{
    QString statement = "INSERT INTO "_L1 + table + " VALUES('"_L1;
    for (const QString& value : values)
        statement += QString(value).replace(u'\'', "''"_L1) + "', '"_L1;
    return statement;
}

QString insertStatement(const QString& table, const QStringList& values)
{
    QString statement = insertBeginning(table, values);
    statement.chop(3);
    return statement + u')';
}

RowInserter::RowInserter(Connection& connection, QString table)
    : m_connection(connection), m_table(std::move(table)), m_columns(connection.columns(m_table))
{
}

RowInserter::~RowInserter()
{
    try {
        guard();
    } catch (const DatabaseError&) {
        // The transaction is lost, and has taken the release back as well.
    }
}

bool RowInserter::fits(const QStringList& values) const
{
    return !m_columns.isEmpty() &&
           std::equal(values.begin(), values.end(), m_columns.begin(), m_columns.end(), fitsColumn) &&
           std::all_of(values.begin(), values.end(), bindsAsItStands);
}

QList<RowInserter::Refusal> RowInserter::insert(const QList<QStringList>& rows)
{
    QList<Refusal> refusals;
    const auto refuse = [&](qsizetype row, const DatabaseError& error) {
        refusals.append(
            {row, DatabaseError(insertStatement(m_table, rows[row]), error.description(), error.cause())});
    };
    const auto fitting = [&](qsizetype first, qsizetype count) { insertFitting(rows, first, count); };
    const auto asItStands = [&](qsizetype row, qsizetype) {
        guard();
        m_connection.execute(insertStatement(m_table, rows[row]));
    };
    bindWhatIsNotEmpty(rows);
    for (qsizetype row = 0; row < rows.size();) {
        qsizetype count = 0;
        while (row + count < rows.size() && count < m_connection.rowsTogether() && fits(rows[row + count]))
            ++count;
        if (count == 0) {
            inHalves(row++, 1, asItStands, refuse);
            continue;
        }
        release();
        count = static_cast<qsizetype>(std::bit_floor(static_cast<size_t>(count)));
        inHalves(row, count, fitting, refuse);
        row += count;
    }
    return refusals;
}

void RowInserter::release()
{
    if (!m_guarded)
        m_connection.releaseDeclaredTypes(m_table);
}

void RowInserter::guard()
{
    m_guarded = true;
    m_connection.holdDeclaredTypes(m_table);
}

/// Binding costs most of the time: columns that are empty in all rows stand in the statement.
void RowInserter::bindWhatIsNotEmpty(const QList<QStringList>& rows)
{
    QList<qsizetype> bound;
    for (qsizetype column = 0; column < columnCount(); ++column)
        if (std::any_of(rows.begin(), rows.end(),
                        [column](const QStringList& row) { return !row.value(column).isEmpty(); }))
            bound << column;
    if (bound == m_bound)
        return;
    m_bound = bound;
    m_statements.clear();
}

/// REQUIRES: `count` is a power of two.
void RowInserter::insertFitting(const QList<QStringList>& rows, qsizetype first, qsizetype count)
{
    const QString& statement = statementFor(count);
    QStringList values;
    values.reserve(count * m_bound.size());
    for (qsizetype row = first; row < first + count; ++row)
        for (const qsizetype column : std::as_const(m_bound))
            values << rows[row][column];
    m_connection.executeNamed(statement, m_names, values);
}

const QString& RowInserter::statementFor(qsizetype rows)
{
    const auto power = static_cast<qsizetype>(std::countr_zero(static_cast<size_t>(rows)));
    for (qsizetype known = m_statements.size(); known <= power; ++known) {
        for (qsizetype name = m_names.size(); name < m_bound.size() << known; ++name)
            m_names << ":v"_L1 + QString::number(name);
        QStringList places;
        for (qsizetype row = 0; row < qsizetype{1} << known; ++row) {
            QStringList values(columnCount(), u"''"_s);
            for (qsizetype place = 0; place < m_bound.size(); ++place)
                values[m_bound[place]] = m_names[row * m_bound.size() + place];
            places << u'(' + values.join(", "_L1) + u')';
        }
        m_statements << "INSERT INTO "_L1 + m_table + " VALUES "_L1 + places.join(", "_L1);
    }
    return m_statements[power];
}

} // namespace velmora
