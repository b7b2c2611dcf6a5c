// Databases of older versions: built in their shape, filled, taken over, and read back.
#include "database/transaction.h"
#include "schema/tables.h"
#include "schema/upgrade_steps.h"
#include "support/program_folder_fixture.h"
#include "support/rows.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// The columns, keys, references and indexes of a database.
QStringList shape(const QString& database)
{
    if (!onServer())
        return rowsOf(database, u"SELECT name, '', '', '', '', '' FROM sqlite_master UNION ALL "
                                "SELECT m.name, c.cid, c.name, upper(c.type), c.\"notnull\", c.pk "
                                "FROM sqlite_master m JOIN pragma_table_info(m.name) c UNION ALL "
                                "SELECT m.name, f.\"table\", f.\"from\", f.\"to\", f.on_update, f.on_delete "
                                "FROM sqlite_master m JOIN pragma_foreign_key_list(m.name) f "
                                "ORDER BY 1, 2, 3, 4"_s);
    QStringList tables;
    for (const QString& table : rowsOf(database, u"SHOW TABLES"_s))
        tables << rowsOf(database, "SHOW CREATE TABLE "_L1 + table);
    return tables;
}

QStringList rowsBesidesVersion(const QString& database)
{
    QStringList rows = everyRow(database);
    rows.removeIf([](const QString& row) { return row.contains("$$BASEVER"_L1); });
    return rows;
}

/// The entries of one list that the other one lacks.
QStringList without(QStringList list, const QStringList& other)
{
    list.removeIf([&other](const QString& entry) { return other.contains(entry); });
    return list;
}

} // namespace

class tst_upgrade : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void takesTheFirstMissingStep_data();
    void takesTheFirstMissingStep();
    void leavesTheDatabaseOfAFailingStep();
    void holdsOnToWhatAStepCanNotTake();

private:
    /// Begins anew with a database of that version.
    void build(const QString& version);
    void change(const QString& statement) { execute(m_folder->working(), statement); }
    /// Wherever the step ends early, the next start leads to what an undisturbed one has led to.
    void finishesAStepThatWasCutOff(const QString& stored);
    QStringList everything() { return shape(m_folder->working()) + everyRow(m_folder->working()); }
    /// Starts the program; what it showed.
    RecordedPrompts start(bool ready = true);

    std::unique_ptr<ProgramFolderFixture> m_folder;
};

void tst_upgrade::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
}

/// Makes a database in the shape that it had in that version, with a company, phones, values and a phone
/// book.
void tst_upgrade::build(const QString& version)
{
    init();
    const bool withModules = version >= "010110"_L1;
    const bool withMorePhoneBook = version >= "010130"_L1;
    Connection database;
    database.open(m_folder->working());
    Transaction building(database);
    for (QString statement : creationStatements()) {
        if (!withModules)
            statement.remove(u", EQ_MODULE nvarchar(20) NOT NULL "_s);
        if (!withMorePhoneBook) {
            for (const QString& column : {u"EXTNUM nvarchar(20)"_s, u"FAX nvarchar(20)"_s,
                                          u"GSM nvarchar(20)"_s, u"MAIL nvarchar(100)"_s})
                statement.remove(", BK_"_L1 + column + " NOT NULL "_L1);
            statement.replace("EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE) ON UPDATE CASCADE"_L1,
                              "EQUIPMENT_PARAMETERS(EQ_CODE, PA_CODE)"_L1);
        }
        database.executePortable(statement);
    }
    const QString module = withModules ? u", 'NONE'"_s : u""_s;
    for (const QString& model : {u"GXP2000"_s, u"PAP2"_s, u"OTHER"_s})
        database.execute("INSERT INTO EQUIPMENT VALUES('"_L1 + model + "', 'model'"_L1 + module + u')');
    for (const QString& row : {
             u"LEVELS VALUES('P', 'x')"_s,
             u"TYPES VALUES('T', 'x')"_s,
             u"CREATION_FLAGS VALUES('V', 'x', 'Y')"_s,
             u"COMPANY VALUES('C1', 'L''Étoile')"_s,
             u"RANGES VALUES('C1', '101')"_s,
             u"PHONES VALUES('C1', '101', 'PAP2', 'phone', '000000000001')"_s,
             u"EQUIPMENT_PARAMETERS VALUES('PAP2', 'Static_Ip', '', 'P', '', 'T', '')"_s,
             u"EQUIPMENT_PARAMETERS VALUES('PAP2', 'User_Id_1_', '', 'P', '', 'T', '')"_s,
             u"PHONES_PARAMETERS VALUES('C1', 'PAP2', '101', 'Static_Ip', '10.0.0.1')"_s,
             u"COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'User_Id_1_', 'it''s')"_s,
             u"SYSTEM_PARAMETERS VALUES('COMPANY', 'L_EN', 'x'), ('$$PHONES', 'L_EN', 'x'), "
             "('SOME', 'OTHER', 'row'), ('$$PAP2', '$$IP1', 'Static_Ip'), ('XPAP2', '$$EPWD', 'old'), "
             "('GXP2000', '$$IP4', 'old'), ('$$BASEVER', '$', '%1')"_s.arg(version),
             u"PHONE_BOOK VALUES('C1', '5', 'Eva', 'V'%1)"_s.arg(withMorePhoneBook ? u", '', '', '', ''"_s
                                                                                   : u""_s),
         })
        database.execute("INSERT INTO "_L1 + row);
    database.execute(u"CREATE INDEX MINE ON PHONES_PARAMETERS (PA_VALUE)"_s);
    building.commit();
}

