// Ranges of phone codes: the run and its window.
#include "ranges/FRgen.h"
#include "ranges/ranges.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_ranges : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void treatsEveryCode_data();
    void treatsEveryCode();
    void tellsWhatIsDone_data();
    void tellsWhatIsDone();
    void worksByKeyboard();

private:
    QString codes()
    {
        QStringList all;
        for (Recordset rows = m_database->main.connection.select(
                 u"SELECT PH_CODE FROM RANGES WHERE CO_CODE = 'C1' ORDER BY length(PH_CODE), PH_CODE"_s);
             !rows.eof(); rows.moveNext())
            all << rows.text(0);
        return all.join(u' ');
    }

    std::unique_ptr<TestDatabase> m_database;
};

void tst_ranges::init()
{
    m_database = std::make_unique<TestDatabase>();
    // Codes 101 (with a phone), 102, and 103 of another company.
    m_database->addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"Hall"_s, u"000000000101"_s);
    m_database->run(u"INSERT INTO RANGES VALUES('C1', '102')"_s);
    m_database->run(u"INSERT INTO RANGES VALUES('C2', '103')"_s);
}

void tst_ranges::treatsEveryCode_data()
{
    columns<QString, QString, bool, bool, QString, QString, QString>("from", "to", "remove", "yes", "asked",
                                                                     "lines", "codes");
    row("add", "100", "103", false, true, "M26: 4",
        "M27: 100|M31: |M27: 101|M30: |M27: 102|M30: |M27: 103|M31: ", "100 101 102 103");
    row("remove", "100", "102", true, true, "M26: 3|M25: ", "M27: 100|M27: 101|M27: 102|M29: ", "101");
    row("one code", "7", "7", false, true, "M26: 1", "M27: 7|M31: ", "7 101 102");
    row("leading zeros are not kept", "0100", "0100", false, true, "M26: 1", "M27: 100|M31: ", "100 101 102");
    row("compared as texts", "9", "10", false, true, "", "", "101 102");
    row("in the order of texts alone", "10", "9", false, true, "M26: 0", "", "101 102");
    row("declined", "100", "103", false, false, "M26: 4", "", "101 102");
    row("removing declined", "100", "103", true, false, "M26: 4", "", "101 102");
}

void tst_ranges::treatsEveryCode()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, remove);
    QFETCH(bool, yes);
    m_database->user.yesNoAnswer = yes;
    QStringList lines;
    const RunReport report = {[&lines](const QString& line) { lines << line; }, [](qsizetype, qsizetype) {}};
    generateRanges(m_database->main, {u"C1"_s, from, to, remove}, report);
    QTEST(m_database->user.questions.join(u'|'), "asked");
    QTEST(lines.join(u'|'), "lines");
    QTEST(codes(), "codes");
    QCOMPARE(m_database->user.shown, from > to ? QStringList(u"M24: "_s) : QStringList());

    // Nothing is asked about a code too wide for its column, or a company that does not exist.
    const QString before = codes();
    m_database->user.shown.clear();
    for (const RangeRequest& wrong : {RangeRequest{u"C1"_s, u"099999"_s, u"100000"_s, false},
                                      {u"C' OR 'C1"_s, u"100"_s, u"100"_s, remove}})
        QVERIFY(!generateRanges(m_database->main, wrong, report));
    QCOMPARE(m_database->user.shown,
             QStringList({u"The code 100000 has too many digits. Nothing was changed."_s,
                          u"There is no company C' OR 'C1."_s}));
    QTEST(m_database->user.questions.join(u'|'), "asked");
    QCOMPARE(codes(), before);
}

void tst_ranges::tellsWhatIsDone_data()
{
    columns<bool, int, QString>("fails", "done", "last");
    row("stopped", false, 1500, "Stopped. Codes done: 1500 / 9000");
    row("failed", true, 1000, "The run failed. Codes done: 1000 / 9000");
}

/// Stopped or failed in the middle: two lines for each code that stays, and one that says how far the run
/// got.
void tst_ranges::tellsWhatIsDone()
{
    QFETCH(bool, fails);
    QFETCH(int, done);
    MMain& main = m_database->main;
    m_database->user.yesNoAnswer = true;
    QStringList lines;
    const auto progress = [&](qsizetype treated, qsizetype) {
        if (treated == 1500 && fails)
            main.connection.close();
        main.stopFlag = treated == 1500 && !fails;
    };
    bool failed = false;
    try {
        QVERIFY(!generateRanges(main, {u"C1"_s, u"1000"_s, u"9999"_s, false},
                                {[&lines](const QString& line) { lines << line; }, progress}));
    } catch (const DatabaseError&) {
        failed = true;
        main.connection.open(m_database->connectionString());
    }
    QCOMPARE(failed, fails);
    QCOMPARE(m_database->value(u"SELECT count(*) FROM RANGES WHERE CO_CODE = 'C1' AND length(PH_CODE) = 4"_s),
             QString::number(done));
    QCOMPARE(lines.size(), done * 2 + 1);
    QTEST(lines.last(), "last");
}

void tst_ranges::worksByKeyboard()
{
    m_database->user.yesNoAnswer = true;
    FRgen window(m_database->main);
    window.show();
    auto* start = window.findChild<QPushButton*>(u"Generate"_s);
    auto* from = window.findChild<QLineEdit*>(u"PFrom"_s);
    auto* to = window.findChild<QLineEdit*>(u"PTo"_s);
    QVERIFY(!start->isEnabled());
    QTest::keyClick(window.findChild<QComboBox*>(u"Filter"_s), Qt::Key_Down);
    QTest::keyClicks(from, u"1x0-4 "_s);
    QCOMPARE(from->text(), u"104"_s);
    QVERIFY(!start->isEnabled());
    QTest::keyClicks(to, u"105"_s);
    QVERIFY(start->isEnabled());
    QTest::keyClick(to, Qt::Key_Return);
    QCOMPARE(codes(), u"101 102 104 105"_s);
    QCOMPARE(window.findChild<QListWidget*>(u"List1"_s)->count(), 4);
    from->clear();
    QVERIFY(!start->isEnabled());
}

QTEST_MAIN(tst_ranges)
#include "tst_ranges.moc"
