// Databases of older versions: built in their shape, filled, taken over, and read back.
#include "common/MMain.h"
#include "database/connection.h"
#include "database/transaction.h"
#include "schema/tables.h"
#include "schema/upgrade_steps.h"
#include "startup/start_up.h"
#include "support/program_folder_fixture.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_upgrade : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void stampsWithoutAStep_data();
    void stampsWithoutAStep();
    void takesTheFirstStepOnly();
    void givesModelsTheirModule();
    void turnsLabelsIntoSystemRows();
    void extendsThePhoneBookAndRebuildsTheKeys();
    void renewsTheModelRows();
    void leavesTheDatabaseOfAFailingStep();
    void leavesTheDatabaseOfAKilledStep();
    void finishesAStepThatWasCutOff_data();
    void finishesAStepThatWasCutOff();

private:
    void build(const QString& version);
    void execute(const QString& statement) { m_database->execute(statement); }
    QStringList rows(const QString& query);
    QStringList everything();
    /// Starts the program; the texts that it showed.
    QStringList start(bool ready = true);
    QString version()
    {
        return rows(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s).value(0);
    }

    std::unique_ptr<ProgramFolderFixture> m_folder;
    std::unique_ptr<Connection> m_database;
    /// The details of what the last start showed.
    QStringList m_details;
};

void tst_upgrade::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
    m_database = std::make_unique<Connection>();
    m_database->open(m_folder->working());
}

/// Makes a database in the shape that it had in that version, with a company, phones, values and a phone
/// book.
void tst_upgrade::build(const QString& version)
{
    Transaction building(*m_database);
    for (QString statement : creationStatements()) {
        if (version < "010110"_L1)
            statement.remove(u", EQ_MODULE nvarchar(20) NOT NULL "_s);
        if (version < "010130"_L1) {
            for (const QString& column : {u"EXTNUM nvarchar(20)"_s, u"FAX nvarchar(20)"_s,
                                          u"GSM nvarchar(20)"_s, u"MAIL nvarchar(100)"_s})
                statement.remove(", BK_"_L1 + column + " NOT NULL "_L1);
            statement.replace("EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE) ON UPDATE CASCADE"_L1,
                              "EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE)"_L1);
        }
        m_database->executePortable(statement);
    }
    const QString module = version < "010110"_L1 ? u""_s : u", 'NONE'"_s;
    for (const QString& model : {u"GXP2000"_s, u"PAP2"_s, u"OTHER"_s})
        execute("INSERT INTO EQUIPMENT VALUES('"_L1 + model + "', 'model'"_L1 + module + u')');
    for (const QString& statement : {
             u"INSERT INTO LEVELS VALUES('P', 'x')"_s,
             u"INSERT INTO TYPES VALUES('T', 'x')"_s,
             u"INSERT INTO CREATION_FLAGS VALUES('V', 'x', 'Y')"_s,
             u"INSERT INTO COMPANY VALUES('C1', 'L''Étoile')"_s,
             u"INSERT INTO RANGES VALUES('C1', '101')"_s,
             u"INSERT INTO PHONES VALUES('C1', '101', 'PAP2', 'phone', '000000000001')"_s,
             u"INSERT INTO EQUIPMENT_PARAMETERS VALUES('PAP2', 'Static_Ip', '', 'P', '', 'T', '')"_s,
             u"INSERT INTO EQUIPMENT_PARAMETERS VALUES('PAP2', 'User_Id_1_', '', 'P', '', 'T', '')"_s,
             u"INSERT INTO PHONES_PARAMETERS VALUES('C1', 'PAP2', '101', 'Static_Ip', '10.0.0.1')"_s,
             u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'User_Id_1_', 'it''s')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('COMPANY', 'L_EN', 'Company')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$PHONES', 'L_EN', 'Phones')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('SOME', 'OTHER', 'row')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$PAP2', '$$IP1', 'Static_Ip')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('XPAP2', '$$EPWD', 'old')"_s,
             u"INSERT INTO SYSTEM_PARAMETERS VALUES('GXP2000', '$$IP4', 'old')"_s,
         })
        execute(statement);
    execute("INSERT INTO PHONE_BOOK VALUES('C1', '5', 'Eva', 'V'"_L1 +
            (version < "010130"_L1 ? u")"_s : u", '', '', '', '')"_s));
    execute("INSERT INTO SYSTEM_PARAMETERS VALUES('$$BASEVER', '$', '"_L1 + version + "')"_L1);
    building.commit();
}

