// The thirteen tables in the real engine: what they hold together, and what they refuse.
#include "schema/tables.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_tables : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areStoredAsTheyAreWritten();
    void refuses_data();
    void refuses();
    void renames_data();
    void renames();
    void stagesInATableOfTheSession();
};

void tst_tables::areStoredAsTheyAreWritten()
{
    if (onServer())
        QSKIP("A server keeps tables in words of its own");
    TestDatabase database;
    QStringList stored;
    for (Recordset rows = database.main.connection.select(
             u"SELECT sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY rowid"_s);
         !rows.eof(); rows.moveNext())
        stored << rows.text(0);
    QCOMPARE(stored, creationStatements());
    QCOMPARE(stored.size(), 13);
    // Of all texts together, counted outside this program: a changed blank shows here.
    QCOMPARE(stored.join(QString()).size(), 3495);
    QCOMPARE(copiedTables().size(), 12);
}

void tst_tables::refuses_data()
{
    columns<QString>("statement");
    row("a phone outside its company's range", "INSERT INTO PHONES VALUES('C1', '999', 'GXP2000', '', '')");
    row("a phone of an unknown model", "INSERT INTO PHONES VALUES('C1', '102', 'NONE', '', '')");
    row("a company that has phones to be deleted", "DELETE FROM COMPANY WHERE CO_CODE = 'C1'");
    row("a company code of six characters", "INSERT INTO COMPANY VALUES('123456', '')");
    row("a company without code", "INSERT INTO COMPANY VALUES(NULL, '')");
    row("a company without name", "INSERT INTO COMPANY VALUES('C2', NULL)");
}

void tst_tables::refuses()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"GXP2000"_s, u"101"_s, u"one"_s, u"000000000001"_s);
    database.run(u"INSERT INTO RANGES VALUES('C1', '102')"_s);
    QFETCH(QString, statement);
    QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(statement));
}

void tst_tables::renames_data()
{
    columns<QString, QString, bool, QString, QString>("given", "renaming", "works", "looked", "found");
    const QString company = u"UPDATE COMPANY SET CO_CODE = 'C9' WHERE CO_CODE = 'C1'"_s;
    row("no company whose phones have no range there", "", company, false, "SELECT CO_CODE FROM PHONES",
        "C1");
    const QString ranges = u"INSERT INTO RANGES VALUES('C9', '101')"_s;
    row("a company with its phones", ranges, company, true, "SELECT CO_CODE FROM PHONES", "C9");
    row("but not its ranges", ranges, company, true, "SELECT count(*) FROM RANGES WHERE CO_CODE = 'C1'", "2");
    row("company values", ranges + u"; INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'ip', 'v')"_s,
        company, true, "SELECT CO_CODE FROM COMPANY_PARAMETERS", "C9");
    // The server checks every reference of a row at once, and so before the phone that a value refers to has
    // its new company: there the renaming is refused and leaves everything as it was.
    row("phone values, where the engine checks last",
        ranges + u"; INSERT INTO PHONES_PARAMETERS VALUES('C1', 'PAP2', '101', 'ip', 'v')"_s, company,
        !onServer(), "SELECT CO_CODE FROM PHONES_PARAMETERS", onServer() ? "C1" : "C9");
    row("a parameter", "INSERT INTO PHONES_PARAMETERS VALUES('C1', 'PAP2', '101', 'ip', 'v')",
        "UPDATE EQUIPMENT_PARAMETERS SET PA_CODE = 'IP'", true, "SELECT PA_CODE FROM PHONES_PARAMETERS",
        "IP");
}

void tst_tables::renames()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"one"_s, u"000000000001"_s);
    database.run(u"INSERT INTO RANGES VALUES('C1', '102')"_s);
    database.addParameter(u"PAP2"_s, u"ip"_s, u"P"_s, u""_s);
    QFETCH(QString, given);
    for (const QString& statement : given.split(u"; "_s, Qt::SkipEmptyParts))
        database.run(statement);
    QFETCH(QString, renaming);
    QFETCH(bool, works);
    if (works)
        database.run(renaming);
    else
        QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(renaming));
    QFETCH(QString, looked);
    QTEST(database.value(looked), "found");
}

void tst_tables::stagesInATableOfTheSession()
{
    TestDatabase database;
    database.run(u"INSERT INTO EQ_TEMP VALUES('1', '', '', 'E')"_s);
    QCOMPARE(database.value(u"SELECT count(*) FROM EQ_TEMP"_s), u"1"_s);
    Connection other;
    other.open(database.connectionString());
    QCOMPARE(other.select(u"SELECT count(*) FROM EQ_TEMP"_s).text(0), u"0"_s);
}

QTEST_GUILESS_MAIN(tst_tables)
#include "tst_tables.moc"