RecordedPrompts tst_upgrade::start(bool ready)
{
    const Start start(*m_folder);
    if (start.ready != ready)
        QTest::qFail("the start-up ended otherwise", __FILE__, __LINE__);
    return start.user;
}

void tst_upgrade::takesTheFirstMissingStep_data()
{
    // Whose shape the database gets, how many rows go, and which rows come.
    columns<QString, QString, int, QString>("stored", "shape", "gone", "come");
    const QString modules = u"EQUIPMENT|GXP2000|model|GRANDSTREAM\nEQUIPMENT|OTHER|model|NONE\n"
                            "EQUIPMENT|PAP2|model|PAP2\nSYSTEM_PARAMETERS|$$MODULES|GRANDSTREAM|\n"
                            "SYSTEM_PARAMETERS|$$MODULES|NONE|\nSYSTEM_PARAMETERS|$$MODULES|PAP2|"_s;
    row("the present version", "010142", "010142", 0, "");
    row("after the last step", "010140", "010140", 0, "");
    row("a later one", "010200", "010142", 0, "");
    row("none", "000000", "010110", 3, modules);
    row("modules", "010109", "010110", 3, modules);
    row("labels become system rows", "010110", "010110", 1, "SYSTEM_PARAMETERS|$$COMPANY|L_EN|x");
    row("phone book and keys", "010120", "010130", 5,
        "COMPANY_PARAMETERS|C1|PAP2|User_ID_1_|it's\nCREATION_FLAGS|D|Deleted|Y\n"
        "CREATION_FLAGS|W|Work In Progress|Y\nEQUIPMENT_PARAMETERS|PAP2|Static_IP||P||T|\n"
        "EQUIPMENT_PARAMETERS|PAP2|User_ID_1_||P||T|\nPHONES_PARAMETERS|C1|PAP2|101|Static_IP|10.0.0.1\n"
        "PHONE_BOOK|C1|5|Eva|V||||\nSYSTEM_PARAMETERS|$$SUPERUSER|USERNAME|*\n"
        "SYSTEM_PARAMETERS|AUTHC|*|*\nSYSTEM_PARAMETERS|AUTHM|*|*");
    row("model rows", "010130", "010130", 3,
        "SYSTEM_PARAMETERS|$$GXP2000|$$EPWD|2\nSYSTEM_PARAMETERS|$$GXP2000|$$IP1|9\n"
        "SYSTEM_PARAMETERS|$$GXP2000|$$IP2|10\nSYSTEM_PARAMETERS|$$GXP2000|$$IP3|11\n"
        "SYSTEM_PARAMETERS|$$GXP2000|$$IP4|12\nSYSTEM_PARAMETERS|$$PAP2|$$EPWD|Admin_Passwd\n"
        "SYSTEM_PARAMETERS|$$PAP2|$$IP1|Static_IP");
}