QStringList tst_upgrade::rows(const QString& query)
{
    QStringList found;
    Cursor cursor = m_database->cursor(query);
    while (cursor.next()) {
        QStringList fields;
        for (int field = 0; field < cursor.fieldCount(); ++field)
            fields << cursor.text(field);
        found << fields.join(u'|');
    }
    return found;
}

/// The shape and every row of the database.
QStringList tst_upgrade::everything()
{
    QStringList all;
    if (!onServer())
        all = rows(u"SELECT sql FROM sqlite_master ORDER BY name"_s);
    for (const QString& table : m_database->tables())
        all << (onServer() ? rows("SHOW CREATE TABLE "_L1 + table).join(u'\n') : table)
            << rows("SELECT * FROM "_L1 + table + " ORDER BY 1, 2"_L1);
    return all;
}

QStringList tst_upgrade::start(bool ready)
{
    RecordedPrompts user;
    MMain main(m_folder->path(), user.prompts());
    if (StartUp(main, u"jdoe"_s) != ready)
        QTest::qFail("the start-up ended otherwise", __FILE__, __LINE__);
    m_database->open(m_folder->working());
    m_details = user.details;
    return user.shown;
}

void tst_upgrade::stampsWithoutAStep_data()
{
    columns<QString, QStringList>("stored", "shown");
    row("same", "010142", QStringList());
    row("after the last step", "010140", QStringList(u"Update From 010140 To 010142"_s));
    row("later", "010200", QStringList(u"Update From 010200 To 010142"_s));
}

void tst_upgrade::stampsWithoutAStep()
{
    QFETCH(QString, stored);
    build(stored);
    const QStringList before = everything();
    QTEST(start(), "shown");
    QCOMPARE(version(), u"010142"_s);
    QCOMPARE(everything().replaceInStrings(u"$$BASEVER|$|010142"_s, "$$BASEVER|$|"_L1 + stored), before);
    QVERIFY(!QFile::exists(m_folder->file(u"velmora-%1.db"_s.arg(stored))));
}

void tst_upgrade::takesTheFirstStepOnly()
{
    build(u"010100"_s);
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s);
    QCOMPARE(start(), QStringList(u"Update From 000000 To 010142"_s));
    QCOMPARE(version(), u"010142"_s);
    QCOMPARE(rows(u"SELECT EQ_MODULE FROM EQUIPMENT WHERE EQ_CODE = 'PAP2'"_s), QStringList(u"PAP2"_s));
    // The later steps were not taken, and the stamp says that they never will be.
    QCOMPARE(m_database->columns(u"PHONE_BOOK"_s).size(), 4);
    QCOMPARE(start(), QStringList());
    QCOMPARE(m_database->columns(u"PHONE_BOOK"_s).size(), 4);
}

void tst_upgrade::givesModelsTheirModule()
{
    build(u"010109"_s);
    start();
    QCOMPARE(rows(u"SELECT EQ_CODE, EQ_MODULE FROM EQUIPMENT ORDER BY 1"_s),
             QStringList({u"GXP2000|GRANDSTREAM"_s, u"OTHER|NONE"_s, u"PAP2|PAP2"_s}));
    QCOMPARE(
        rows(u"SELECT SY_SUBCODE, SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$MODULES' ORDER BY 1"_s),
        QStringList({u"GRANDSTREAM|"_s, u"NONE|"_s, u"PAP2|"_s}));
    QCOMPARE(m_database->columns(u"EQUIPMENT"_s).last().width, 20);
}

