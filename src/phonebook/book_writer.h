// What an import changes in the phone book.
#pragma once

#include "database/bulk/row_inserter.h"
#include "phonebook/conf_users.h"

#include <QMap>

namespace velmora {

class MMain;

/// The text that a quoted literal with `text` between its quotes stands for.
QString asStored(QString text);

/// Whether a statement with the user's texts between quotes is more than it seems: one of them leaves its
/// quotes.
bool leavesItsQuotes(const ConfUser& user);

/// A user who is new in a company, or gets the name of the file in the companies that have the number.
struct BookChange {
    ConfUser user;
    QStringList companies;
    bool isNew = false;
};

/// Writes changes into the phone book, with the effect of a statement for each in which the texts of the file
/// stand as they are: a text that leaves its quotes may do anything to the table, so that it counts only when
/// the rows of the change, and no others, have become what the file says. Else it is undone and refused.
/// Texts without an apostrophe are written many at a time. REQUIRES: one transaction for its whole life.
class BookWriter {
public:
    explicit BookWriter(MMain& main);

    /// How many columns an entry has.
    qsizetype columnCount() const { return m_rows.columnCount(); }
    /// Writes the changes, no two of one number. Returns the refused ones.
    QList<RowInserter::Refusal> write(const QList<BookChange>& changes);

private:
    bool standsAsItIs(const QStringList& row) const;
    QStringList rowOf(const BookChange& change) const;
    void writeAlone(const BookChange& change);
    void writeHeld(const QList<BookChange>& changes);
    void update(const QList<BookChange>& changes, const QList<qsizetype>& places);
    QString statementFor(const BookChange& change) const;
    bool holds(const BookChange& change);

    MMain& m_main;
    RowInserter m_rows;
    QList<RowInserter::Refusal> m_refusals;
    /// The changes that are held back: the places of the new users and their rows, and the places of the
    /// others by the companies that have them.
    QList<qsizetype> m_added;
    QList<QStringList> m_addedRows;
    QMap<QStringList, QList<qsizetype>> m_updated;
};

} // namespace velmora
