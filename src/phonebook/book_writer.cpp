#include "phonebook/book_writer.h"

#include "common/MMain.h"
#include "database/bulk/halves.h"
#include "database/savepoint.h"

#include <algorithm>
#include <bit>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many users one statement updates: each is looked for among the WHENs of all.
constexpr qsizetype usersTogether = 16;

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', "''"_L1) + u'\'';
}

bool leaves(QString text)
{
    return text.remove("''"_L1).contains(u'\'');
}

} // namespace

QString asStored(QString text)
{
    return text.replace("''"_L1, "'"_L1);
}

bool leavesItsQuotes(const ConfUser& user)
{
    return leaves(user.extension) || leaves(user.name);
}

BookWriter::BookWriter(MMain& main) : m_main(main), m_rows(main.connection, u"PHONE_BOOK"_s)
{
    m_rows.release();
}

QList<RowInserter::Refusal> BookWriter::write(const QList<BookChange>& changes)
{
    m_refusals.clear();
    for (qsizetype place = 0; place < changes.size(); ++place) {
        const BookChange& change = changes[place];
        QStringList row = rowOf(change);
        if (!standsAsItIs(row)) {
            writeHeld(changes);
            inHalves(
                place, 1, [&](qsizetype, qsizetype) { writeAlone(change); },
                [&](qsizetype, const DatabaseError& error) {
                    m_refusals.append({place, error});
                });
        } else if (change.isNew) {
            m_added << place;
            m_addedRows << std::move(row);
        } else {
            m_updated[change.companies] << place;
        }
    }
    writeHeld(changes);
    return m_refusals;
}

/// Whether a statement with these texts between quotes stores the very texts.
bool BookWriter::standsAsItIs(const QStringList& row) const
{
    return m_rows.fits(row) &&
           std::none_of(row.begin(), row.end(), [](const QString& value) { return value.contains(u'\''); });
}

QStringList BookWriter::rowOf(const BookChange& change) const
{
    QStringList row;
    row.reserve(columnCount());
    row << change.companies.first() << change.user.extension << change.user.name << u"V"_s;
    row.resize(columnCount());
    return row;
}

void BookWriter::writeAlone(const BookChange& change)
{
    m_rows.guard();
    const QString statement = statementFor(change);
    m_main.sqlText = statement;
    if (!leavesItsQuotes(change.user)) {
        m_main.connection.execute(statement);
        return;
    }
    Savepoint savepoint(m_main.connection);
    if (m_main.connection.execute(statement) != change.companies.size() || !holds(change))
        throw DatabaseError(statement, {});
    savepoint.keep();
}

QString BookWriter::statementFor(const BookChange& change) const
{
    const ConfUser& user = change.user;
    if (change.isNew)
        return "INSERT INTO PHONE_BOOK VALUES('"_L1 + change.companies.first() + "', '"_L1 + user.extension +
               "', '"_L1 + user.name + "', 'V'"_L1 + u",''"_s.repeated(columnCount() - 4) + u')';
    // The companies are named for the sake of the primary key: every row of the number has one of them.
    QStringList companies;
    for (const QString& holder : change.companies)
        companies << quoted(holder);
    return "UPDATE PHONE_BOOK SET BK_NAME = '"_L1 + user.name + "', BK_FLAG = 'V' WHERE BK_NUM = '"_L1 +
           user.extension + "' AND CO_CODE IN ("_L1 + companies.join(", "_L1) + u')';
}

bool BookWriter::holds(const BookChange& change)
{
    const Recordset rows = m_main.connection.select(
        "SELECT COUNT(*) FROM PHONE_BOOK WHERE BK_NUM = ? AND BK_NAME = ? AND BK_FLAG = 'V' AND CO_CODE "
        "IN ("_L1 +
            QStringList(change.companies.size(), u"?"_s).join(u',') + u')',
        QStringList{asStored(change.user.extension), asStored(change.user.name)} + change.companies);
    return rows.text(0).toLongLong() == change.companies.size();
}

/// Writes the changes that are held back; their numbers and texts have nothing to do with each other.
void BookWriter::writeHeld(const QList<BookChange>& changes)
{
    for (const RowInserter::Refusal& refusal : m_rows.insert(m_addedRows))
        m_refusals.append({m_added[refusal.row], refusal.error});
    for (const QList<qsizetype>& places : std::as_const(m_updated))
        update(changes, places);
    m_added.clear();
    m_addedRows.clear();
    m_updated.clear();
}

/// Updates users whom the same companies have.
void BookWriter::update(const QList<BookChange>& changes, const QList<qsizetype>& places)
{
    const auto updateSome = [&](qsizetype first, qsizetype count) {
        QStringList names;
        QStringList values;
        const auto bound = [&](const QString& value) {
            names << ":v"_L1 + QString::number(names.size());
            values << value;
            return names.last();
        };
        QString cases;
        QStringList numbers;
        QStringList companies;
        for (const qsizetype place : places.sliced(first, count)) {
            const ConfUser& user = changes[place].user;
            cases += " WHEN "_L1 + bound(user.extension);
            cases += " THEN "_L1 + bound(user.name);
            numbers << bound(user.extension);
        }
        for (const QString& company : changes[places.first()].companies)
            companies << bound(company);
        m_main.sqlText = "UPDATE PHONE_BOOK SET BK_NAME = CASE BK_NUM"_L1 + cases +
                         " END, BK_FLAG = 'V' WHERE CO_CODE IN ("_L1 + companies.join(", "_L1) +
                         ") AND BK_NUM IN ("_L1 + numbers.join(", "_L1) + u')';
        m_main.connection.executeNamed(m_main.sqlText, names, values);
    };
    const auto refuse = [&](qsizetype one, const DatabaseError& error) {
        m_refusals.append({places[one], error});
    };
    for (qsizetype first = 0; first < places.size();) {
        const auto left = static_cast<size_t>(std::min(places.size() - first, usersTogether));
        const auto count = static_cast<qsizetype>(std::bit_floor(left));
        inHalves(first, count, updateSome, refuse);
        first += count;
    }
}

} // namespace velmora