void tst_upgrade::turnsLabelsIntoSystemRows()
{
    build(u"010110"_s);
    QCOMPARE(start(), QStringList(u"Update From 010110 To 010142"_s));
    QCOMPARE(
        rows(u"SELECT SY_CODE, SY_SUBCODE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE LIKE 'L%' ORDER BY 1"_s),
        QStringList({u"$$COMPANY|L_EN"_s, u"$$PHONES|L_EN"_s}));
    QCOMPARE(rows(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'SOME'"_s), QStringList(u"row"_s));
}

void tst_upgrade::extendsThePhoneBookAndRebuildsTheKeys()
{
    build(u"010120"_s);
    execute(u"CREATE INDEX MINE ON PHONES_PARAMETERS (PA_VALUE)"_s);
    const QStringList before = everything();
    QCOMPARE(start(), QStringList(u"Update From 010120 To 010142"_s));
    const QString details = m_details.value(0);

    QCOMPARE(rows(u"SELECT * FROM PHONE_BOOK"_s), QStringList(u"C1|5|Eva|V||||"_s));
    QCOMPARE(rows(u"SELECT * FROM PHONES_PARAMETERS"_s), QStringList(u"C1|PAP2|101|Static_IP|10.0.0.1"_s));
    QCOMPARE(rows(u"SELECT * FROM COMPANY_PARAMETERS"_s), QStringList(u"C1|PAP2|User_ID_1_|it's"_s));
    QCOMPARE(rows(u"SELECT PA_CODE FROM EQUIPMENT_PARAMETERS ORDER BY 1"_s),
             QStringList({u"Static_IP"_s, u"User_ID_1_"_s}));
    QCOMPARE(rows(u"SELECT FL_CODE FROM CREATION_FLAGS ORDER BY 1"_s), QStringList({u"D"_s, u"V"_s, u"W"_s}));
    QCOMPARE(rows(u"SELECT SY_CODE, SY_SUBCODE FROM SYSTEM_PARAMETERS WHERE SY_VALUE = '*' ORDER BY 1"_s),
             QStringList({u"$$SUPERUSER|USERNAME"_s, u"AUTHC|*"_s, u"AUTHM|*"_s}));

    if (onServer())
        return;
    // Shape, keys and references are those of a new database.
    QCOMPARE(rows(u"SELECT name FROM sqlite_master WHERE name = 'MINE' OR name LIKE '%NEW%'"_s),
             QStringList(u"MINE"_s));
    Connection fresh;
    fresh.open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"fresh.db"_s));
    for (const QString& statement : creationStatements())
        fresh.execute(statement);
    for (const QString& table : {u"PHONE_BOOK"_s, u"PHONES_PARAMETERS"_s, u"COMPANY_PARAMETERS"_s})
        for (const QString& aspect :
             {u"SELECT name, upper(type), \"notnull\", pk FROM pragma_table_info('%1')"_s,
              u"SELECT \"table\", \"from\", \"to\", on_update, on_delete FROM "
              "pragma_foreign_key_list('%1') ORDER BY 1, 2, 3"_s}) {
            const QString expected = [&] {
                QStringList texts;
                for (Recordset result = fresh.select(aspect.arg(table)); !result.eof(); result.moveNext())
                    texts << result.text(0) + result.text(1) + result.text(2) + result.text(3);
                return texts.join(u'\n');
            }();
            QStringList found;
            for (const QString& row : rows(aspect.arg(table)))
                found << row.split(u'|').mid(0, 4).join(QString());
            QCOMPARE(found.join(u'\n'), expected);
        }

    // The copy is the database as it was, and the message says where it is.
    QVERIFY2(details.contains(m_folder->file(u"velmora-010120.db"_s)), qPrintable(details));
    m_database->open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"velmora-010120.db"_s));
    QCOMPARE(everything(), before);
}

void tst_upgrade::renewsTheModelRows()
{
    build(u"010130"_s);
    start();
    QCOMPARE(
        rows(
            u"SELECT SY_CODE, SY_SUBCODE, SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE LIKE '$$%' ORDER BY 1, 2"_s),
        QStringList({u"$$GXP2000|$$EPWD|2"_s, u"$$GXP2000|$$IP1|9"_s, u"$$GXP2000|$$IP2|10"_s,
                     u"$$GXP2000|$$IP3|11"_s, u"$$GXP2000|$$IP4|12"_s, u"$$PAP2|$$EPWD|Admin_Passwd"_s,
                     u"$$PAP2|$$IP1|Static_IP"_s}));
}

