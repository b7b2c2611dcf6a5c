#include "editor/transfer/table_check.h"

#include "common/MMain.h"
#include "common/texts/schema_captions.h"
#include "editor/transfer/mac_address.h"
#include "editor/transfer/reference_check.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// After how many lines or rows others may do something.
constexpr qsizetype rowsTogether = 1000;

/// How often the lines are gone through, each time for about as long: read, compared, referred.
constexpr qsizetype rounds = 3;

/// The reference by which a phone needs a code of its company's range.
constexpr auto phones = "PHONES"_L1;
constexpr auto ranges = "RANGES"_L1;

qsizetype lengthOf(const QString& value)
{
    // In whole characters, as the database counts them.
    return value.size() -
           std::count_if(value.begin(), value.end(), [](QChar each) { return each.isLowSurrogate(); });
}

/// The places of the key's columns, in the order of the key.
QList<qsizetype> keyPlaces(const TableDescription& table)
{
    QList<qsizetype> places;
    for (const QString& name : table.keys)
        for (qsizetype place = 0; place < table.columns.size(); ++place)
            if (table.columns[place].name == name)
                places << place;
    return places;
}

class Check {
public:
    Check(MMain& main, const OpenTable& table, const TableFile& file, bool addRanges,
          const TransferProgress& progress)
        : m_main(main),
          m_open(table),
          m_table(table.description),
          m_file(file),
          m_addRanges(addRanges),
          m_progress(progress),
          m_total(static_cast<qsizetype>(file.lines.size()))
    {
        for (qsizetype place = 0; place < m_table.columns.size(); ++place)
            if (m_table.columns[place].name == addressColumn)
                m_address = place;
        m_keyPlaces = keyPlaces(m_table);
    }

    std::optional<CheckedLines> lines()
    {
        m_lines.reserve(m_file.lines.size());
        m_byKey.reserve(m_total);
        if (m_address >= 0)
            m_addresses.reserve(m_total);
        for (const TableLine& line : m_file.lines) {
            if (!goesOn(0, static_cast<qsizetype>(m_lines.size())))
                return std::nullopt;
            m_lines.push_back(readable(line));
        }
        if (!compareWithTable())
            return std::nullopt;
        for (CheckedLine& line : m_lines)
            if (line.verdict == Verdict::New)
                fillIn(line.values);
        checkAddresses();
        if (!checkReferences())
            return std::nullopt;
        tellAddresses();
        return std::move(m_lines);
    }

private:
    /// False where it is ended at that step of a round.
    bool goesOn(qsizetype round, qsizetype step) const
    {
        return step % rowsTogether != 0 ||
               m_progress(round * m_total + std::min(step, m_total), rounds * m_total);
    }

    bool holds(qsizetype column) const { return m_file.held[static_cast<size_t>(column)]; }

    /// The line, as far as it can be told without the database.
    CheckedLine readable(const TableLine& line)
    {
        CheckedLine checked{line.number, Verdict::New, line.values, {}, {}};
        if (line.fields != m_file.fields) {
            checked.refuse({u"M328"_s, {QString::number(line.fields), QString::number(m_file.fields)}});
            return checked;
        }
        if (m_address >= 0) {
            QString& address = checked.values[m_address];
            if (const QString bare = withoutSeparators(address); bare.isEmpty() || isMacAddress(bare))
                address = bare;
        }
        refuseWrongValues(checked);
        if (checked.verdict != Verdict::Refused)
            findTwin(checked);
        return checked;
    }

    void refuseWrongValues(CheckedLine& line) const
    {
        for (qsizetype place = 0; place < m_table.columns.size(); ++place) {
            const TableColumn& column = m_table.columns[place];
            const QString& value = line.values[place];
            // An address is told by its own rule.
            if (column.width > 0 && place != m_address && lengthOf(value) > column.width)
                return line.refuse({u"M225"_s, {column.caption, QString::number(column.width)}});
            if (column.key && value.isNull())
                return line.refuse({u"M226"_s, {column.caption}});
        }
        const bool isSystemRow = !m_keyPlaces.isEmpty() && line.values[m_keyPlaces[0]].startsWith("$$"_L1);
        if (isSystemRow != (m_open.access == Access::Admin) && !m_keyPlaces.isEmpty())
            line.refuse({u"M335"_s, {u"$$"_s}});
    }

    /// Refuses a line with the key of an earlier one.
    void findTwin(CheckedLine& line)
    {
        const auto place = static_cast<qsizetype>(m_lines.size());
        const QString key = joinedValues(line.values, m_keyPlaces);
        if (const auto twin = m_byKey.constFind(key); twin != m_byKey.constEnd())
            line.refuse({u"M329"_s, {QString::number(m_lines[static_cast<size_t>(*twin)].number)}});
        else
            m_byKey.insert(key, place);
        if (m_address >= 0 && !line.values[m_address].isEmpty())
            m_addresses.insert(line.values[m_address].toUpper(), {});
    }

    /// Compares every row of the table with the line that has its key.
    bool compareWithTable()
    {
        QStringList names;
        for (const TableColumn& column : m_table.columns)
            names << column.name;
        Cursor rows =
            m_main.connection.cursor("SELECT "_L1 + names.join(", "_L1) + " FROM "_L1 + m_table.name);
        QStringList record(names.size());
        for (qsizetype read = 0; rows.next(); ++read) {
            if (!goesOn(1, read))
                return false;
            for (int field = 0; field < record.size(); ++field)
                record[field] = rows.textOrNull(field);
            const auto line = m_byKey.constFind(joinedValues(record, m_keyPlaces));
            if (line != m_byKey.constEnd())
                compare(m_lines[static_cast<size_t>(*line)], record);
            else
                noteOwner(record);
        }
        return true;
    }

