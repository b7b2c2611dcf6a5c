#include "editor/transfer/table_import.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "database/savepoint.h"
#include "database/transaction.h"
#include "editor/table_catalogue.h"
#include "mainwindow/menu.h"

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many new records are one statement: on a server each statement is a journey.
constexpr size_t recordsTogether = 100;

/// The place of a value in a statement: one that is missing can't be bound.
QString mark(const QString& value)
{
    return value.isNull() ? u"NULL"_s : u"?"_s;
}

/// The values that are bound.
void bind(QStringList& bound, const QStringList& values)
{
    std::copy_if(values.begin(), values.end(), std::back_inserter(bound),
                 [](const QString& value) { return !value.isNull(); });
}

/// The values of a new record in its statement.
QString marks(const QStringList& values)
{
    QStringList marks;
    for (const QString& value : values)
        marks << mark(value);
    return u'(' + marks.join(u',') + u')';
}

/// Writes lines whose verdicts stand.
class Writing {
public:
    Writing(MMain& main, const TableDescription& table) : m_main(main), m_table(table)
    {
        QStringList names;
        for (const TableColumn& column : table.columns)
            names << column.name;
        m_insert = "INSERT INTO "_L1 + table.name + " ("_L1 + names.join(", "_L1) + ") VALUES "_L1;
    }

    /// False when `progress` has ended it.
    bool write(CheckedLines& lines, const TransferProgress& progress)
    {
        const auto total = static_cast<qsizetype>(lines.size());
        qsizetype done = 0;
        for (CheckedLine& line : lines) {
            if (done++ % qsizetype{recordsTogether} == 0 && !progress(done, total))
                return false;
            if (line.verdict == Verdict::Changed)
                update(line);
            else if (line.verdict == Verdict::New)
                insertLater(line);
        }
        for (const auto& [missing, waiting] : m_waiting)
            insert(waiting);
        return progress(total, total);
    }

private:
    void insertLater(CheckedLine& line)
    {
        std::vector<bool> missing;
        for (const QString& value : line.values)
            missing.push_back(value.isNull());
        auto& waiting = m_waiting[missing];
        waiting.push_back(&line);
        if (waiting.size() < recordsTogether)
            return;
        insert(waiting);
        waiting.clear();
    }

    /// Inserts them together or, where one is refused, each by itself. All lack values in the same columns.
    void insert(const std::vector<CheckedLine*>& lines)
    {
        if (lines.size() == recordsTogether) {
            try {
                Savepoint together(m_main.connection);
                insertRows(lines);
                together.keep();
                return;
            } catch (const DatabaseError& error) {
                if (error.endsAll())
                    throw;
            }
        }
        for (CheckedLine* line : lines)
            insertAlone(*line);
    }

    void insertAlone(CheckedLine& line)
    {
        try {
            if (!line.addsRange)
                return insertRows({&line});
            Savepoint both(m_main.connection);
            insertRows({&line});
            both.keep();
        } catch (const DatabaseError& error) {
            refuse(line, error);
        }
    }

    void insertRows(const std::vector<CheckedLine*>& lines)
    {
        addRanges(lines);
        QStringList bound;
        for (const CheckedLine* line : lines)
            bind(bound, line->values);
        execute(
            m_insert +
                QStringList(static_cast<qsizetype>(lines.size()), marks(lines.front()->values)).join(u','),
            bound);
    }

    /// The key of a phone is that of its code in the range.
    void addRanges(const std::vector<CheckedLine*>& lines)
    {
        QStringList rows;
        QStringList bound;
        for (const CheckedLine* line : lines)
            if (line->addsRange) {
                rows << u"(?,?)"_s;
                bound << keyOf(m_table, line->values);
            }
        if (!rows.isEmpty())
            execute("INSERT INTO RANGES (CO_CODE, PH_CODE) VALUES "_L1 + rows.join(u','), bound);
    }

    void update(CheckedLine& line)
    {
        QStringList changes;
        QStringList bound;
        QStringList conditions;
        for (qsizetype place = 0; place < m_table.columns.size(); ++place)
            if (line.changes(place)) {
                changes << m_table.columns[place].name + " = "_L1 + mark(line.values[place]);
                bind(bound, {line.values[place]});
            }
        for (const QString& key : m_table.keys)
            conditions << key + " = ?"_L1;
        bound << keyOf(m_table, line.values);
        try {
            if (execute("UPDATE "_L1 + m_table.name + " SET "_L1 + changes.join(", "_L1) + " WHERE "_L1 +
                            conditions.join(" AND "_L1),
                        bound) != 1)
                line.refuse({u"M217"_s, {}});
        } catch (const DatabaseError& error) {
            refuse(line, error);
        }
    }

    int execute(const QString& statement, const QStringList& bound)
    {
        m_main.sqlText = statement;
        return m_main.connection.execute(statement, bound);
    }

    void refuse(CheckedLine& line, const DatabaseError& error)
    {
        if (error.endsAll())
            throw;
        line.refuse({{}, {refusalReason(m_main, error, line.values)}});
    }

    MMain& m_main;
    const TableDescription& m_table;
    QString m_insert;
    /// New records, by the values that they lack.
    std::map<std::vector<bool>, std::vector<CheckedLine*>> m_waiting;
};

bool sameVerdicts(const CheckedLines& some, const CheckedLines& others)
{
    return std::equal(some.begin(), some.end(), others.begin(), others.end(),
                      [](const CheckedLine& one, const CheckedLine& other) {
                          return one.verdict == other.verdict && one.values == other.values &&
                                 one.before == other.before && one.addsRange == other.addsRange;
                      });
}

} // namespace

std::optional<TableImport> importLines(MMain& main, const OpenTable& table, const TableFile& file,
                                       const ImportOptions& options, const TransferProgress& progress,
                                       const CheckedLines& shown)
{
    Transaction transaction(main.connection);
    std::optional<CheckedLines> lines = checkLines(main, table, file, options.addRanges, progress);
    if (!lines)
        return std::nullopt;
    const auto mayBeWritten = [&] { return options.skipRefused || count(*lines, Verdict::Refused) == 0; };
    if (!mayBeWritten() || (!shown.empty() && !sameVerdicts(shown, *lines)))
        return TableImport{std::move(*lines), false};
    if (!Writing(main, table.description).write(*lines, progress))
        return std::nullopt;
    const bool written = mayBeWritten();
    if (written)
        transaction.commit();
    return TableImport{std::move(*lines), written};
}

bool mayAddRanges(MMain& main)
{
    const QString ranges = u"RANGES"_s;
    return canReachMenuItem(main, u"Ranges"_s) ||
           (isGranted(main, ranges) && !passwordsOf(main, ranges).first);
}

} // namespace velmora
