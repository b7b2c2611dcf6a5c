// Many rows at once: what they leave behind, beside a statement for each.
#include "database/bulk/row_inserter.h"
#include "database/transaction.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_row_inserter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void doesWhatStatementsDo_data();
    void doesWhatStatementsDo();
    void guardsAgain();

private:
    /// What the database refused, and the rows that it holds in the end.
    using Outcome = QPair<QStringList, QStringList>;

    static Outcome outcomeOf(const std::function<QStringList(Connection&)>& work)
    {
        TestDatabase database;
        database.run(u"INSERT INTO CREATION_FLAGS VALUES('V', 'from a list', 'Y')"_s);
        Transaction transaction(database.main.connection);
        Outcome outcome = {work(database.main.connection), {}};
        transaction.commit();
        for (Recordset rows = database.main.connection.select(
                 u"SELECT CO_CODE, BK_NUM, BK_NAME FROM PHONE_BOOK ORDER BY CO_CODE, BK_NUM"_s);
             !rows.eof(); rows.moveNext())
            outcome.second << rows.text(0) + u'|' + rows.text(1) + u'|' + rows.text(2);
        return outcome;
    }
    static QString words(qsizetype row, const DatabaseError& error)
    {
        static const QRegularExpression database(u"`test_\\w+`"_s);
        return u"%1 %2 %3 %4"_s.arg(row)
            .arg(error.statement(), QString(error.description()).remove(database))
            .arg(int(error.reason()));
    }
};

void tst_row_inserter::doesWhatStatementsDo_data()
{
    const QStringList good = {u"ACME"_s, u"$"_s, u"Eva"_s, u"V"_s, {}, {}, {}, {}};
    const auto with = [&good](qsizetype place, const QString& value) {
        QStringList row = good;
        row[place] = value;
        return row;
    };
    columns<QList<QStringList>, int>("odd", "share");
    row("none", QList<QStringList>{}, 0);
    row("the same key", QList<QStringList>{with(1, u"7"_s), with(1, u"8"_s)}, 20);
    row("another table's key", QList<QStringList>{with(3, u"x"_s), with(3, u"v"_s)}, 5);
    row("too wide", QList<QStringList>{with(0, u"ACME12"_s), with(2, QString(51, u'ä'))}, 100);
    row("just fits", QList<QStringList>{with(2, QString(50, u'ä')), with(2, u"\U0001F4DE"_s.repeated(50))},
        20);
    row("quotes", QList<QStringList>{with(2, u"O'Neil"_s), with(2, u"'"_s), with(2, u"''); --"_s)}, 4);
    row("marks",
        QList<QStringList>{with(2, u"\\'\\0 ? :v1 %"_s), with(2, u"\xFEFFx"_s), with(2, u"a\n b "_s)}, 4);
    row("another number of values", QList<QStringList>{good.first(7), good + QStringList(u"x"_s)}, 50);
    row("all of it",
        QList<QStringList>{with(1, u"7"_s), with(3, u"x"_s), with(0, u"ACME12"_s), with(2, u"O'Neil"_s),
                           with(2, QString(QChar(0)) + u'x')},
        15);
}

/// One row of `share` is an odd one.
void tst_row_inserter::doesWhatStatementsDo()
{
    QFETCH(QList<QStringList>, odd);
    QFETCH(int, share);
    QRandomGenerator random(1);
    QList<QStringList> rows;
    for (int number = 100; number < 1000; ++number) {
        const bool isOdd = share > 0 && random.bounded(share) == 0;
        rows << (isOdd ? odd[random.bounded(odd.size())]
                       : QStringList{u"ACME"_s, u"$"_s, u"Eva"_s, u"V"_s, {}, {}, {}, {}});
        rows.last()[1].replace(u'$', QString::number(number));
    }
    const Outcome expected = outcomeOf([&rows](Connection& connection) {
        QStringList refusals;
        for (qsizetype row = 0; row < rows.size(); ++row)
            try {
                connection.execute(insertStatement(u"PHONE_BOOK"_s, rows[row]));
            } catch (const DatabaseError& error) {
                refusals << words(row, error);
            }
        return refusals;
    });
    const Outcome actual = outcomeOf([&rows](Connection& connection) {
        QStringList refusals;
        for (const RowInserter::Refusal& refusal : RowInserter(connection, u"PHONE_BOOK"_s).insert(rows))
            refusals << words(refusal.row, refusal.error);
        return refusals;
    });
    QCOMPARE(actual.first, expected.first);
    QCOMPARE(actual.second, expected.second);
    QVERIFY(expected.second.size() > 300);
}

/// After the rows, also when they were taken back.
void tst_row_inserter::guardsAgain()
{
    TestDatabase database;
    for (const bool undone : {false, true}) {
        {
            Transaction transaction(database.main.connection);
            const QString number = QString::number(undone);
            QVERIFY(RowInserter(database.main.connection, u"RANGES"_s).insert({{u"C1"_s, number}}).isEmpty());
            QVERIFY_THROWS_EXCEPTION(DatabaseError,
                                     database.run(u"INSERT INTO RANGES VALUES('C1', '123456')"_s));
            if (!undone)
                transaction.commit();
        }
        QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(u"UPDATE RANGES SET PH_CODE = '123456'"_s));
    }
    QCOMPARE(database.value(u"SELECT COUNT(*) FROM RANGES"_s), u"1"_s);
}

QTEST_GUILESS_MAIN(tst_row_inserter)
#include "tst_row_inserter.moc"