    void compare(CheckedLine& line, const QStringList& record) const
    {
        line.verdict = Verdict::Changed;
        line.before = record;
        bool changed = false;
        for (qsizetype place = 0; place < record.size(); ++place)
            if (!holds(place))
                line.values[place] = record[place];
        fillIn(line.values);
        for (qsizetype place = 0; place < record.size() && !changed; ++place)
            changed = line.changes(place);
        if (changed)
            return;
        line.verdict = Verdict::Same;
        line.before.clear();
    }

    /// Where a record must have a value, nothing is the empty text.
    void fillIn(QStringList& values) const
    {
        for (qsizetype place = 0; place < values.size(); ++place)
            if (values[place].isNull() && !m_table.columns[place].mayBeNull)
                values[place] = u""_s;
    }

    bool setsAddress(const CheckedLine& line) const
    {
        return m_address >= 0 && (line.verdict == Verdict::New || line.changes(m_address));
    }

    void checkAddresses()
    {
        for (CheckedLine& line : m_lines)
            if (setsAddress(line))
                if (const QString& address = line.values[m_address];
                    !address.isEmpty() && !isMacAddress(address))
                    line.refuse({u"M330"_s, {address}});
    }

    bool checkReferences()
    {
        ReferenceCheck references(m_main, m_table);
        std::vector<CheckedLine*> written;
        for (CheckedLine& line : m_lines)
            if (line.verdict == Verdict::New || line.verdict == Verdict::Changed) {
                references.add(line.values, line.before);
                written.push_back(&line);
            }
        references.read(m_main);
        for (size_t record = 0; record < written.size(); ++record) {
            if (!goesOn(2, static_cast<qsizetype>(record)))
                return false;
            if (const QList<Reference> missing = references.missing(record); !missing.isEmpty())
                tellMissing(*written[record], missing);
        }
        return m_progress(rounds * m_total, rounds * m_total);
    }

    void tellMissing(CheckedLine& line, const QList<Reference>& missing)
    {
        // The shortest: what a longer key lacks often lacks its parts too.
        const Reference& first = *std::min_element(missing.begin(), missing.end(),
                                                   [](const Reference& one, const Reference& other) {
                                                       return one.columns.size() < other.columns.size();
                                                   });
        if (m_table.name == phones && first.target == ranges) {
            line.addsRange = m_addRanges;
            if (m_addRanges)
                line.notes << Note{u"M334"_s, {}};
            else
                line.refuse({u"M333"_s, {}});
            return;
        }
        QStringList fields;
        for (const QString& name : first.columns)
            for (qsizetype place = 0; place < m_table.columns.size(); ++place)
                if (m_table.columns[place].name.compare(name, Qt::CaseInsensitive) == 0)
                    fields << m_table.columns[place].caption + u' ' + line.values[place];
        if (!m_captions.contains(first.target))
            m_captions.insert(first.target, tableCaption(m_main, first.target));
        line.refuse({u"M224"_s, {m_captions.value(first.target), fields.join(", "_L1)}});
    }

    /// Remembers who has one of the addresses of the file.
    void noteOwner(const QStringList& record)
    {
        if (m_address < 0)
            return;
        const auto owner = m_addresses.find(record[m_address].toUpper());
        if (owner != m_addresses.end() && owner->isEmpty())
            *owner = record;
    }

    /// Tells about phones without an address, and with one that another phone has.
    void tellAddresses()
    {
        if (m_address < 0)
            return;
        // Those who keep theirs come first.
        for (const CheckedLine& line : m_lines)
            if (line.verdict != Verdict::Refused && !setsAddress(line))
                noteOwner(line.values);
        for (CheckedLine& line : m_lines) {
            if (!setsAddress(line))
                continue;
            const QStringList owner = m_addresses.value(line.values[m_address].toUpper());
            if (line.values[m_address].isEmpty())
                line.notes << Note{u"M331"_s, {}};
            else if (!owner.isEmpty())
                line.notes << Note{u"M332"_s, {keyOf(m_table, owner).join(", "_L1)}};
            else
                noteOwner(line.values);
        }
    }

    MMain& m_main;
    const OpenTable& m_open;
    const TableDescription& m_table;
    const TableFile& m_file;
    const bool m_addRanges;
    const TransferProgress& m_progress;
    const qsizetype m_total;
    CheckedLines m_lines;
    /// The place in m_lines of the line with that key.
    QHash<QString, qsizetype> m_byKey;
    QList<qsizetype> m_keyPlaces;
    /// The place of the column with addresses; -1 where there is none.
    qsizetype m_address = -1;
    /// The addresses of the file, and the first record that has each.
    QHash<QString, QStringList> m_addresses;
    QHash<QString, QString> m_captions;
};

} // namespace

std::optional<CheckedLines> checkLines(MMain& main, const OpenTable& table, const TableFile& file,
                                       bool addRanges, const TransferProgress& progress)
{
    return Check(main, table, file, addRanges, progress).lines();
}

qsizetype count(const CheckedLines& lines, Verdict verdict)
{
    return std::count_if(lines.begin(), lines.end(),
                         [verdict](const CheckedLine& line) { return line.verdict == verdict; });
}

QStringList keyOf(const TableDescription& table, const QStringList& values)
{
    QStringList key;
    for (const qsizetype place : keyPlaces(table))
        key << values[place];
    return key;
}

} // namespace velmora
