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
    void renamesACompanyWithPhonesOnlyIntoItsRanges();
    void renamesACompanyWithPhoneValues();
    void renamesACompanyWithoutPhones();
    void carriesARenamedParameterAlong();
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
    row("a used range to be deleted", "DELETE FROM RANGES WHERE PH_CODE = '101'");
    row("a value of an unknown parameter", "INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'GXP2000', '5', '')");
    row("a parameter of an unknown level",
        "INSERT INTO EQUIPMENT_PARAMETERS VALUES('GXP2000', '5', '', 'X', '', 'T', '')");
    row("a phone-book entry with an unknown flag",
        "INSERT INTO PHONE_BOOK VALUES('C1', '1', '', 'V', '', '', '', '')");
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

void tst_tables::renamesACompanyWithPhonesOnlyIntoItsRanges()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"GXP2000"_s, u"101"_s, u"one"_s, u"000000000001"_s);
    const QString rename = u"UPDATE COMPANY SET CO_CODE = 'C9' WHERE CO_CODE = 'C1'"_s;
    QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(rename));
    QCOMPARE(database.value(u"SELECT CO_CODE FROM PHONES"_s), u"C1"_s);

    database.run(u"INSERT INTO RANGES VALUES('C9', '101')"_s);
    database.run(rename);
    QCOMPARE(database.value(u"SELECT CO_CODE FROM PHONES"_s), u"C9"_s);
    QCOMPARE(database.value(u"SELECT count(*) FROM RANGES WHERE CO_CODE = 'C1'"_s), u"1"_s);
}

/// The server checks every reference of a row at once, and so before the phone that a value refers to has its
/// new company: there the renaming is refused and leaves everything as it was.
void tst_tables::renamesACompanyWithPhoneValues()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"GXP2000"_s, u"101"_s, u"one"_s, u"000000000001"_s);
    database.addParameter(u"GXP2000"_s, u"35"_s, u"P"_s, u""_s);
    database.run(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', 'GXP2000', '101', '35', 'v')"_s);
    database.run(u"INSERT INTO RANGES VALUES('C9', '101')"_s);
    const QString rename = u"UPDATE COMPANY SET CO_CODE = 'C9' WHERE CO_CODE = 'C1'"_s;
    if (onServer())
        QVERIFY_THROWS_EXCEPTION(DatabaseError, database.run(rename));
    else
        database.run(rename);
    const QString company = onServer() ? u"C1"_s : u"C9"_s;
    QCOMPARE(database.value(u"SELECT CO_CODE FROM PHONES"_s), company);
    QCOMPARE(database.value(u"SELECT CO_CODE FROM PHONES_PARAMETERS"_s), company);
}

void tst_tables::renamesACompanyWithoutPhones()
{
    TestDatabase database;
    database.addPhone(u"C2"_s, u"GXP2000"_s, u"101"_s, u"one"_s, u"000000000001"_s);
    database.addParameter(u"GXP2000"_s, u"47"_s, u"C"_s, u""_s);
    database.run(u"INSERT INTO COMPANY VALUES('C1', 'no phones')"_s);
    database.run(u"INSERT INTO RANGES VALUES('C1', '101')"_s);
    database.run(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'GXP2000', '47', 'v')"_s);
    database.run(u"UPDATE COMPANY SET CO_CODE = 'C9' WHERE CO_CODE = 'C1'"_s);
    QCOMPARE(database.value(u"SELECT CO_CODE FROM COMPANY_PARAMETERS"_s), u"C9"_s);
    QCOMPARE(database.value(u"SELECT count(*) FROM RANGES WHERE CO_CODE = 'C9'"_s), u"0"_s);
}

void tst_tables::carriesARenamedParameterAlong()
{
    TestDatabase database;
    database.addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"one"_s, u"000000000001"_s);
    database.addParameter(u"PAP2"_s, u"Static_Ip"_s, u"P"_s, u""_s);
    database.run(u"INSERT INTO PHONES_PARAMETERS VALUES('C1', 'PAP2', '101', 'Static_Ip', 'v')"_s);
    database.run(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'Static_Ip', 'v')"_s);
    database.run(u"UPDATE EQUIPMENT_PARAMETERS SET PA_CODE = 'Static_IP'"_s);
    QCOMPARE(database.value(u"SELECT PA_CODE FROM PHONES_PARAMETERS"_s), u"Static_IP"_s);
    QCOMPARE(database.value(u"SELECT PA_CODE FROM COMPANY_PARAMETERS"_s), u"Static_IP"_s);
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