void tst_upgrade::takesTheFirstMissingStep()
{
    QFETCH(QString, stored);
    QFETCH(QString, shape);
    QFETCH(int, gone);
    QFETCH(QString, come);
    build(stored);
    if (stored == "000000"_L1)
        change(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s);
    const QStringList shapeBefore = ::shape(m_folder->working());
    const QStringList before = rowsBesidesVersion(m_folder->working());
    const RecordedPrompts user = start();
    const QString update = u"Update From %1 To 010142"_s.arg(stored);
    QCOMPARE(user.shown, stored == "010142"_L1 ? QStringList() : QStringList(update));
    const QStringList after = rowsBesidesVersion(m_folder->working());
    QCOMPARE(without(after, before).join(u'\n'), come);
    QCOMPARE(without(before, after).size(), gone);

    // The later steps were not taken, and the stamp says that they never will be.
    QCOMPARE(start().shown, QStringList());
    QCOMPARE(rowsBesidesVersion(m_folder->working()), after);
    const QString copy = u"velmora-%1.db"_s.arg(stored);
    QCOMPARE(QFile::exists(m_folder->file(copy)), !come.isEmpty() && !onServer());
    if (!come.isEmpty()) {
        const QString kept = onServer() ? u"No copy"_s : QDir::toNativeSeparators(m_folder->file(copy));
        QVERIFY2(user.details[0].contains(kept), qPrintable(user.details[0]));
    }
    if (onServer())
        return finishesAStepThatWasCutOff(stored);
    if (!come.isEmpty()) {
        QCOMPARE(::shape(m_folder->embedded(copy)), shapeBefore);
        QCOMPARE(rowsBesidesVersion(m_folder->embedded(copy)), before);
    }
    const QStringList shapeAfter = ::shape(m_folder->working());
    build(shape);
    QCOMPARE(shapeAfter, ::shape(m_folder->working()));
}

void tst_upgrade::finishesAStepThatWasCutOff(const QString& stored)
{
    const QStringList whole = everything();
    const auto step = std::find_if(upgradeSteps().begin(), upgradeSteps().end(),
                                   [&](const UpgradeStep& each) { return stored < each.bound; });
    const qsizetype statements = step == upgradeSteps().end() ? 0 : step->statements.size();
    for (qsizetype done = 1; done <= statements; ++done) {
        build(stored);
        Connection database;
        database.open(m_folder->working());
        for (const QString& statement : step->statements.first(done))
            database.executePortable(statement);
        start();
        QCOMPARE(everything(), whole);
    }
}

void tst_upgrade::leavesTheDatabaseOfAFailingStep()
{
    if (onServer())
        QSKIP("The server can't undo changes of the schema");
    build(u"010120"_s);
    // Late in the step, after the phone book was extended.
    change(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$SUPERUSER', 'USERNAME', 'mine')"_s);
    const QStringList before = everything();
    for (int attempt = 1; attempt <= 2; ++attempt) {
        const QStringList shown = start(false).shown;
        QCOMPARE(shown.size(), 2);
        QVERIFY2(shown[1].contains("SY_CODE"_L1), qPrintable(shown[1]));
        QCOMPARE(everything(), before);
    }
    change(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$SUPERUSER'"_s);
    start();
}

void tst_upgrade::holdsOnToWhatAStepCanNotTake()
{
    if (!onServer())
        QSKIP("A step is one transaction there");
    // A row of the user's own under such a key is none that the step has left.
    build(u"010120"_s);
    change(u"INSERT INTO SYSTEM_PARAMETERS VALUES('AUTHC', '*', 'mine')"_s);
    QCOMPARE(start(false).shown.size(), 2);
    change(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = 'AUTHC'"_s);

    // A dropped key comes back only to rows that keep it, and then it does.
    const QString stray = u"INSERT INTO COMPANY_PARAMETERS VALUES('C1', 'PAP2', 'nowhere', '')"_s;
    change("SET STATEMENT foreign_key_checks = 0 FOR "_L1 + stray);
    const QString refusal = start(false).shown.value(1);
    QVERIFY2(refusal.contains("1 rows of COMPANY_PARAMETERS"_L1), qPrintable(refusal));
    change(u"DELETE FROM COMPANY_PARAMETERS WHERE PA_CODE = 'nowhere'"_s);
    start();
    QVERIFY_THROWS_EXCEPTION(DatabaseError, change(stray));
}

QTEST_GUILESS_MAIN(tst_upgrade)
#include "tst_upgrade.moc"