void tst_upgrade::leavesTheDatabaseOfAFailingStep()
{
    if (onServer())
        QSKIP("The server can't undo changes of the schema");
    build(u"010120"_s);
    // Late in the step, after the phone book was extended.
    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$SUPERUSER', 'USERNAME', 'mine')"_s);
    const QStringList before = everything();
    for (int attempt = 1; attempt <= 2; ++attempt) {
        const QStringList shown = start(false);
        QCOMPARE(shown.size(), 2);
        QVERIFY2(shown[1].contains("SY_CODE"_L1), qPrintable(shown[1]));
        QCOMPARE(everything(), before);
    }
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$SUPERUSER'"_s);
    start();
    QCOMPARE(version(), u"010142"_s);
}

void tst_upgrade::leavesTheDatabaseOfAKilledStep()
{
    if (onServer())
        QSKIP("The server can't undo changes of the schema");
    build(u"010120"_s);
    execute(u"WITH RECURSIVE N(X) AS (SELECT 1000 UNION ALL SELECT X + 1 FROM N WHERE X < 400000) "
            "INSERT INTO PHONE_BOOK SELECT 'C1', X, 'name', 'V' FROM N"_s);
    const QStringList before = everything();
    m_database->close();
    QProcess program;
    program.start(QStringLiteral(VELMORA_CLI), {u"--program-dir"_s, m_folder->path(), u"start"_s});
    // The copy is complete right before the step begins.
    QTRY_VERIFY(QFile::exists(m_folder->file(u"velmora-010120.db"_s)));
    QVERIFY(!program.waitForFinished(60));
    program.kill();
    program.waitForFinished();

    m_database->open("Provider=SQLite;Data Source="_L1 + m_folder->file(u"velmora.db"_s));
    QVERIFY(everything() == before);
    QCOMPARE(start(), QStringList(u"Update From 010120 To 010142"_s));
    QCOMPARE(rows(u"SELECT count(*) FROM PHONE_BOOK WHERE BK_MAIL = ''"_s), QStringList(u"399002"_s));
}

void tst_upgrade::finishesAStepThatWasCutOff_data()
{
    columns<QString>("stored");
    row("modules", "010109");
    row("phone book and keys", "010120");
    row("model rows", "010130");
}

/// Wherever the step ends early, the next start leads to what an undisturbed one leads to.
void tst_upgrade::finishesAStepThatWasCutOff()
{
    if (!onServer())
        QSKIP("A step is one transaction there");
    QFETCH(QString, stored);
    build(stored);
    start();
    const QStringList whole = everything();
    QVERIFY2(m_details.value(0).contains("No copy"_L1), qPrintable(m_details.value(0)));
    const UpgradeStep& step = *std::find_if(upgradeSteps().begin(), upgradeSteps().end(),
                                            [&](const UpgradeStep& each) { return stored < each.bound; });
    for (qsizetype done = 1; done <= step.statements.size(); ++done) {
        init();
        build(stored);
        for (const QString& statement : step.statements.first(done))
            m_database->executePortable(statement);
        QCOMPARE(start(), QStringList("Update From "_L1 + stored + " To 010142"_L1));
        QCOMPARE(everything(), whole);
    }
    // A row of the user's own under such a key is none that the step has left.
    init();
    build(u"010120"_s);
    execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHC', '*', 'mine')"_s);
    QCOMPARE(start(false).size(), 2);
    execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHC'"_s);

    // A dropped key comes back only to rows that keep it, and then it does.
    execute(u"SET foreign_key_checks = 0"_s);
    execute(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'nowhere', '')"_s);
    const QStringList shown = start(false);
    QVERIFY2(shown.value(1).contains("1 rows of COMPANY_PARAMETERS"_L1), qPrintable(shown.value(1)));
    execute(u"DELETE FROM COMPANY_PARAMETERS WHERE PA_CODE = 'nowhere'"_s);
    start();
    QVERIFY_THROWS_EXCEPTION(
        DatabaseError, execute(u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'nowhere', '')"_s));
}

QTEST_GUILESS_MAIN(tst_upgrade)
#include "tst_upgrade.moc"
