// Ranges of phone codes: the run and its window.
#include "ranges/FRgen.h"
#include "ranges/ranges.h"
#include "support/controls.h"
#include "support/query.h"
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
    void refusesWhatNoRangeHolds();
    void tellsWhatIsDone();
    void worksByKeyboard();

private:
    QString codes()
    {
        return firstFields(
                   m_database->main.connection,
                   u"SELECT PH_CODE FROM RANGES WHERE CO_CODE = 'C1' ORDER BY length(PH_CODE), PH_CODE"_s)
            .join(u' ');
    }
    /// Runs the request, with `onProgress` told how many codes are done. Lines are kept in m_lines.
    bool run(
        const RangeRequest& request, const std::function<void(qsizetype)>& onProgress = [](qsizetype) {})
    {
        return generateRanges(m_database->main, request,
                              {[this](const QString& line) { m_lines << line; },
                               [&](qsizetype done, qsizetype) { onProgress(done); }});
    }

    std::unique_ptr<TestDatabase> m_database;
    QStringList m_lines;
};

void tst_ranges::init()
{
    m_lines.clear();
    m_database = std::make_unique<TestDatabase>();
    m_database->user.yesNoAnswer = true;
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
    row("leading zeros are not kept", "0100", "0100", false, true, "M26: 1", "M27: 100|M31: ", "100 101 102");
    row("compared as texts", "9", "10", false, true, "", "", "101 102");
    row("in the order of texts alone", "10", "9", false, true, "M26: 0", "", "101 102");
    row("declined", "100", "103", false, false, "M26: 4", "", "101 102");
}

void tst_ranges::treatsEveryCode()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, remove);
    QFETCH(bool, yes);
    m_database->user.yesNoAnswer = yes;
    run({u"C1"_s, from, to, remove});
    QTEST(m_database->user.questions.join(u'|'), "asked");
    QTEST(m_lines.join(u'|'), "lines");
    QTEST(codes(), "codes");
    QCOMPARE(m_database->user.shown, from > to ? QStringList(u"M24: "_s) : QStringList());
}

/// Nothing is asked about a code too wide for its column, or a company that does not exist.
void tst_ranges::refusesWhatNoRangeHolds()
{
    QVERIFY(!run({u"C1"_s, u"099999"_s, u"100000"_s, false}));
    QVERIFY(!run({u"C' OR 'C1"_s, u"102"_s, u"102"_s, true}));
    QCOMPARE(m_database->user.shown,
             QStringList({u"The code 100000 has too many digits. Nothing was changed."_s,
                          u"There is no company C' OR 'C1."_s}));
    QCOMPARE(m_database->user.questions, QStringList());
    QCOMPARE(codes(), u"101 102"_s);
}

/// Stopped or failed in the middle: two lines for each code that stays, and one that says how far the run
/// got.
void tst_ranges::tellsWhatIsDone()
{
    MMain& main = m_database->main;
    const RangeRequest request = {u"C1"_s, u"1000"_s, u"9999"_s, false};
    const auto fail = [&main](qsizetype done) {
        if (done == 1500)
            main.connection.close();
    };
    QVERIFY_THROWS_EXCEPTION(DatabaseError, run(request, fail));
    main.connection.open(m_database->connectionString());
    QCOMPARE(codes().count(u' '), 1 + 1000);
    QCOMPARE(m_lines.size(), 2 * 1000 + 1);
    QCOMPARE(m_lines.last(), u"The run failed. Codes done: 1000 / 9000"_s);

    m_lines.clear();
    QVERIFY(!run(request, [&main](qsizetype done) { main.stopFlag = done == 1500; }));
    QCOMPARE(codes().count(u' '), 1 + 1500);
    QCOMPARE(m_lines.size(), 2 * 1500 + 1);
    QCOMPARE(m_lines.last(), u"Stopped. Codes done: 1500 / 9000"_s);
}

void tst_ranges::worksByKeyboard()
{
    m_database->run(
        u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'M26_ADD', 'To %1: %2 (%3 to %4)')"_s);
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'FRGEN_REMOVE', 'Remove')"_s);
    FRgen window(m_database->main);
    window.show();
    const QPushButton* start = button(window, u"Generate"_s);
    auto* from = control<QLineEdit>(window, u"PFrom"_s);
    auto* to = control<QLineEdit>(window, u"PTo"_s);
    QTest::keyClick(control<QComboBox>(window, u"Filter"_s), Qt::Key_Down);
    QTest::keyClicks(from, u"1x0-4 "_s);
    QCOMPARE(from->text(), u"104"_s);
    QVERIFY(!start->isEnabled());
    QTest::keyClicks(to, u"105"_s);
    QTest::keyClick(to, Qt::Key_Return);
    QCOMPARE(codes(), u"101 102 104 105"_s);
    QCOMPARE(lines(window).size(), 4);
    QVERIFY(m_database->user.questions.last().contains(": 2 (104 to 105)"_L1));
    control<QCheckBox>(window, u"DelAll"_s)->click();
    QCOMPARE(start->text(), u"Remove"_s);
    from->clear();
    QVERIFY(!start->isEnabled());
}

QTEST_MAIN(tst_ranges)
#include "tst_ranges.moc"
